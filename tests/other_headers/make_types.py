"""make_types.py FABSCAN_TYPES_H: prints the attribute records with members in another order and form:
the widest first, then by name, every other number a bit-field. Nothing that reads the records may
depend on how they are laid out."""

import re
import sys

BYTES = {"u_int8_t": 1, "u_int16_t": 2, "u_int32_t": 4, "u_int64_t": 8}

HEAD = """#ifndef OTHER_HEADERS_FABSCAN_TYPES_H
#define OTHER_HEADERS_FABSCAN_TYPES_H

#include <sys/types.h>

// Not zero where nobody writes zeros.
struct capability_mask {
  capability_mask() : mask{1, 1, 1, 1} {}
  capability_mask(const u_int32_t (&words)[4]) : mask{words[0], words[1], words[2], words[3]} {}

  u_int32_t mask[4];
};

typedef capability_mask capability_mask_t;
"""


def members(body):
    """(type, name, what follows the name) of each member; sorted."""
    found = re.findall(r"^  (\w+) (\w+)(\[\d+\])?;$", body, flags=re.M)
    assert len(found) == len(body.strip().splitlines()), body
    found.sort(key=lambda member: (-BYTES.get(member[0], 0), member[1].lower()))
    for number, (kind, name, array) in enumerate(found):
        is_bit_field = kind in BYTES and not array and number % 2
        yield kind, name, f" : {8 * BYTES[kind]}" if is_bit_field else array


def types(text):
    text = re.sub(r"\s*//.*", "", text)
    for name, body in re.findall(r"^struct (\w+) \{\n(.*?)^\};", text, flags=re.M | re.S):
        if name != "capability_mask":
            yield f"struct {name} {{\n" + "".join(
                f"  {kind} {member}{rest};\n" for kind, member, rest in members(body)) + "};\n"


def main(path):
    with open(path, encoding="utf-8") as file:
        print("\n".join([HEAD, *types(file.read()), "#endif"]))


if __name__ == "__main__":
    main(sys.argv[1])
