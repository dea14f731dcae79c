#!/usr/bin/env bash
# Builds the fuzzers (tests/fuzz) and runs each of them: tools/fuzz.sh [seconds a target] [target]... Without arguments
# every target gets a small fixed number of runs with a fixed seed, at most a few seconds. With seconds the inputs that
# found new ways through the code are kept in build/fuzz/corpus, and the next run begins with them. An input that fails
# stays in build/fuzz/failures. The last line is the total.
source "$(dirname "$0")/count.sh"
"$root/tools/build.sh" fuzz

limits=(-seed=1 -runs=20000 -max_total_time=3)
folder=$build/fuzz/corpus-of-short-runs
rm -rf "$folder"
if [ $# -gt 0 ]; then
  limits=("-max_total_time=$1")
  folder=$build/fuzz/corpus
  shift
fi

mkdir -p "$build/fuzz/failures"
for program in "$build"/fuzz/bin/*_fuzz; do
  target=$(basename "$program" _fuzz)
  [ $# -eq 0 ] || [[ " $* " == *" $target "* ]] || continue
  log=$build/fuzz/$target.log
  mkdir -p "$folder/$target"
  step "fuzz: $target"
  if "$program" "${limits[@]}" -max_len=200 -timeout=20 "-artifact_prefix=$build/fuzz/failures/$target-" \
    "$folder/$target" </dev/null >"$log" 2>&1 && grep '^Done [1-9][0-9]* runs' "$log"; then
    count "fuzz $target" 1 0
  else
    tail -n 30 "$log"
    count "fuzz $target" 0 1
  fi
done
[ $((passed + failed)) -gt 0 ] || die "no such target in tests/fuzz"
say
report_total
