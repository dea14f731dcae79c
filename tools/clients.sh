#!/usr/bin/env bash
# Registers the built library for both bitnesses and runs its clients as a user does: the scripts of tests/clients with
# the 32-bit and the 64-bit script host, the C++ programs of tests/clients/conformance, the samples, and the examples of
# docs/classes: tools/clients.sh [32|64] [script]... Scripts are named CFakeDrive.vbs or CFakeDrive.md, or CFakeDrive for
# all of them, or samples. The last line is the total.
source "$(dirname "$0")/count.sh"

all_bits=(32 64)
if [[ ${1:-} =~ ^(32|64)$ ]]; then
  all_bits=("$1")
  shift
fi

work=$build/clients

# count_output NAME FILE STATUS: adds the counts in a client's output to the total. One that crashes or hangs after its last
# check has failed all the same.
count_output() {
  local name=$1 output=$2 status=$3 totals bad
  sed -i 's/\r$//' "$output"
  totals=$(grep -E '^[0-9]+ passed, [0-9]+ failed$' "$output" | tail -n 1) || true
  grep '^FAILED' "$output" || true
  if [[ $totals =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]] && ((BASH_REMATCH[1] + BASH_REMATCH[2] > 0)); then
    bad=${BASH_REMATCH[2]}
    if [ "$status" -ne 0 ] && [ "$bad" -eq 0 ]; then
      bad=1
      say "FAILED $name, status $status at its end: $(tail -n 1 "$output")"
    fi
    count "$name" "${BASH_REMATCH[1]}" "$bad"
  else
    say "FAILED $name stopped before its end; the last it said: $(tail -n 1 "$output")"
    count "$name" 0 1
  fi
}

# run_program BITS NAME OUTPUT COMMAND...: runs a Windows program, those that show message boxes or help with a user at the
# screen. Two minutes are too long. On a busy machine Wine now and then fails to start a program: one that ends badly
# without having said anything is started once more.
run_program() {
  local bits=$1 name=$2 output=$3 status=0
  local -a command=(timeout -k 10 120 "$(wine_for "$bits")")
  case $name in CZEQAudit.* | CWinHelp.* | *_client) command+=("$build/win$bits/bin/attend.exe") ;; esac
  command+=("${@:4}")
  "${command[@]}" >"$output" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ] && [ ! -s "$output" ]; then
    say "$bits-bit $name said nothing and ended with status $status; once more"
    status=0
    "${command[@]}" >"$output" 2>&1 </dev/null || status=$?
  fi
  return "$status"
}

# run_client BITS NAME COMMAND...: runs one client, which gets the path of an empty folder as its last argument.
run_client() {
  local bits=$1 name=$2 status=0
  shift 2
  local home=$work/$bits-$name
  mkdir -p "$home/scratch"
  run_program "$bits" "$name" "$home/output" "$@" "$(windows_path "$home/scratch")" || status=$?
  count_output "$bits-bit $name" "$home/output" "$status"
}

# check_coverage BITS: whether the scripts of every class use every member in each language.
check_coverage() {
  local bits=$1 status=0
  local home=$work/$bits-coverage
  mkdir -p "$home"
  describe_library "$bits" "$home/typelib.json"
  /usr/bin/python3 tests/clients/coverage.py "$home/typelib.json" tests/clients >"$home/output" 2>&1 || status=$?
  count_output "$bits-bit members that the scripts use" "$home/output" "$status"
}

# run_script BITS SCRIPT: runs a script together with the functions that it checks with.
run_script() {
  local bits=$1 script=$2 name
  name=$(basename "$script")
  mkdir -p "$work/$bits-$name"
  cat "$script" "tests/clients/check.${name##*.}" >"$work/$bits-$name/$name"
  run_client "$bits" "$name" cscript.exe //nologo "$(windows_path "$work/$bits-$name/$name")"
}

# sample_arguments NAME HOME: what a sample is run with, one argument a line. Those that are not listed take none.
sample_arguments() {
  local source target
  source=$(windows_path "$root/samples")
  target=$(windows_path "$2/copy")
  case $1 in
    audited-batch.vbs | audited_batch) printf '%s\n' "$source\vbscript" "$target" "$(windows_path "$2/audit.log")" ;;
    dry-run-then-copy.vbs | batch_copy) printf '%s\n' "$source" "$target" ;;
    keyboard_wizard) printf '%s\n' hnbnnf ;;
    options.vbs) printf '%s\n' "$(windows_path "$2/options.ini")" ;;
    wizard.vbs) printf '%s\n' h n b n n f ;;
  esac
}

# sample_did_its_work NAME HOME: whether a sample that makes files has made them, and one that is led by keys has followed.
sample_did_its_work() {
  case $1 in
    audited-batch.vbs | audited_batch) diff -r samples/vbscript "$2/copy" && [ -s "$2/audit.log" ] ;;
    dry-run-then-copy.vbs | batch_copy) diff -r samples "$2/copy" ;;
    keyboard_wizard) grep -q '^Finished\.' "$2/output" ;;
  esac
}

