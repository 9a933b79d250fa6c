#!/usr/bin/env bash
# fuzz.sh BUILD SECONDS [TARGET...]: runs each fuzz target (default: all) for SECONDS and prints what
# each reached. New inputs go to BUILD/fuzz/found, those that break a promise to BUILD/fuzz/broken; the
# corpora of the repository are only read. Exits 1 if a promise was broken, and 3 if a target was
# stopped from outside, which does not show whether its promises hold.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(cd "$1" && pwd)/fuzz
seconds=$2
shift 2
if [ $# -eq 0 ]; then
  for source in "$here"/*_fuzz.cpp; do set -- "$@" "$(basename "$source" _fuzz.cpp)"; done
fi

mkdir -p "$build/broken"
failed=0
echo '| target | executions | seconds | edges reached |'
echo '|---|---|---|---|'
for target; do
  found=$build/found/$target
  log=$build/$target.log
  mkdir -p "$found"
  corpora=("$found" "$here/corpus/$target")
  if [ "$target" = snapshot_reader ]; then corpora+=("$here/../tests/minefield"); fi
  status=0
  before=$(ls "$build/broken" | wc -l)
  (cd "$build" && "./${target}_fuzz" -max_total_time="$seconds" -max_len=8192 -len_control=0 \
    -timeout=30 -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="broken/$target-" \
    "${corpora[@]}") >"$log" 2>&1 || status=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  taken=$(sed -n 's/^Done [0-9]* runs in \([0-9]*\) second.*/\1/p' "$log")
  edges=$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)
  all=$(sed -n 's/^INFO: Loaded 1 modules *(\([0-9]*\) inline.*/\1/p' "$log")
  echo "| $target | ${executions:--} | ${taken:--} | ${edges:--} of ${all:--} |"
  if [ "$status" -eq 0 ]; then continue; fi
  # 72: the fuzzer was asked to stop. Above 128: it received a signal that it does not catch.
  if { [ "$status" -eq 72 ] || [ "$status" -gt 128 ]; } &&
    [ "$(ls "$build/broken" | wc -l)" -eq "$before" ]; then
    [ "$failed" -ne 0 ] || failed=3
    how='as it was asked to'
    if [ "$status" -gt 128 ]; then how="by the signal $(kill -l $((status - 128)))"; fi
    echo "fuzz.sh: $target was stopped from outside, $how, and broke no promise until then; run it again" >&2
    continue
  fi
  failed=1
  tail -n 40 "$log" >&2
  echo "fuzz.sh: $target broke a promise; the input is in $build/broken" >&2
done
exit "$failed"
