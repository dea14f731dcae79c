#!/usr/bin/env bash
# Proves the library: builds everything for this machine, 32-bit and 64-bit Windows, checks the format of the sources,
# runs the portable tests and the fuzzers under the sanitizers, the unit and component tests and the clients of the
# registered library and a short torture run under Wine for both bitnesses, makes the package with the reference site,
# installs and uninstalls it. Ends with one line: N passed, N failed.
source "$(dirname "$0")/count.sh"

check_format() {
  local -a sources
  local log=$build/format.log
  mapfile -t sources < <(git ls-files -- 'src/*.h' 'src/*.cpp' 'tests/*.h' 'tests/*.cpp' 'bench/*.h' 'bench/*.cpp' \
    'samples/*.h' 'samples/*.cpp' 'tools/*.cpp')
  if clang-format --dry-run -Werror "${sources[@]}" >"$log" 2>&1; then
    count "format of ${#sources[@]} sources" 1 0
  else
    head -n 40 "$log"
    count "format of ${#sources[@]} sources" 0 1
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
  ZEQ_BUILT=yes run_counted "torture, $bits-bit" tools/torture.sh 100000 "" "$bits"
  grep '^seed' "$(log_of "torture, $bits-bit")" || true
}

test_package() {
  run_command "package with the reference site" tools/package.sh
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
report_total
