#!/usr/bin/env bash
# bare.sh CLONE CACHE [SUITE] [TASK...]: creates a bare Debian system (default: bookworm) next to CLONE, a
# clone of this repository, and runs tasks of `./run` (default: demo) there as on a new machine. Needs
# root. A task may have arguments: 'test -R dump'.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/bare_root.sh"
clone=$1
cache=$2
suite=${3-bookworm}
shift $(($# < 3 ? $# : 3))
[ $# -gt 0 ] || set -- demo

root=$clone-root
remove_bare_root_at_exit "$root"
echo "bare: a root of $suite"
make_bare_root "$suite" "$root" "$cache"
cp -rd "$clone" "$root/srv/fabscan" # which other users can read
for task; do
  echo "bare: ./run $task"
  start=$SECONDS
  in_bare_root "$root" sh -c "cd /srv/fabscan && exec ./run $task" ||
    bare_root_fail "on $suite, ./run $task failed"
  echo "bare: ./run $task is done on $suite, in $(((SECONDS - start) / 60)) min $(((SECONDS - start) % 60)) s"
done
