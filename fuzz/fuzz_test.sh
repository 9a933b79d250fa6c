#!/usr/bin/env bash
# fuzz_test.sh: output and exit status of fuzz.sh when a target succeeds, breaks a promise, or is stopped
# from outside.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/fuzz"

# ends STATUS TEXT COMMAND: expects this result for a target that runs COMMAND.
ends() {
  printf '#!/usr/bin/env bash\n%s\n' "$3" >"$work/fuzz/made_fuzz"
  chmod +x "$work/fuzz/made_fuzz"
  local status=0
  "$here/fuzz.sh" "$work" 1 made >"$work/out" 2>&1 || status=$?
  if [ "$status" -ne "$1" ] || ! grep -q "$2" "$work/out"; then
    echo "fuzz_test: after '$3' expected $1 and '$2', got $status and" >&2
    cat "$work/out" >&2
    exit 1
  fi
}

ends 0 '| made | 7 | 1 |' 'echo "stat::number_of_executed_units: 7"; echo "Done 7 runs in 1 second(s)"'
ends 1 'made broke a promise' 'touch broken/made-crash-1; exit 77'
ends 1 'made broke a promise' 'exit 1'
ends 1 'made broke a promise' 'touch broken/made-crash-2; kill -KILL $$'
ends 3 'made was stopped from outside, by the signal KILL' 'kill -KILL $$'
ends 3 'made was stopped from outside, as it was asked to' 'exit 72'
