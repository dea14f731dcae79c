#!/usr/bin/env bash
# Random calls with random arguments on every class, both bitnesses, in an environment of its own that is thrown away:
# tools/torture.sh [calls a bitness] [seed]. Without a seed a new one is drawn and printed; with it a run repeats.
source "$(dirname "$0")/lib.sh"
calls=${1:-1000000}
seed=${2:-$((RANDOM * 32768 + RANDOM))}
[ "${ZEQ_BUILT:-}" = yes ] || "$root/tools/build.sh" win32 win64

rounds=20
rm -rf "$build/prefix-torture"
use_prefix torture
failed=0
for bits in 32 64; do
  step "torture, $bits-bit, seed $seed"
  timeout 3600 "$(wine_for "$bits")" "$build/win$bits/bin/torture.exe" \
    --seed "$seed" --rounds $rounds --calls $((calls / rounds)) | tr -d '\r' || failed=1
done
stop_prefix
exit $failed
