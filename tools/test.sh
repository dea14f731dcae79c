#!/usr/bin/env bash
# Proves the library: builds everything for this machine, 32-bit and 64-bit Windows, checks the format of the sources,
# runs the portable tests and the fuzzers under the sanitizers, the unit and component tests and the clients of the
# registered library under Wine for both bitnesses, builds the reference site, makes the package, installs and uninstalls
# it. Ends with one line: N passed, N failed.
source "$(dirname "$0")/lib.sh"

passed=0
failed=0

# count NAME PASSED FAILED: adds to the total and says so.
count() {
  passed=$((passed + $2))
  failed=$((failed + $3))
  say "$1: $2 passed, $3 failed"
}

# log_of NAME: where the output of that part goes.
log_of() { printf '%s/test-%s.log' "$build" "$(tr -c 'a-z0-9\n' '-' <<<"$1")"; }

check_format() {
  local -a sources
  local log=$build/format.log
  mapfile -t sources < <(git ls-files -- 'src/*.h' 'src/*.cpp' 'tests/*.h' 'tests/*.cpp' 'bench/*.h' 'bench/*.cpp' \
    'samples/*.h' 'samples/*.cpp')
  if clang-format --dry-run -Werror "${sources[@]}" >"$log" 2>&1; then
    count "format of ${#sources[@]} sources" 1 0
  else
    head -n 40 "$log"
    count "format of ${#sources[@]} sources" 0 1
  fi
}

# run_tests NAME COMMAND...: runs a GoogleTest program and counts its tests from its own report. A crash, a hang or a
# program that runs no test is a failure.
run_tests() {
  local name=$1 log status=0 good=0 bad=0
  log=$(log_of "$name")
  shift
  timeout -k 10 400 "$@" --gtest_color=no --gtest_brief=0 </dev/null >"$log" 2>&1 || status=$?
  good=$(sed -n 's/^\[  PASSED  \] \([0-9]*\) test.*/\1/p' "$log" | tail -n 1)
  bad=$(sed -n 's/^ *\([0-9]*\) FAILED TESTS\{0,1\}.*/\1/p' "$log" | tail -n 1)
  if [ "${good:-0}" -eq 0 ] && [ "${bad:-0}" -eq 0 ] || { [ "$status" -ne 0 ] && [ "${bad:-0}" -eq 0 ]; }; then
    tail -n 20 "$log"
    say "$name ended with status $status before its report"
    bad=$((${bad:-0} + 1))
  fi
  grep -B 12 '^\[  FAILED  \].* ms)' "$log" || true
  grep '^\[  SKIPPED \].* ms)' "$log" || true
  count "$name" "${good:-0}" "${bad:-0}"
}

# run_counted NAME COMMAND...: runs a command whose last line is "N passed, N failed".
run_counted() {
  local name=$1 log
  log=$(log_of "$name")
  shift
  "$@" >"$log" 2>&1 </dev/null || true
  if [[ $(tail -n 1 "$log") =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]]; then
    [ "${BASH_REMATCH[2]}" -eq 0 ] || grep FAILED "$log"
    count "$name" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
  else
    tail -n 20 "$log"
    count "$name" 0 1
  fi
}

# run_command NAME COMMAND...: runs a command that says by its exit status whether all is well.
run_command() {
  local name=$1 log
  log=$(log_of "$name")
  shift
  if "$@" >"$log" 2>&1 </dev/null; then
    count "$name" 1 0
  else
    tail -n 20 "$log"
    count "$name" 0 1
  fi
}

# run_lane NAME COMMAND...: starts a command that counts. It goes on beside others until finish_lanes.
lanes=()
run_lane() {
  local name=$1
  shift
  (
    passed=0
    failed=0
    SECONDS=0
    "$@"
    say "lane $name took $SECONDS s"
    say "$passed passed, $failed failed"
  ) >"$build/lane-$name.log" 2>&1 &
  lanes+=("$name $!")
}

# finish_lanes: waits for the lanes, says what they said and adds their counts. One that stops in the middle has failed.
finish_lanes() {
  local name pid
  while read -r name pid; do
    wait "$pid" || true
    if [[ $(tail -n 1 "$build/lane-$name.log") =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]]; then
      head -n -1 "$build/lane-$name.log"
      passed=$((passed + BASH_REMATCH[1]))
      failed=$((failed + BASH_REMATCH[2]))
    else
      cat "$build/lane-$name.log"
      count "lane $name, which stopped" 0 1
    fi
  done < <(printf '%s\n' "${lanes[@]}")
}

test_native() {
  run_tests "portable tests, native" "$build/native/bin/portable_tests"
  run_counted "fuzzers" tools/fuzz.sh
}

# test_bitness BITS: the test programs in a Windows environment of their own, then the clients in the same.
test_bitness() {
  local bits=$1 program
  use_prefix "test$bits"
  for program in unit component; do
    run_tests "$program tests, $bits-bit" "$(wine_for "$bits")" "$build/win$bits/bin/${program}_tests.exe"
  done
  stop_prefix
  run_counted "clients, $bits-bit" tools/clients.sh "$bits"
}

test_package() {
  run_command "reference site" tools/docs.sh
  run_command "package" tools/package.sh
  run_counted "installed package" tests/package/test_package.sh
}

"$root/tools/build.sh" native win32 win64

step "format"
check_format

step "tests, side by side"
use_prefix template
run_lane native test_native
run_lane windows32 test_bitness 32
run_lane windows64 test_bitness 64
run_lane package test_package
finish_lanes

step "total"
say "$SECONDS s"
say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
