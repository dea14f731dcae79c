"""Builds the reference site: one page a class, one for the enumerations, one for each page of docs/, and an index.

usage: build_site.py <type library as JSON> <docs folder> <output folder>

What the type library says (members, arguments, defaults, events, help texts) is taken from its description; what only
a person can say stands in docs/classes/<Class>.md. A class without its page, or a member that its page never names, is
an error: the site has no holes.
"""
import html
import json
import pathlib
import re
import sys

import markdown

STYLE = """
:root { --ink: #1c2430; --soft: #5b6675; --line: #d9dee5; --paper: #ffffff; --tint: #f4f6f9; --accent: #0b5cad; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e4e8ee; --soft: #9aa5b4; --line: #333c48; --paper: #14181e; --tint: #1c222b; --accent: #6db3f2; }
}
* { box-sizing: border-box; }
body { margin: 0; color: var(--ink); background: var(--paper); font: 16px/1.55 system-ui, sans-serif; }
.page { display: grid; grid-template-columns: 17rem minmax(0, 1fr); min-height: 100vh; }
nav { background: var(--tint); border-right: 1px solid var(--line); padding: 1.5rem 1.25rem; font-size: .92rem; }
nav h2 { font-size: .8rem; text-transform: uppercase; letter-spacing: .05em; color: var(--soft); margin: 1.4rem 0 .3rem; }
nav ul { list-style: none; margin: 0; padding: 0; }
nav li { margin: .12rem 0; overflow-wrap: anywhere; }
main { padding: 2rem clamp(1rem, 4vw, 3.5rem) 5rem; max-width: 64rem; }
a { color: var(--accent); text-decoration: none; }
a:hover { text-decoration: underline; }
a.here { color: var(--ink); font-weight: 600; }
h1 { font-size: 1.9rem; margin: 0 0 .6rem; overflow-wrap: anywhere; }
h2 { margin: 2.2rem 0 .6rem; font-size: 1.3rem; }
h3 { margin: 1.7rem 0 .3rem; font-size: 1.05rem; }
code, pre { font-family: ui-monospace, "Cascadia Mono", Consolas, monospace; font-size: .9em; }
code { background: var(--tint); padding: .1em .3em; border-radius: 3px; }
pre { background: var(--tint); border: 1px solid var(--line); border-radius: 6px; padding: .9rem 1rem; overflow-x: auto; }
pre code { background: none; padding: 0; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; margin: .7rem 0; font-size: .94rem; }
th, td { border-bottom: 1px solid var(--line); padding: .4rem .6rem; text-align: left; vertical-align: top; }
th { color: var(--soft); font-weight: 600; }
.signature { font-family: ui-monospace, Consolas, monospace; font-size: .9rem; margin: .2rem 0; overflow-wrap: anywhere; }
.lead, .about { color: var(--soft); }
@media (max-width: 48rem) { .page { grid-template-columns: 1fr; } nav { border-right: 0; border-bottom: 1px solid var(--line); } }
"""

SUBSYSTEMS = [
    ("Text and values", ["CZEQUtilityStrings", "CStringSplitter", "CZEQUtilityNumerical", "CZEQUtilityCollections",
                         "CZEQUtilitySorting", "CRangeMapper", "Collection"]),
    ("Files", ["CZEQFileSystemObject", "CAttachment"]),
    ("File operations", ["CFileOperationBatch", "CFileOperation", "CFakeDrive"]),
    ("Settings", ["CAppOptions", "CAppSettings", "CAppSetting"]),
    ("Ini files and versions", ["CIniFile", "CIniFileEx", "CVersionInfo"]),
    ("Audit", ["CZEQAudit"]),
    ("Keyboard", ["CKeymapFilter", "CKeyMappings", "CKeyMapping"]),
    ("Change notification", ["CObservableClass", "IObservableClass", "CReferenceCounter"]),
    ("Help", ["CWinHelp", "IHelpProvider"]),
    ("Wizard", ["CWizard", "CWizardStepDetails", "IWizardStep"]),
]

KIND_TITLES = {"method": "Method", "get": "Property", "put": "Property", "set": "Property"}


