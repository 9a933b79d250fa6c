#!/usr/bin/env bash
# licence_text_test.sh COMPILER PROJECT: the owner of the generated code is set when the generator is
# built, and a text that would break the licence block does not compile.
set -euo pipefail
compiler=$1
project=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

compile() { "$compiler" -std=c++17 -I "$project/include" -I "$project/fabscan" "$@"; }

# What takes longest is the same for all, and read once.
echo '#include <infiniband/fabscan/fabscan.h>' >"$work/model.h"
compile -x c++-header "$work/model.h" -o "$work/model.h.gch"

# refused WHAT DEFINITION...: the generator's frame does not compile with these, and says why.
refused() {
  local what=$1
  shift
  printf '%s\n' "$@" >"$work/text.h"
  if compile -include "$work/model.h" -DFABSCAN_LICENCE_TEXT="\"$work/text.h\"" -fsyntax-only \
    "$project/fabscan/file_frame.cpp" 2>"$work/errors"; then
    echo "compiled, but should not: $*" >&2
    exit 1
  fi
  grep -q "static assertion failed.*$what\|static_assert failed.*$what" "$work/errors" || {
    echo "refused for another reason: $*" >&2
    cat "$work/errors" >&2
    exit 1
  }
}

refused FABSCAN_LICENCE_HOLDER '#define FABSCAN_LICENCE_HOLDER "Example */ int x;"'
refused FABSCAN_LICENCE_HOLDER '#define FABSCAN_LICENCE_HOLDER "Example\nGroup"'
refused FABSCAN_LICENCE_HOLDER '#define FABSCAN_LICENCE_HOLDER "Example /* Group"'
refused FABSCAN_LICENCE_HOLDER '#define FABSCAN_LICENCE_HOLDER "Example\037Group"'
refused FABSCAN_LICENCE_HOLDER '#define FABSCAN_LICENCE_HOLDER "Example\\\\"'
refused FABSCAN_LICENCE_HOLDER '#define FABSCAN_LICENCE_HOLDER "Example "'
refused FABSCAN_LICENCE_HOLDER '#define FABSCAN_LICENCE_HOLDER ""'
refused FABSCAN_LICENCE_IDENTIFIER '#define FABSCAN_LICENCE_IDENTIFIER "two words"'
refused FABSCAN_LICENCE_IDENTIFIER '#define FABSCAN_LICENCE_IDENTIFIER ""'
# The characters beside those that an identifier takes.
for character in '`' '{' '@' '[' / : ,; do
  refused FABSCAN_LICENCE_IDENTIFIER "#define FABSCAN_LICENCE_IDENTIFIER \"Example$character\""
done
refused FABSCAN_LICENCE_NOTICE '#define FABSCAN_LICENCE_NOTICE "a", "b", "c", "d", "e", "f"'
refused FABSCAN_LICENCE_NOTICE '#define FABSCAN_LICENCE_NOTICE "a", "b", "c", "d", "e."'
refused FABSCAN_LICENCE_NOTICE '#define FABSCAN_LICENCE_NOTICE "a", "b/*", "c", "d", "e", "f."'

cat >"$work/text.h" <<'TEXT'
#define FABSCAN_LICENCE_HOLDER "Example * Fabrics / (Group~)"
#define FABSCAN_LICENCE_IDENTIFIER "azAZ-0.9"
#define FABSCAN_LICENCE_NOTICE "one", "two", "three", "four", "five", "six."
TEXT
cat >"$work/main.cpp" <<'SOURCE'
#include <fabscan_sim_info_dump.h>
#include <iostream>
int main() {
  Fabscan fabscan;
  SimInfoDumpCPP(fabscan).PrintCopyright(std::cout);
}
SOURCE
compile -DFABSCAN_LICENCE_TEXT="\"$work/text.h\"" -c "$project/fabscan/file_frame.cpp" -o "$work/frame.o"
compile "$work/main.cpp" "$work/frame.o" "$project"/fabscan/{source_writer,chunked_buffer}.cpp \
  -o "$work/print"
"$work/print" >"$work/block"
diff - "$work/block" <<BLOCK
/*
* SPDX-FileCopyrightText: Copyright (c) 2024-$(date +%Y) Example * Fabrics / (Group~). All rights reserved
* SPDX-License-Identifier: LicenseRef-azAZ-0.9
*
* one
* two
* three
* four
* five
* six.
*/

BLOCK
