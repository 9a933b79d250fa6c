#!/usr/bin/env bash
# compile.sh COMPILER PROJECT: the generator's sources compile against this tree, with nothing on
# the command line that says where anything is but two folders.
set -euo pipefail
compiler=$1
project=$2
for source in "$project"/fabscan/*.cpp; do
  case $source in *_test.cpp) continue ;; esac
  "$compiler" -std=c++17 -Wall -Wextra -Werror -fsyntax-only \
    -I "$project/tests/other_headers" -I "$project/fabscan" "$source"
done
