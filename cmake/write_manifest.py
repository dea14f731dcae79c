"""Writes the manifest of the component, with which Windows finds its classes without registration.

usage: write_manifest.py <type library> <manifest> <DLL's file name> <version, four numbers> <x86 or amd64>
"""
import sys
from xml.sax.saxutils import quoteattr

from msft import TKIND_COCLASS, TKIND_DISPATCH, TYPEFLAG_FDUAL, TypeLibrary

DUAL_MARSHALLER = "{00020424-0000-0000-C000-000000000046}"
DISPATCH_MARSHALLER = "{00020420-0000-0000-C000-000000000046}"


def element(name, attributes, indent, end="/>"):
    text = "".join(f" {key}={quoteattr(value)}" for key, value in attributes.items())
    return f"{' ' * indent}<{name}{text}{end}"


def manifest(library, dll, version, architecture):
    name = dll.rsplit(".", 1)[0]
    tlbid = library.library_guid
    lines = [
        '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
        '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">',
        element("assemblyIdentity", {"type": "win32", "name": name, "version": version,
                                     "processorArchitecture": architecture}, 2),
        element("file", {"name": dll}, 2, ">"),
    ]
    for info in library.typeinfos():
        if info.kind == TKIND_COCLASS:
            lines.append(element("comClass", {
                "clsid": info.guid, "description": info.helpstring, "threadingModel": "Apartment", "tlbid": tlbid,
                "progid": f"{name}.{info.name}"}, 4))
    lines.append(element("typelib", {"tlbid": tlbid, "version": library.version, "helpdir": ""}, 4))
    lines.append("  </file>")
    for info in library.typeinfos():
        if info.kind == TKIND_DISPATCH:
            marshaller = DUAL_MARSHALLER if info.flags & TYPEFLAG_FDUAL else DISPATCH_MARSHALLER
            lines.append(element("comInterfaceExternalProxyStub", {
                "name": info.name, "iid": info.guid, "proxyStubClsid32": marshaller, "tlbid": tlbid}, 2))
    lines.append("</assembly>")
    return "\n".join(lines) + "\n"


def main(typelib, target, dll, version, architecture):
    with open(target, "w", encoding="utf-8", newline="\r\n") as file:
        file.write(manifest(TypeLibrary(typelib), dll, version, architecture))


if __name__ == "__main__":
    main(*sys.argv[1:])
