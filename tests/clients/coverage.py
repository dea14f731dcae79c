"""Holds the client scripts against the type library: each class has a script in each language that uses every member.

usage: coverage.py <type library as JSON> <folder of the scripts>

A member counts as used where the script has it behind a dot, texts and comments aside; a property has to be read and to
be set as far as that is possible. What stands behind a variable that the script makes an object of another class does not
count. Prints a line for each use that is missing; the last line is the total.
"""
import json
import pathlib
import re
import sys


class Language:
    def __init__(self, suffix, hidden, creation, enumeration, statement_end, assignment):
        self.suffix = suffix
        self.hidden = re.compile(hidden)              # texts and comments
        self.creation = re.compile(creation, re.I)    # a variable and the class of the object in it
        self.enumeration = re.compile(enumeration)    # asks for the enumerator
        self.statement_end = re.compile(statement_end)
        self.assignment = re.compile(assignment)      # between a member and what is assigned to it


PARENTHESES = r"\((?:[^()]|\([^()]*\))*\)"
LANGUAGES = [
    Language(".vbs", r'"(?:[^"\n]|"")*"|\'[^\n]*', r'(\w+)\s*=\s*CreateObject\("ZEQUtility2\.(\w+)"\)',
             r"\bFor Each\b", r"[\n:]|\bThen\b|\bElse\b", rf"(?:{PARENTHESES})?\s*="),
    Language(".js", r'"(?:[^"\\\n]|\\.)*"|//[^\n]*', r'(\w+)\s*=\s*new ActiveXObject\("ZEQUtility2\.(\w+)"\)',
             r"\b(?:items|Enumerator)\(", r"[\n;{}]", rf"(?:{PARENTHESES})?\s*=(?!=)"),
]
TARGET = re.compile(rf"\s*(?:Set\s+)?(?:[\w.]|{PARENTHESES})*")  # what an assignment may have in front of a member


def uses_in(script, class_name, language):
    """The members that a script uses, in lower case, as pairs of a name and "call" (or get) or "put"."""
    classes = {}
    for variable, made in language.creation.findall(script):
        classes.setdefault(variable.lower(), set()).add(made.lower())
    code = language.hidden.sub(lambda match: '""' if match.group()[0] == '"' else "", script)
    uses = set()
    if language.enumeration.search(code):
        uses.add(("newenum", "call"))
    for found in re.finditer(r"(\w+)?\.([A-Za-z_]\w*)", code):
        receiver, member = (found.group(1) or "").lower(), found.group(2).lower()
        if class_name.lower() not in classes.get(receiver, {class_name.lower()}):
            continue
        statement = language.statement_end.split(code[:found.start()])[-1]
        assigned = language.assignment.match(code, found.end()) and TARGET.fullmatch(statement)
        uses.add((member, "put" if assigned else "call"))
    return uses


def members_of(description):
    """The members of each class with their kinds."""
    types = {each["name"]: each for each in description["types"]}
    for each in description["types"]:
        if each["kind"] == "class":
            default = next(it["name"] for it in each["implements"] if it["default"] and not it["source"])
            yield each["name"], [(member["name"], member["kind"]) for member in types[default]["members"]]


def main(library, folder):
    passed = failed = 0
    for class_name, members in members_of(json.loads(pathlib.Path(library).read_text("utf-8"))):
        for language in LANGUAGES:
            script = pathlib.Path(folder, class_name + language.suffix)
            uses = uses_in(script.read_text("utf-8"), class_name, language) if script.exists() else set()
            for name, kind in members:
                if (name.lower(), "put" if kind in ("put", "set") else "call") in uses:
                    passed += 1
                else:
                    failed += 1
                    print(f"FAILED {script.name} does not {'set' if kind in ('put', 'set') else 'use'} {name}")
    print(f"{passed} passed, {failed} failed")
    return failed == 0


if __name__ == "__main__":
    sys.exit(0 if main(*sys.argv[1:]) else 1)
