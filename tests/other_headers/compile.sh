#!/usr/bin/env bash
# compile.sh COMPILER PROJECT: the generator's sources and the lines of docs/embedding.md compile
# against this tree, with nothing on the command line that says where anything is but two folders.
set -euo pipefail
compiler=$1
project=$2
for source in "$project"/fabscan/*.cpp; do
  case $source in *_test.cpp) continue ;; esac
  "$compiler" -std=c++17 -Wall -Wextra -Werror -fsyntax-only \
    -I "$project/tests/other_headers" -I "$project/fabscan" "$source"
done

example=$(mktemp)
sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$project/docs/embedding.md" >"$example"
trap 'rm -f "$example"' EXIT
[ -s "$example" ] || { echo "docs/embedding.md shows no C++" >&2; exit 1; }
"$compiler" -std=c++17 -Wall -Wextra -Werror -fsyntax-only -xc++ \
  -I "$project/tests/other_headers" -I "$project/fabscan" "$example"
