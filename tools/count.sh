# Shared by the commands that run tests and end with one line: N passed, N failed.
# shellcheck shell=bash
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

passed=0
failed=0

# count NAME PASSED FAILED: adds to the total and says so.
count() {
  local mark=
  [ "$3" -eq 0 ] || mark='FAILED '
  passed=$((passed + $2))
  failed=$((failed + $3))
  say "$mark$1: $2 passed, $3 failed"
}

# log_of NAME: where the output of that part goes.
log_of() { printf '%s/test-%s.log' "$build" "$(tr -c 'a-z0-9\n' '-' <<<"$1")"; }

# run_tests NAME COMMAND...: runs a GoogleTest program and counts its tests from its own report. A crash, a hang or a
# program that runs no test is a failure.
run_tests() {
  local name=$1 log status=0 good=0 bad=0
  log=$(log_of "$name")
  shift
  timeout -k 10 900 "$@" --gtest_color=no --gtest_brief=0 </dev/null >"$log" 2>&1 || status=$?
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

# report_total: the last line; the status says whether anything failed.
report_total() {
  say "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
