# For scripts that show commands while they run them: `source` this file.

bold= plain=
if [ -t 1 ] && [ -z "${NO_COLOR-}" ]; then bold=$'\033[1m' plain=$'\033[0m'; fi

# say TEXT: a headline.
say() { printf '\n%s%s%s\n' "$bold" "$*" "$plain"; }

# show COMMAND: prints the command as typed, and runs it.
show() {
  printf '$ %s\n' "$*"
  "$@"
}

# show_quietly COMMAND: the same, but shows the output only if the command fails.
show_quietly() {
  local log status=0
  log=$(mktemp)
  printf '$ %s\n' "$*"
  "$@" >"$log" 2>&1 || status=$?
  [ "$status" -eq 0 ] || cat "$log" >&2
  rm -f "$log"
  return "$status"
}
