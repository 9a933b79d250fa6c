#!/usr/bin/env bash
# compile.sh COMPILER PROJECT: the generator's sources and the lines of docs/embedding.md compile
# against this tree, with nothing on the command line that says where anything is but its two folders
# and the generator's own.
set -euo pipefail
compiler=$1
project=$2
made=$(mktemp -d)
trap 'rm -rf "$made"' EXIT
types=infiniband/fabscan/fabscan_types.h
mkdir -p "$made/$(dirname $types)"
python3 "$project/tests/other_headers/make_types.py" "$project/include/$types" >"$made/$types"

compile() {
  "$compiler" -std=c++17 -Wall -Wextra -Werror -fsyntax-only \
    -I "$made" -I "$project/tests/other_headers" -I "$project/fabscan" "$@"
}

for source in "$project"/fabscan/*.cpp; do
  case $source in *_test.cpp) continue ;; esac
  compile "$source"
done

sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$project/docs/embedding.md" >"$made/example"
[ -s "$made/example" ] || { echo "docs/embedding.md shows no C++" >&2; exit 1; }
compile -xc++ "$made/example"
