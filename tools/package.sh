#!/usr/bin/env bash
# Makes what people install: dist/ZEQUtility2-<version>.zip and dist/ZEQUtility2-<version>-setup.exe, each with both
# DLLs, type library, headers, manifests, documentation with the reference site, and samples.
source "$(dirname "$0")/lib.sh"
"$root/tools/build.sh" win32 win64
"$root/tools/docs.sh"

version=$(sed -n 's/^project(ZEQUtility2 VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ -n "$version" ] || die "no version in CMakeLists.txt"
name=ZEQUtility2-$version
stage=$build/package/$name

step "package: $name"
rm -rf "$build/package"
mkdir -p "$stage"
cp README.md "$stage/"
cp -r dist/win32 dist/win64 "$stage/"
cp -r docs samples "$stage/"
find "$stage/samples" -name CMakeLists.txt -delete

# The uninstaller deletes the files that the installer brought and the folders that this leaves empty, nothing else.
(cd "$stage" && find . -type f -printf '%P\n' | sort | sed 's|/|\\|g; s|.*|Delete "$INSTDIR\\&"|'
  find . -mindepth 1 -type d -printf '%P\n' | sort -r | sed 's|/|\\|g; s|.*|RMDir "$INSTDIR\\&"|') >"$stage.uninstall.nsh"

rm -f "dist/$name.zip" "dist/$name-setup.exe"
(cd "$build/package" && zip -qrX "$root/dist/$name.zip" "$name")
makensis -V2 -DVERSION="$version" -DSTAGE="$stage" -DOUTPUT="$root/dist/$name-setup.exe" packaging/ZEQUtility2.nsi
ls -l "dist/$name.zip" "dist/$name-setup.exe"
