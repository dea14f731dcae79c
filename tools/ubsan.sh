#!/usr/bin/env bash
# Builds the Windows programs so that they end at anything that the language leaves undefined (the presets win32-ubsan and
# win64-ubsan), and runs the unit tests, the component tests and a torture run with them: tools/ubsan.sh [32|64] [seed].
# It takes as long as the build and the tests together; what it builds is for tests only and stays out of dist. The last
# line is the total.
source "$(dirname "$0")/count.sh"

both=(32 64)
seed=${2:-$((RANDOM * 32768 + RANDOM))}

for bits in "${1:-${both[@]}}"; do
  "$root/tools/build.sh" "win$bits-ubsan"
  programs=$build/win$bits-ubsan/bin
  step "undefined behaviour, $bits-bit, seed $seed"
  rm -rf "$build/prefix-ubsan$bits"
  use_prefix "ubsan$bits"
  for program in unit component; do
    run_tests "$program tests that trap, $bits-bit" "$(wine_for "$bits")" "$programs/${program}_tests.exe"
  done
  stop_prefix
  ZEQ_BUILT=yes run_counted "torture that traps, $bits-bit" tools/torture.sh 100000 "$seed" "$bits" -ubsan
done
step "total"
report_total
