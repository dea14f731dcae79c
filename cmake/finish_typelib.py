"""Finishes a type library that widl wrote, in place.

widl cannot say four things that clients need, and this says them:
- an application object is also pre-declared and creatable (TYPEFLAG_FPREDECLID, TYPEFLAG_FCANCREATE);
- the default of an optional by-reference string is the empty string (the interface description writes 0, because
  widl refuses a text there);
- a name that is used in several spellings shows the one of the public member, given in SPELLINGS;
- the library carries no build time, so that equal sources give equal files.
"""
import struct
import sys

from msft import (SEGMENT_COUNT, SEGMENT_CUSTDATA, SEGMENT_CUSTDATA_GUIDS, SEGMENT_NAMES, TKIND_COCLASS,
                  TYPEFLAG_FAPPOBJECT, TYPEFLAG_FCANCREATE, TYPEFLAG_FPREDECLID, TypeLibrary)

# The type library keeps one spelling of each name, case aside. widl keeps the first that it meets; these win instead.
SPELLINGS = ["count", "description", "Name", "Item", "Key", "Index", "section", "file", "values", "value",
             "Domain", "Range", "hwnd", "Caption", "Shift", "KeyCode", "Path", "Field", "Record", "Keys",
             "folder", "State", "Parameter", "Execute", "Simulating", "Clear", "processed"]

INLINE_EMPTY_BSTR = 0x80000000 | (8 << 26)  # VT_BSTR with the value 0, in the packed form
EMPTY_BSTR_RECORD = struct.pack("<HiH", 8, -1, 0x5757)  # as Microsoft's compiler writes an empty string
BUILD_TIME = "{DE77BA63-517C-11D1-A2DA-0000F8773CE9}"  # the custom data that holds it as a number
FUNC_HAS_DEFAULTS = 0x1000
ARGUMENT_COUNT_OFFSET = 0x14


def predeclare_application_objects(library):
    for info in library.typeinfos():
        if info.kind == TKIND_COCLASS and info.flags & TYPEFLAG_FAPPOBJECT:
            info.flags |= TYPEFLAG_FCANCREATE | TYPEFLAG_FPREDECLID


def append_empty_string(library):
    """Adds an empty string to the end of the custom data segment and returns its offset there."""
    start, length = library.segment(SEGMENT_CUSTDATA)
    if start < 0:
        raise SystemExit("the library has no custom data segment to extend")
    end = start + length
    for index in range(SEGMENT_COUNT):
        at = library.segments_at + 16 * index
        if library.int(at) >= end:
            library.put(at, library.int(at) + len(EMPTY_BSTR_RECORD))
    for info in library.typeinfos():
        if info.members_at >= end:
            info.members_at += len(EMPTY_BSTR_RECORD)
    library.put(library.segments_at + 16 * SEGMENT_CUSTDATA + 4, length + len(EMPTY_BSTR_RECORD))
    library.data[end:end] = EMPTY_BSTR_RECORD
    # The typeinfo segment lies before the custom data, so its own offsets did not move.
    return length


def default_values(library):
    """File offsets of all argument default values."""
    for info in library.typeinfos():
        if info.members_at <= 0 or info.kind == TKIND_COCLASS:
            continue
        record = info.members_at + 4
        for _ in range(info.function_count):
            length = library.int(record) & 0xFFFF
            arguments = library.int(record + ARGUMENT_COUNT_OFFSET) & 0xFFFF
            if library.uint(record + 0x10) & FUNC_HAS_DEFAULTS:
                first = record + length - arguments * 16
                yield from range(first, first + 4 * arguments, 4)
            record += length


def give_strings_their_default(library):
    packed = [at for at in default_values(library) if library.uint(at) == INLINE_EMPTY_BSTR]
    if packed:
        before = len(library.data)
        custdata_end = sum(library.segment(SEGMENT_CUSTDATA))
        record = append_empty_string(library)
        moved = len(library.data) - before
        for at in packed:
            library.put(at + (moved if at >= custdata_end else 0), record)


def spell_names(library):
    start, length = library.segment(SEGMENT_NAMES)
    wanted = {name.lower().encode(): name.encode() for name in SPELLINGS}
    at = start
    while at < start + length:
        size = library.data[at + 8]
        name = bytes(library.data[at + 12:at + 12 + size])
        library.data[at + 12:at + 12 + size] = wanted.get(name.lower(), name)
        at += 12 + (size + 3) // 4 * 4


def drop_build_time(library):
    """Blanks the text and the number that widl leaves as custom data of the library to tell when it was built."""
    start, length = library.segment(SEGMENT_CUSTDATA)
    at = library.data.find(b"Created by WIDL", start, start + length)
    if at >= 0:
        size = library.int(at - 4)
        library.data[at:at + size] = b"Created by WIDL".ljust(size)
    entries, entries_length = library.segment(SEGMENT_CUSTDATA_GUIDS)
    for entry in range(entries, entries + entries_length, 12):
        if library.guid(library.int(entry)) == BUILD_TIME:
            library.put(start + library.int(entry + 4) + 2, 0)


def main(path):
    library = TypeLibrary(path)
    predeclare_application_objects(library)
    give_strings_their_default(library)
    spell_names(library)
    drop_build_time(library)
    library.save(path)


if __name__ == "__main__":
    main(sys.argv[1])