# example_in PAGE: the script that a page of docs/classes shows.
example_in() { sed -n '/^```vbscript$/,/^```$/{/^```/!p}' "$1"; }

# run_sample BITS SAMPLE: runs one sample to its end: a script, the program of a C++ source, or the example of a page. The
# script host of Wine reports no errors by its exit status, so that a line of our own at the end of a script has to be the
# last that it says.
run_sample() {
  local bits=$1 sample=$2 name status=0
  local -a command arguments
  name=$(basename "$sample" .cpp)
  local home=$work/$bits-sample-$name
  local script=$home/${name/%.md/.vbs}
  mkdir -p "$home"
  case $sample in
    *.cpp) command=("$(windows_path "$build/win$bits/bin/$name.exe")") ;;
    *.md) example_in "$sample" >"$script" ;;
    *) cat "$sample" >"$script" ;;
  esac
  if [[ $sample != *.cpp ]]; then
    printf '\nWScript.Echo("came to its end")\n' >>"$script"
    command=(cscript.exe //nologo "$(windows_path "$script")")
  fi
  mapfile -t arguments < <(sample_arguments "$name" "$home")
  run_program "$bits" "$name" "$home/output" "${command[@]}" "${arguments[@]}" || status=$?
  if [ "$status" -eq 0 ] && { [[ $sample == *.cpp ]] || grep -q '^came to its end.\?$' <(tail -n 1 "$home/output"); } &&
    sample_did_its_work "$name" "$home"; then
    count "$bits-bit sample $name" 1 0
  else
    say "FAILED $bits-bit sample $name, status $status; the last it said: $(tail -n 1 "$home/output")"
    count "$bits-bit sample $name" 0 1
  fi
}

# check_ending BITS PROGRAM CASE STATUS TEXT ARGUMENT...: whether a C++ sample ends with that status and says that text.
check_ending() {
  local bits=$1 program=$2 name="$1-bit sample $2, $3" expected=$4 text=$5 status=0
  local output=$work/$bits-sample-$program/ending
  shift 5
  run_program "$bits" "$program" "$output" "$(windows_path "$build/win$bits/bin/$program.exe")" "$@" || status=$?
  if [ "$status" -eq "$expected" ] && grep -qF "$text" "$output"; then
    count "$name" 1 0
  else
    say "FAILED $name, status $status; the last it said: $(tail -n 1 "$output")"
    count "$name" 0 1
  fi
}

# check_endings BITS SAMPLE: the other ways in which a sample can end.
check_endings() {
  local bits=$1 name source target
  name=$(basename "$2")
  source=$work/$bits-sample-${name%.cpp}/empty
  target=$(windows_path "$source-copy")
  case $name in
    audited_batch.cpp)
      check_ending "$bits" audited_batch "the target is a file" 1 "[class 1, action 8]" \
        "$(windows_path "$root/samples/cpp")" "$(windows_path "$root/README.md")" "$target.log"
      ;;
    batch_copy.cpp)
      mkdir -p "$source/folder"
      : >"$source/file"
      check_ending "$bits" batch_copy "nothing takes space" 0 "Compared 1 files with their copies: 0 differ." \
        "$(windows_path "$source")" "$target"
      ;;
  esac
}

# is_wanted SCRIPT NAMES...: whether the names ask for the script; no names ask for all.
is_wanted() {
  local name
  name=$(basename "$1")
  [ $# -gt 1 ] || return 0
  [[ " ${*:2} " == *" $name "* || " ${*:2} " == *" ${name%.*} "* || ($1 == samples/* && " ${*:2} " == *" samples "*) ]]
}

scripts=()
for script in tests/clients/*.vbs tests/clients/*.js samples/vbscript/*.vbs samples/jscript/*.js samples/cpp/*.cpp \
  docs/classes/*.md; do
  case $script in
    tests/clients/check.*) continue ;;
    *.md) [ -n "$(example_in "$script")" ] || continue ;;
  esac
  is_wanted "$script" "$@" && scripts+=("$script")
done
[ ${#scripts[@]} -gt 0 ] || die "no such script in tests/clients, samples or docs/classes"

for bits in "${all_bits[@]}"; do
  use_prefix "test$bits"
  register_library "$bits"
  rm -rf "$work/$bits-"*
  for script in "${scripts[@]}"; do
    case $script in
      samples/* | docs/*)
        run_sample "$bits" "$script"
        check_endings "$bits" "$script"
        ;;
      *) run_script "$bits" "$script" ;;
    esac
  done
  if [ $# -eq 0 ]; then
    for binding in early late; do
      run_client "$bits" "${binding}_client" "$(windows_path "$build/win$bits/bin/${binding}_client.exe")"
    done
    check_coverage "$bits"
  fi
  stop_prefix
done
report_total
