#!/usr/bin/env bash
# Runs the benchmarks for both bitnesses, prints their tables and writes them into docs/performance.md. Arguments name
# areas (automation, filesystem, …) to run alone; then nothing is written.
source "$(dirname "$0")/lib.sh"
"$root/tools/build.sh" win32 win64
use_prefix bench

page=$root/docs/performance.md
tables=$(mktemp)
trap 'rm -f "$tables"' EXIT
for bits in 32 64; do
  step "benchmarks, $bits-bit"
  {
    printf '\n### %s-bit\n\n' "$bits"
    timeout 900 "$(wine_for "$bits")" "$build/win$bits/bin/benchmarks.exe" "$@" 2>/dev/null | tr -d '\r'
  } | tee -a "$tables"
done
stop_prefix

if [ $# -eq 0 ]; then
  # The page keeps what stands before and after the marks.
  awk -v tables="$tables" '
    /<!-- tables begin -->/ { print; while ((getline line < tables) > 0) print line; print ""; skip = 1 }
    /<!-- tables end -->/ { skip = 0 }
    !skip { if (!/<!-- tables begin -->/) print }
  ' "$page" >"$page.new"
  mv "$page.new" "$page"
  say "written to docs/performance.md"
fi
