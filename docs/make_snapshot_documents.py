"""Writes the JSON schema of snapshots and the tables of their description from the program's tables.

    { list-record-fields; list-capabilities; } | make_snapshot_documents.py [--check] DOCS

With --check, writes nothing; the exit status is 1 if a document is stale.
"""

import json
import pathlib
import sys

BEGIN = "<!-- The tables below are made by make_snapshot_documents.py. -->\n"
COUNTERS = "WrenReductionCounters"
MONITORS = "WrenReductionConfigureMLIDMonitors"


def number(bits):
    return {"$ref": f"#/$defs/number{bits}"}


def number_definition(bits):
    return {
        "anyOf": [
            {"type": "integer", "minimum": 0, "maximum": 2**bits - 1},
            {"type": "string", "pattern": f"^0[xX]0*[0-9a-fA-F]{{1,{bits // 4}}}$"},
        ]
    }


def strict(properties, required):
    schema = {"type": "object", "properties": properties, "additionalProperties": False}
    if required:
        schema["required"] = required
    return schema


def record(fields):
    properties = {}
    for field in fields:
        value = number(field["bits"]) if "bits" in field else record(field["fields"])
        if "count" in field:
            count = field["count"]
            value = {"type": "array", "items": value, "minItems": count, "maxItems": count}
        properties[field["name"]] = value
    return strict(properties, [f["name"] for f in fields if f["needed"]])


def attributes(records):
    properties = {name: record(fields) for name, fields in records.items()}
    if COUNTERS in properties:
        properties[COUNTERS] = strict({str(i): properties[COUNTERS] for i in range(8)}, [])
        properties[MONITORS] = {"type": "array", "items": {"enum": [0, 1]}, "uniqueItems": True}
    return strict(properties, [])


def absent(records):
    return strict({name: {"type": "string"} for name in records}, [])


def schema(tables):
    text, flag = {"type": "string"}, {"type": "boolean"}
    name = {"anyOf": [text, strict({"escaped": text}, ["escaped"])]}
    extra = {"type": "object"}
    peer = strict({"guid": number(64), "port": number(8)}, ["guid", "port"])
    mask = {"type": "array", "items": number(32), "minItems": 4, "maxItems": 4}
    port = strict(
        {
            "num": number(8),
            "state": {"enum": ["ACTIVE", "ARM", "INIT", "DOWN", "UNKNOWN"]},
            "portGuid": number(64),
            "peer": peer,
            "lid": number(16),
            "width": {"enum": ["1x", "2x", "4x", "8x", "12x", ""]},
            "speed": {"enum": ["SDR", "DDR", "QDR", "FDR", "EDR", "HDR", "NDR", "XDR", ""]},
            "inSubFabric": flag,
            "fnm": flag,
            "fnm1": flag,
            "special": flag,
            "attributes": attributes(tables["port"]),
            "absent": absent(tables["port"]),
            "extra": extra,
        },
        ["num", "state"],
    )
    node = strict(
        {
            "name": name,
            "guid": number(64),
            "type": {"enum": ["SW", "RTR", "CA", "UNKNOWN"]},
            "numPorts": number(8),
            "alternativeName": name,
            "description": name,
            "inSubFabric": flag,
            "specialNode": {"enum": ["AN", "ROUTER", "ETH_GATEWAY"]},
            "opalSwitch": flag,
            "smpCapabilityMask": mask,
            "gmpCapabilityMask": mask,
            "attributes": attributes(tables["node"]),
            "absent": absent(tables["node"]),
            "extra": extra,
            "ports": {"type": "array", "items": {"$ref": "#/$defs/port"}},
        },
        ["name", "guid", "type", "numPorts"],
    )
    header = strict(
        {"fabscan_snapshot": {"enum": [1, 2]}, "source": text, "created": text, "extra": extra},
        ["fabscan_snapshot"],
    )
    end = strict({"end": {"const": True}, "nodes": number(64)}, ["end", "nodes"])
    numbers = {f"number{bits}": number_definition(bits) for bits in (8, 16, 32, 64)}
    return {
        "$schema": "https://json-schema.org/draft/2020-12/schema",
        "title": "One line of a fabscan snapshot",
        "oneOf": [{"$ref": f"#/$defs/{kind}"} for kind in ("header", "node", "end")],
        "$defs": {"header": header, "node": node, "end": end, "port": port, **numbers},
    }


