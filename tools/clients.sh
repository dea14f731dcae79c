#!/usr/bin/env bash
# Registers the built library for both bitnesses and runs its clients: the scripts of tests/clients as a user does, with
# the 32-bit and the 64-bit script host, and the C++ programs of tests/clients/conformance. Arguments name scripts to run
# instead of all (CFakeDrive.vbs, or CFakeDrive for every language). The last line is the total.
source "$(dirname "$0")/lib.sh"
use_prefix test

passed=0
failed=0
work=$build/clients

# run_client BITS NAME COMMAND...: runs one client, which gets the path of an empty folder as its last argument, and adds
# its counts to the total.
run_client() {
  local bits=$1 name=$2 totals
  shift 2
  local home=$work/$bits-$name
  mkdir -p "$home/scratch"
  timeout -k 10 120 "$(wine_for "$bits")" "$@" "$(windows_path "$home/scratch")" >"$home/output" 2>&1 </dev/null || true
  sed -i 's/\r$//' "$home/output"
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

# run_script BITS SCRIPT: runs a script together with the functions that it checks with.
run_script() {
  local bits=$1 script=$2 name
  name=$(basename "$script")
  mkdir -p "$work/$bits-$name"
  cat "$script" "tests/clients/check.${name##*.}" >"$work/$bits-$name/$name"
  run_client "$bits" "$name" cscript.exe //nologo "$(windows_path "$work/$bits-$name/$name")"
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
rm -rf "$work"
for bits in 32 64; do
  for script in "${scripts[@]}"; do
    run_script "$bits" "$script"
  done
  if [ $# -eq 0 ]; then
    for binding in early late; do
      run_client "$bits" "${binding}_client" "$build/win$bits/bin/${binding}_client.exe"
    done
  fi
done
stop_prefix
say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
