#!/usr/bin/env bash
# Reads the sources with clang-tidy (.clang-tidy says what it looks for): what needs no Windows header and the fuzzers as
# they are built for this machine, the rest as it is built for 64-bit Windows. Arguments name files to read instead of
# all. It needs the build's description of how each file is compiled, so it configures first, and the type library's
# header.
source "$(dirname "$0")/lib.sh"
"$root/tools/setup.sh"

triplet=x86_64-w64-mingw32
log=$build/lint.log

for preset in native fuzz win64; do
  configure "$preset"
done
cmake --build --preset win64 --target typelib >/dev/null

# The folders in which the cross compiler finds its standard library and the Windows headers.
mapfile -t folders < <("$triplet-g++-posix" -E -x c++ -v - </dev/null 2>&1 |
  sed -n '/^#include <...>/,/^End of search list/s/^ //p')
windows_arguments=(--extra-arg=--target=$triplet --extra-arg=-nostdinc++ --extra-arg=-Wno-unknown-warning-option)
for folder in "${folders[@]}"; do
  # The compiler's own intrinsics are not for clang, which brings its own.
  case $folder in */include/c++* | */sys-root/* | */$triplet/include) windows_arguments+=("--extra-arg=-isystem$folder") ;; esac
done

if [ $# -gt 0 ]; then
  files=("$@")
else
  mapfile -t files < <(git ls-files -- 'src/*.cpp' 'tests/*.cpp' 'bench/*.cpp' 'samples/*.cpp' 'tools/*.cpp')
fi

native=()
fuzz=()
windows=()
for file in "${files[@]}"; do
  if grep -qF "\"file\": \"$root/$file\"" "$build/native/compile_commands.json"; then
    native+=("$file")
  elif grep -qF "\"file\": \"$root/$file\"" "$build/fuzz/compile_commands.json"; then
    fuzz+=("$file")
  elif grep -qF "\"file\": \"$root/$file\"" "$build/win64/compile_commands.json"; then
    windows+=("$file")
  else
    die "$file is not part of the build"
  fi
done

# tidy PRESET FILES -- ARGUMENTS: two at a time; the log gets what is found, the status what became of clang-tidy.
status=0
tidy() {
  local preset=$1
  shift
  local -a sources=()
  while [ "$1" != -- ]; do
    sources+=("$1")
    shift
  done
  shift
  [ ${#sources[@]} -gt 0 ] || return 0
  printf '%s\0' "${sources[@]}" | xargs -0 -n 1 -P 2 clang-tidy --quiet -p "$build/$preset" "$@" \
    >>"$log" 2>>"$log.errors" || status=$?
}

step "lint: ${#files[@]} files"
: >"$log"
: >"$log.errors"
tidy native "${native[@]}" -- --extra-arg=-Wno-unknown-warning-option
tidy fuzz "${fuzz[@]}" --
tidy win64 "${windows[@]}" -- "${windows_arguments[@]}"
found=$(grep -cE '(warning|error):' "$log" || true)
cat "$log"
# Findings make clang-tidy end with a status of its own, for which xargs says 123; anything else is a failure of the tool.
if [ "$status" -ne 0 ] && { [ "$status" -ne 123 ] || [ "$found" -eq 0 ]; }; then
  tail -n 30 "$log.errors" >&2
  die "clang-tidy failed (status $status of xargs), see $log.errors"
fi
say "$found findings"
[ "$found" -eq 0 ]
