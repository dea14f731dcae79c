#!/usr/bin/env bash
# Random calls with random arguments on every class, in an environment of its own that is thrown away:
# tools/torture.sh [calls a bitness] [seed] [bitness] [-ubsan]. Without a seed a new one is drawn and printed; with it a
# run repeats. Without a bitness both are run; with -ubsan the program that tools/ubsan.sh builds. Where ZEQ_BUILT is
# "yes" the programs are run as they are, without a build. The last line is the total.
source "$(dirname "$0")/count.sh"
calls=${1:-1000000}
seed=${2:-$((RANDOM * 32768 + RANDOM))}
both=(32 64)
[ "${ZEQ_BUILT:-}" = yes ] || "$root/tools/build.sh" win32 win64

rounds=20
for bits in "${3:-${both[@]}}"; do
  step "torture, $bits-bit, seed $seed"
  rm -rf "$build/prefix-torture$bits"
  use_prefix "torture$bits"
  if timeout 3600 "$(wine_for "$bits")" "$build/win$bits${4:-}/bin/torture.exe" \
    --seed "$seed" --rounds $rounds --calls $((calls / rounds)) </dev/null 2>&1 | tr -d '\r' |
    tee "$build/torture$bits.log" && grep -q '^ok torture' "$build/torture$bits.log"; then
    count "torture, $bits-bit" 1 0
  else
    say "FAILED tools/torture.sh $calls $seed $bits"
    count "torture, $bits-bit" 0 1
  fi
  stop_prefix
done
say
report_total