def rows(fields, prefix=""):
    for field in fields:
        path = prefix + field["name"]
        count = f"[{field['count']}]" if "count" in field else ""
        if "bits" in field:
            needed = "yes" if field["needed"] else ""
            yield f"| `{path}`{count} | {field['bits']} | {needed} |"
        else:
            if not field["needed"]:
                yield f"| `{path}`{count} | object | |"
            yield from rows(field["fields"], f"{path}{count}.")


def field_tables(tables):
    lines = []
    for owner, records in tables.items():
        lines += ["", f"### Records of a {owner}"]
        for name, fields in records.items():
            lines += ["", f"`{name}`", "", "| Field | Bits | Needed |", "|---|---|---|"]
            lines += rows(fields)
    return "\n".join(lines) + "\n"


def table(head, rows):
    """The lines of a table."""
    columns = [f"| {' | '.join(row)} |" for row in rows]
    return [f"| {' | '.join(head)} |", "|" + "---|" * len(head), *columns]


def needed_record(needed):
    text = f"`{needed['name']}`"
    if "nonzero" in needed:
        text += f" with `{needed['nonzero']}` not 0"
    if needed["of"]:
        text += f" {needed['of']}"
    if "monitor" in needed:
        text += f" that has `{MONITORS}` {needed['monitor']}"
    return text


def needed_mask(row):
    if not row["mask"]:
        return ""
    bits = " and ".join(str(bit) for bit in row["bits"])
    word = " bit " if len(row["bits"]) == 1 else " bits "
    return f"`{row['mask']}`" + (word + bits if bits else "")


def gating_bits(requirements, names):
    """A row for each mask and bit on which functions depend."""
    functions = {}
    for row in requirements:
        for bit in row["bits"]:
            functions.setdefault((row["mask"], bit), []).append(f"`{row['function']}`")
    return [(f"`{mask}`", str(bit), f"`{names[mask][bit]}`", ", ".join(of_bit))
            for (mask, bit), of_bit in sorted(functions.items())]


def capability_tables(capabilities):
    requirements, names = capabilities["requirements"], capabilities["names"]
    lines = ["", "## Bits that gate functions", ""]
    lines += table(("Mask", "Bit", "Name", "Functions"), gating_bits(requirements, names))
    lines += ["", "## What each function needs", ""]
    lines += table(("Function", "Nodes", "Mask", "Records"),
                   [(f"`{row['function']}`", row["nodes"], needed_mask(row),
                     "; ".join(needed_record(needed) for needed in row["records"]))
                    for row in requirements])
    for mask, of_mask in names.items():
        named = [(str(bit), f"`{name}`") for bit, name in enumerate(of_mask) if name]
        lines += ["", f"## Names of the bits of `{mask}`", "", *table(("Bit", "Name"), named)]
    return "\n".join(lines) + "\n"


def with_tables(path, text):
    """The document, with `text` after the line that begins the tables."""
    before, marker, _ = path.read_text(encoding="utf-8").partition(BEGIN)
    if not marker:
        sys.exit(f"{path}: the line that begins the tables is missing")
    return before + marker + text


def main(arguments):
    check = "--check" in arguments
    folder = pathlib.Path(arguments[-1])
    tables, capabilities = (json.loads(line) for line in sys.stdin)
    description, capability_page = folder / "snapshot-format.md", folder / "capabilities.md"
    documents = {
        description: with_tables(description, field_tables(tables)),
        capability_page: with_tables(capability_page, capability_tables(capabilities)),
        folder / "snapshot.schema.json": json.dumps(schema(tables), indent=1) + "\n",
    }
    stale = []
    for path, text in documents.items():
        if path.exists() and path.read_text(encoding="utf-8") == text:
            continue
        stale.append(path.name)
        if not check:
            path.write_text(text, encoding="utf-8")
    if check and stale:
        sys.exit(f"Stale: {', '.join(stale)}. './run golden' updates them.")


if __name__ == "__main__":
    main(sys.argv[1:])