class Library:
    def __init__(self, description):
        self.description = description
        self.types = {each["name"]: each for each in description["types"]}
        self.enumerations = [each for each in description["types"] if each["kind"] == "enumeration"]

    def documented(self):
        """Every class, and the interfaces that clients implement, by name."""
        names = [each["name"] for each in self.types.values() if each["kind"] == "class"]
        names += [name for name, each in self.types.items()
                  if each["kind"] == "interface" and not name.startswith("_")]
        return names

    def members(self, name):
        each = self.types[name]
        if each["kind"] == "interface":
            return each["members"]
        default = [it["name"] for it in each["implements"] if it["default"] and not it["source"]]
        return self.types[default[0]]["members"]

    def events(self, name):
        each = self.types[name]
        sources = [it["name"] for it in each.get("implements", []) if it["source"]]
        return self.types[sources[0]]["members"] if sources else []

    def linked(self, type_name):
        text = html.escape(type_name)
        if any(each["name"] == type_name for each in self.enumerations):
            return f'<a href="enumerations.html#{text}">{text}</a>'
        if type_name in self.documented():
            return f'<a href="{text}.html">{text}</a>'
        return text


def default_text(parameter):
    value = parameter.get("default")
    if value is None:
        return ""
    return f'"{value}"' if parameter["defaultIsText"] else value


def signature(member, parameters):
    """The member as it is written in a program, optional arguments in brackets."""
    parts = [f'[{each["name"]}]' if each["optional"] else each["name"] for each in parameters]
    text = f'{member["name"]}({", ".join(parts)})' if parts or member["kind"] == "method" else member["name"]
    return html.escape(text)


def grouped(members):
    """Members by name in their order: a property's directions belong together."""
    groups = {}
    for member in members:
        groups.setdefault(member["name"], []).append(member)
    return groups.values()


def parameters_table(library, parameters):
    if not parameters:
        return ""
    rows = []
    for each in parameters:
        passed = "by reference, written" if each["written"] else "by reference" if each["byRef"] else "by value"
        note = "optional" if each["optional"] else "required"
        value = default_text(each)
        if value:
            note += f", default <code>{html.escape(value)}</code>"
        rows.append(f'<tr><td><code>{html.escape(each["name"])}</code></td><td>{library.linked(each["type"])}</td>'
                    f"<td>{passed}</td><td>{note}</td></tr>")
    return ('<div class="scroll"><table><tr><th>Argument</th><th>Type</th><th>Passed</th><th></th></tr>'
            + "".join(rows) + "</table></div>")


def member_section(library, group):
    first = group[0]
    # A property's new value is no argument to a reader.
    parameters = first["parameters"] if first["kind"] in ("method", "get") else first["parameters"][:-1]
    access = {"get": "read", "put": "write", "set": "set object"}
    kind = KIND_TITLES[first["kind"]]
    if kind == "Property":
        kind += " (" + ", ".join(access[each["kind"]] for each in group) + ")"
    result = next((each["result"] for each in group if each["result"]), "")
    if not result and first["kind"] in ("put", "set"):
        result = first["parameters"][-1]["type"]
    default = ", default member" if first["id"] == 0 else ""
    helps = " ".join(dict.fromkeys(html.escape(each["help"]) for each in group))
    returns = f" &rarr; {library.linked(result)}" if result else ""
    return (f'<h3 id="{html.escape(first["name"])}">{html.escape(first["name"])}</h3>'
            f'<p class="signature">{signature(first, parameters)}{returns}</p>'
            f'<p>{helps} <span class="about">{kind}{default}.</span></p>' + parameters_table(library, parameters))


