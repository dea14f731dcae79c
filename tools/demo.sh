#!/usr/bin/env bash
# Shows the main job: builds and registers the 32-bit library in a Windows environment of its own, and has two clients
# copy a folder of real files with it, a script and a C++ program. Safe to run again.
source "$(dirname "$0")/lib.sh"
"$root/tools/setup.sh"

step "demo: building the 32-bit library and the C++ client"
configure win32
cmake --build --preset win32 --target ZEQUtility2 batch_copy >"$build/demo-build.log" 2>&1 || {
  cat "$build/demo-build.log" >&2
  die "the build failed"
}

step "demo: registering it with regsvr32"
use_prefix demo
register_library 32
say "registered dist/win32/ZEQUtility2.dll"

# A few hundred files from nothing to 400,000 bytes, the same ones every time.
folder=$build/demo
source=$folder/source
rm -rf "$folder"
mkdir -p "$source"
for i in $(seq 1 300); do
  subfolder=$source/part$((i % 7))/group$((i % 3))
  mkdir -p "$subfolder"
  head -c $((i * i * 37 % 400000)) <(yes "file $i of the demo") >"$subfolder/file$i.dat" || true
done
say "made $(find "$source" -type f | wc -l) files, $(du -sh --apparent-size "$source" | cut -f 1), in build/demo/source"

# show: passes the text of a Windows program on. A bar that is drawn over and over shows its last state alone where
# nobody watches it.
show() {
  if [ -t 1 ]; then
    cat
  else
    sed 's/\r$//; s/.*\r//'
  fi
}

# run_demo TARGET COMMAND...: runs a client on the source and a target folder, and compares both sides.
run_demo() {
  local target=$folder/$1
  shift
  timeout 300 "$wine32" "$@" "$(windows_path "$source")" "$(windows_path "$target")" </dev/null 2>/dev/null | show ||
    die "the client failed"
  diff -r "$source" "$target" || die "the copy differs from the source"
  say "diff finds no difference between build/demo/source and build/demo/$(basename "$target")"
}

step "demo: a script copies it (samples/vbscript/dry-run-then-copy.vbs)"
run_demo script cscript.exe //nologo "$(windows_path "$root/samples/vbscript/dry-run-then-copy.vbs")"

step "demo: a C++ program copies it (samples/cpp/batch_copy.cpp)"
run_demo program "$build/win32/bin/batch_copy.exe"
stop_prefix

say
say "You have seen two clients that know ZEQUtility2 only through COM plan 300 copies and try them out against the drive,"
say "refuse a copy that would fill it too far, and then copy for real, file by file, with the same result as the source."
