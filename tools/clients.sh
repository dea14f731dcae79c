#!/usr/bin/env bash
# Registers the built library for both bitnesses and runs the scripts of tests/clients as a user does, with the 32-bit
# and the 64-bit script host. Arguments name scripts to run instead of all (CFakeDrive.vbs, or CFakeDrive for every
# language). The last line is the total.
source "$(dirname "$0")/lib.sh"
use_prefix test

passed=0
failed=0
work=$build/clients

# run_client BITS SCRIPT: runs one script in an empty folder of its own and adds its counts to the total.
run_client() {
  local bits=$1 script=$2 name totals
  name=$(basename "$script")
  local home=$work/$bits-$name
  rm -rf "$home"
  mkdir -p "$home/scratch"
  cat "$script" "tests/clients/check.${name##*.}" >"$home/$name"
  timeout 120 "$(wine_for "$bits")" cscript.exe //nologo "$(windows_path "$home/$name")" \
    "$(windows_path "$home/scratch")" 2>&1 </dev/null | tr -d '\r' >"$home/output" || true
  totals=$(grep -E '^[0-9]+ passed, [0-9]+ failed$' "$home/output" | tail -n 1) || true
  grep '^FAILED' "$home/output" || true
  if [[ $totals =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]] && ((BASH_REMATCH[1] + BASH_REMATCH[2] > 0)); then
    passed=$((passed + BASH_REMATCH[1]))
    failed=$((failed + BASH_REMATCH[2]))
    say "$bits-bit $name: $totals"
  else
    failed=$((failed + 1))
    say "FAILED $bits-bit $name stopped before its end; the last it said: $(tail -n 1 "$home/output")"
  fi
}

scripts=()
for script in tests/clients/*.vbs tests/clients/*.js; do
  name=$(basename "$script")
  [ "${name%.*}" != check ] || continue
  if [ $# -eq 0 ] || [[ " $* " == *" $name "* || " $* " == *" ${name%.*} "* ]]; then
    scripts+=("$script")
  fi
done
[ ${#scripts[@]} -gt 0 ] || die "no such script in tests/clients"

for bits in 32 64; do
  register_library "$bits"
done
for bits in 32 64; do
  for script in "${scripts[@]}"; do
    run_client "$bits" "$script"
  done
done
stop_prefix
say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