class Site:
    def __init__(self, library, docs, output):
        self.library, self.docs, self.output = library, docs, output
        self.articles = sorted(path for path in docs.glob("*.md"))

    def navigation(self, here):
        def link(target, text):
            mark = ' class="here"' if target == here else ""
            return f'<li><a href="{target}"{mark}>{html.escape(text)}</a></li>'

        parts = ["<ul>", link("index.html", "Overview"), link("enumerations.html", "Enumerations")]
        parts += [link(f"{path.stem}.html", title_of(path)) for path in self.articles]
        parts.append("</ul>")
        for title, names in SUBSYSTEMS:
            present = [name for name in names if name in self.library.types]
            if present:
                parts.append(f"<h2>{title}</h2><ul>" + "".join(link(f"{n}.html", n) for n in present) + "</ul>")
        return "".join(parts)

    def write(self, name, title, body):
        page = ('<!DOCTYPE html><html lang="en"><head><meta charset="utf-8">'
                '<meta name="viewport" content="width=device-width, initial-scale=1">'
                f"<title>{html.escape(title)} - ZEQUtility2</title><style>{STYLE}</style></head>"
                f'<body><div class="page"><nav>{self.navigation(name)}</nav><main>{body}</main></div></body></html>\n')
        (self.output / name).write_text(page, encoding="utf-8")

    def index(self):
        rows = []
        for title, names in SUBSYSTEMS:
            present = [name for name in names if name in self.library.types]
            if present:
                rows.append(f"<h2>{title}</h2>" + '<div class="scroll"><table>')
                rows += [f'<tr><td><a href="{n}.html">{n}</a></td><td>{html.escape(self.library.types[n]["help"])}</td></tr>'
                         for n in present]
                rows.append("</table></div>")
        self.write("index.html", "Reference",
                   f'<h1>ZEQUtility2</h1><p class="lead">{html.escape(self.library.description["help"])}: '
                   "every class, member, argument, default value, event and enumeration.</p>" + "".join(rows))

    def enumerations(self):
        body = ["<h1>Enumerations</h1>"]
        for each in self.library.enumerations:
            body.append(f'<h2 id="{each["name"]}">{each["name"]}</h2><p>{html.escape(each["help"])}</p>'
                        '<div class="scroll"><table><tr><th>Member</th><th>Value</th></tr>')
            body += [f'<tr><td><code>{html.escape(it["name"])}</code></td><td>{it["value"]}</td></tr>'
                     for it in each["values"]]
            body.append("</table></div>")
        self.write("enumerations.html", "Enumerations", "".join(body))

    def class_page(self, name):
        source = self.docs / "classes" / f"{name}.md"
        if not source.exists():
            raise SystemExit(f"docs/classes/{name}.md is missing")
        text = source.read_text(encoding="utf-8")
        members, events = self.library.members(name), self.library.events(name)
        unnamed = sorted({each["name"] for each in members + events if not names_member(text, each["name"])})
        if unnamed:
            raise SystemExit(f"docs/classes/{name}.md does not name: {', '.join(unnamed)}")
        body = to_html(text)
        body += '<h2 id="reference">Reference</h2>'
        body += "".join(member_section(self.library, group) for group in grouped(members))
        if events:
            body += '<h2 id="events">Events</h2>'
            body += "".join(member_section(self.library, group) for group in grouped(events))
        self.write(f"{name}.html", name, body)

    def build(self):
        self.output.mkdir(parents=True, exist_ok=True)
        for old in self.output.glob("*.html"):
            old.unlink()
        listed = {name for _, names in SUBSYSTEMS for name in names}
        unlisted = sorted(set(self.library.documented()) - listed)
        if unlisted:
            raise SystemExit(f"no subsystem lists: {', '.join(unlisted)}")
        for type_name, each in self.library.types.items():
            lacking = [it["name"] for it in each.get("members", []) if not it["help"]]
            if not each["help"] or lacking:
                raise SystemExit(f"{type_name} lacks help texts: {lacking}")
        self.index()
        self.enumerations()
        for path in self.articles:
            self.write(f"{path.stem}.html", title_of(path), to_html(path.read_text(encoding="utf-8")))
        for name in self.library.documented():
            self.class_page(name)


def names_member(text, member):
    return re.search(rf"\b{re.escape(member)}\b", text) is not None


def title_of(path):
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.startswith("# "):
            return line[2:].strip()
    return path.stem


def to_html(text):
    body = markdown.markdown(text, extensions=["tables", "fenced_code", "toc"])
    body = re.sub(r'href="(?:classes/|\.\./)?([A-Za-z0-9_-]+)\.md(#[^"]*)?"',
                  lambda match: f'href="{match.group(1)}.html{match.group(2) or ""}"', body)
    return body.replace("<table>", '<div class="scroll"><table>').replace("</table>", "</table></div>")


def main(arguments):
    description, docs, output = arguments
    library = Library(json.loads(pathlib.Path(description).read_text(encoding="utf-8")))
    site = Site(library, pathlib.Path(docs), pathlib.Path(output))
    site.build()
    print(f"{len(list(site.output.glob('*.html')))} pages in {site.output}")


if __name__ == "__main__":
    main(sys.argv[1:])
