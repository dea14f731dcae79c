"""Type libraries in Microsoft's MSFT format, as widl writes them: where things lie, and what the build reads from them."""
import struct
import uuid

TYPEFLAG_FAPPOBJECT, TYPEFLAG_FCANCREATE, TYPEFLAG_FPREDECLID, TYPEFLAG_FDUAL = 0x01, 0x02, 0x08, 0x40
TKIND_DISPATCH, TKIND_COCLASS = 4, 5
SEGMENT_TYPEINFO, SEGMENT_GUIDS, SEGMENT_NAMES, SEGMENT_STRINGS = 0, 5, 7, 8
SEGMENT_CUSTDATA, SEGMENT_CUSTDATA_GUIDS = 11, 12
SEGMENT_COUNT = 15
HEADER_SIZE, TYPEINFO_SIZE = 0x54, 0x64


class TypeLibrary:
    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = bytearray(file.read())
        if self.data[:4] != b"MSFT":
            raise SystemExit(f"{path} is not an MSFT type library")
        varflags = self.int(0x14)
        self.segments_at = HEADER_SIZE + 4 * self.int(0x20) + (4 if varflags & 0x100 else 0)

    def save(self, path):
        with open(path, "wb") as file:
            file.write(self.data)

    def int(self, at):
        return struct.unpack_from("<i", self.data, at)[0]

    def uint(self, at):
        return struct.unpack_from("<I", self.data, at)[0]

    def put(self, at, value):
        struct.pack_into("<I", self.data, at, value & 0xFFFFFFFF)

    def segment(self, index):
        """File offset and length of a segment."""
        return self.int(self.segments_at + 16 * index), self.int(self.segments_at + 16 * index + 4)

    def guid(self, offset):
        start, _ = self.segment(SEGMENT_GUIDS)
        return "{%s}" % str(uuid.UUID(bytes_le=bytes(self.data[start + offset:start + offset + 16]))).upper()

    def name(self, offset):
        at = self.segment(SEGMENT_NAMES)[0] + offset
        return self.data[at + 12:at + 12 + self.data[at + 8]].decode("ascii")

    def string(self, offset):
        if offset < 0:
            return ""
        at = self.segment(SEGMENT_STRINGS)[0] + offset
        return self.data[at + 2:at + 2 + struct.unpack_from("<H", self.data, at)[0]].decode("cp1252")

    @property
    def library_guid(self):
        return self.guid(self.int(0x08))

    @property
    def version(self):
        return "%d.%d" % struct.unpack_from("<HH", self.data, 0x18)

    def typeinfos(self):
        """The records of all types."""
        start, length = self.segment(SEGMENT_TYPEINFO)
        return [TypeInfo(self, at) for at in range(start, start + length, TYPEINFO_SIZE)]


class TypeInfo:
    """One type: the record at a file offset."""

    def __init__(self, library, at):
        self.library, self.at = library, at

    @property
    def kind(self):
        return self.library.uint(self.at) & 0xF

    @property
    def members_at(self):
        """File offset of the member records."""
        return self.library.int(self.at + 0x04)

    @members_at.setter
    def members_at(self, value):
        self.library.put(self.at + 0x04, value)

    @property
    def function_count(self):
        return self.library.int(self.at + 0x18) & 0xFFFF

    @property
    def guid(self):
        return self.library.guid(self.library.int(self.at + 0x2C))

    @property
    def flags(self):
        return self.library.uint(self.at + 0x30)

    @flags.setter
    def flags(self, value):
        self.library.put(self.at + 0x30, value)

    @property
    def name(self):
        return self.library.name(self.library.int(self.at + 0x34))

    @property
    def helpstring(self):
        return self.library.string(self.library.int(self.at + 0x3C))
