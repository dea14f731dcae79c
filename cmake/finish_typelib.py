"""Finishes a type library that widl wrote, in place. The file is in Microsoft's MSFT format.

widl cannot say four things that clients need, and this says them:
- an application object is also pre-declared and creatable (TYPEFLAG_FPREDECLID, TYPEFLAG_FCANCREATE);
- the default of an optional by-reference string is the empty string (the interface description writes 0, because
  widl refuses a text there);
- a name that is used in several spellings shows the one of the public member, given in SPELLINGS;
- the library carries no build time, so that equal sources give equal files.
"""
import struct
import sys

# The type library keeps one spelling of each name, case aside. widl keeps the first that it meets; these win instead.
SPELLINGS = ["count", "description", "Name", "Item", "Key", "Index", "section", "file", "values", "value",
             "Domain", "Range", "hwnd", "Caption", "Shift", "KeyCode", "Path", "Field", "Record", "Keys",
             "folder", "State", "Parameter", "Execute", "Simulating", "Clear", "processed"]

TYPEFLAG_FAPPOBJECT, TYPEFLAG_FCANCREATE, TYPEFLAG_FPREDECLID = 0x01, 0x02, 0x08
TKIND_COCLASS = 5
HEADER_SIZE, TYPEINFO_SIZE = 0x54, 0x64
SEGMENT_TYPEINFO, SEGMENT_NAMES, SEGMENT_CUSTDATA = 0, 7, 11
SEGMENT_COUNT = 15
INLINE_EMPTY_BSTR = 0x80000000 | (8 << 26)  # VT_BSTR with the value 0, in the packed form
EMPTY_BSTR_RECORD = struct.pack("<HiH", 8, -1, 0x5757)  # as Microsoft's compiler writes an empty string
FUNC_HAS_DEFAULTS = 0x1000
ARGUMENT_COUNT_OFFSET = 0x14


class TypeLibrary:
    def __init__(self, data):
        self.data = bytearray(data)
        if self.data[:4] != b"MSFT":
            raise SystemExit("not an MSFT type library")
        self.typeinfo_count = self.int(0x20)
        varflags = self.int(0x14)
        self.segments_at = HEADER_SIZE + 4 * self.typeinfo_count + (4 if varflags & 0x100 else 0)

    def int(self, at):
        return struct.unpack_from("<i", self.data, at)[0]

    def uint(self, at):
        return struct.unpack_from("<I", self.data, at)[0]

    def put(self, at, value):
        struct.pack_into("<I", self.data, at, value & 0xFFFFFFFF)

    def segment(self, index):
        """File offset and length of a segment."""
        return self.int(self.segments_at + 16 * index), self.int(self.segments_at + 16 * index + 4)

    def typeinfos(self):
        start, length = self.segment(SEGMENT_TYPEINFO)
        return range(start, start + length, TYPEINFO_SIZE)

    def predeclare_application_objects(self):
        for info in self.typeinfos():
            flags = self.uint(info + 0x30)
            if self.uint(info) & 0xF == TKIND_COCLASS and flags & TYPEFLAG_FAPPOBJECT:
                self.put(info + 0x30, flags | TYPEFLAG_FCANCREATE | TYPEFLAG_FPREDECLID)

    def append_empty_string(self):
        """Adds an empty string to the end of the custom data segment and returns its offset there."""
        start, length = self.segment(SEGMENT_CUSTDATA)
        if start < 0:
            raise SystemExit("the library has no custom data segment to extend")
        end = start + length
        for index in range(SEGMENT_COUNT):
            at = self.segments_at + 16 * index
            if self.int(at) >= end:
                self.put(at, self.int(at) + len(EMPTY_BSTR_RECORD))
        for info in self.typeinfos():
            if self.int(info + 4) >= end:
                self.put(info + 4, self.int(info + 4) + len(EMPTY_BSTR_RECORD))
        self.put(self.segments_at + 16 * SEGMENT_CUSTDATA + 4, length + len(EMPTY_BSTR_RECORD))
        self.data[end:end] = EMPTY_BSTR_RECORD
        # The typeinfo segment lies before the custom data, so its own offsets did not move.
        return length

    def default_values(self):
        """File offsets of all argument default values."""
        for info in self.typeinfos():
            members = self.int(info + 4)
            functions = self.int(info + 0x18) & 0xFFFF
            if members <= 0 or self.uint(info) & 0xF == TKIND_COCLASS:
                continue
            record = members + 4
            for _ in range(functions):
                length = self.int(record) & 0xFFFF
                arguments = self.int(record + ARGUMENT_COUNT_OFFSET) & 0xFFFF
                if self.uint(record + 0x10) & FUNC_HAS_DEFAULTS:
                    first = record + length - arguments * 16
                    yield from range(first, first + 4 * arguments, 4)
                record += length

    def give_strings_their_default(self):
        packed = [at for at in self.default_values() if self.uint(at) == INLINE_EMPTY_BSTR]
        if packed:
            before = len(self.data)
            custdata_end = sum(self.segment(SEGMENT_CUSTDATA))
            record = self.append_empty_string()
            moved = len(self.data) - before
            for at in packed:
                self.put(at + (moved if at >= custdata_end else 0), record)

    def spell_names(self):
        start, length = self.segment(SEGMENT_NAMES)
        wanted = {name.lower().encode(): name.encode() for name in SPELLINGS}
        at = start
        while at < start + length:
            size = self.data[at + 8]
            name = bytes(self.data[at + 12:at + 12 + size])
            self.data[at + 12:at + 12 + size] = wanted.get(name.lower(), name)
            at += 12 + (size + 3) // 4 * 4

    def drop_build_time(self):
        """Blanks the text that widl leaves as custom data of the library."""
        start, length = self.segment(SEGMENT_CUSTDATA)
        at = self.data.find(b"Created by WIDL", start, start + length)
        if at >= 0:
            size = self.int(at - 4)
            self.data[at:at + size] = b"Created by WIDL".ljust(size)


def main(path):
    with open(path, "rb") as file:
        library = TypeLibrary(file.read())
    library.predeclare_application_objects()
    library.give_strings_their_default()
    library.spell_names()
    library.drop_build_time()
    with open(path, "wb") as file:
        file.write(library.data)


if __name__ == "__main__":
    main(sys.argv[1])
