"""Holds the bundled snapshots against the JSON Schema, and the schema against lines that are wrong.

    schema_test.py SCHEMA SNAPSHOT...
"""

import copy
import json
import sys

import jsonschema


def lines_of(path):
    with open(path, encoding="utf-8") as file:
        return [json.loads(line) for line in file]


def first_with(lines, *keys):
    """The first place that has all the keys, as (line, place within its copy)."""
    for line in lines:
        line = copy.deepcopy(line)
        places = [line, *line.get("ports", [])]
        for place in places:
            at = place
            for key in keys:
                at = at.get(key) if isinstance(at, dict) else None
            if at is not None:
                return line, at
    raise SystemExit(f"no line has {keys}")


def wrong_lines(lines):
    """Lines of which each breaks one rule, with the rule."""
    line, node_info = first_with(lines, "attributes", "SMP_NodeInfo")
    del node_info["VendorID"]
    yield "a needed field is missing", line
    line, node_info = first_with(lines, "attributes", "SMP_NodeInfo")
    node_info["VendorId"] = 1
    yield "an unknown field", line
    line, node_info = first_with(lines, "attributes", "SMP_NodeInfo")
    node_info["DeviceID"] = 65536
    yield "a number too wide", line
    line, node_info = first_with(lines, "attributes", "SMP_NodeInfo")
    node_info["DeviceID"] = "0x10000"
    yield "a hexadecimal number too wide", line
    line, node_info = first_with(lines, "attributes", "SMP_NodeInfo")
    node_info["DeviceID"] = -1
    yield "a negative number", line
    line, firmware = first_with(lines, "attributes", "VendorSpec_GeneralInfo", "FWInfo", "PSID")
    firmware["PSID"].pop()
    yield "a list too short", line
    line, records = first_with(lines, "attributes", "WrenReductionCounters")
    records["8"] = records[min(records)]
    yield "a counter set too many", line
    line, selectors = first_with(lines, "attributes", "WrenReductionConfigureMLIDMonitors")
    selectors.append(2)
    yield "an unknown monitor selector", line
    line, ports = first_with(lines, "ports")
    ports[0]["state"] = "UP"
    yield "an unknown state", line
    line, ports = first_with(lines, "ports")
    del ports[0]["num"]
    yield "a port without number", line
    line, peer = first_with(lines, "peer")
    del peer["port"]
    yield "a peer without port", line
    line, peer = first_with(lines, "peer")
    peer["num"] = 1
    yield "an unknown key of a peer", line
    line, ports = first_with(lines, "ports")
    ports[0]["width"] = "3x"
    yield "an unknown width", line
    line, ports = first_with(lines, "ports")
    line["guid"] = "17"
    yield "a number as plain text", line
    line, reasons = first_with(lines, "absent")
    reasons["SMP_Nothing"] = "time-out"
    yield "a reason for an unknown record", line
    yield "an unknown version", {"fabscan_snapshot": 3}
    yield "a last line without count", {"end": True}
    yield "no line of any kind", {}


def main(schema_path, *snapshots):
    with open(schema_path, encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    every_line = []
    for path in snapshots:
        lines = lines_of(path)
        every_line += lines
        for number, line in enumerate(lines, 1):
            for error in validator.iter_errors(line):
                raise SystemExit(f"{path}:{number}: {error.message[:200]}")
    wrong = list(wrong_lines(every_line))
    for rule, line in wrong:
        if validator.is_valid(line):
            raise SystemExit(f"the schema accepts {rule}")
    print(f"{len(every_line)} lines accepted, {len(wrong)} wrong ones refused")


if __name__ == "__main__":
    main(*sys.argv[1:])
