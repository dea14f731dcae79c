#!/usr/bin/env bash
# Builds the library for both bitnesses into dist/win32 and dist/win64, with its tests, benchmarks and samples.
# Arguments name presets to build instead (win32, win64, native).
source "$(dirname "$0")/lib.sh"
"$root/tools/setup.sh"

presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(win32 win64)
for preset in "${presets[@]}"; do
  step "build: $preset"
  mkdir -p "$build"
  if [ ! -f "$build/$preset/build.ninja" ]; then
    cmake --preset "$preset" >"$build/configure-$preset.log" 2>&1 || {
      cat "$build/configure-$preset.log" >&2
      die "cmake failed"
    }
  fi
  cmake --build --preset "$preset"
done
