#!/usr/bin/env bash
# Builds the library for both bitnesses into dist/win32 and dist/win64, with its tests, benchmarks and samples.
# Arguments name presets of CMakePresets.json to build instead.
source "$(dirname "$0")/lib.sh"
"$root/tools/setup.sh"

presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(win32 win64)
for preset in "${presets[@]}"; do
  step "build: $preset"
  configure "$preset"
  cmake --build --preset "$preset"
done
