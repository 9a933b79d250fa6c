"""The instructions in docs/discovery.md for your own collector work."""

import copy
import json
import pathlib
import re
import unittest

import nets
from simulated_fabric import EXTRA, LiveTestCase

DOCUMENT = pathlib.Path(__file__).resolve().parents[2] / "docs" / "discovery.md"
HEADING = "## What a collector of your own adds\n"
LEAF_GUID = "0x" + nets.LEAF[2:]
HERE_GUID = "0x" + nets.HERE[2:]
MASKS = ("smpCapabilityMask", "gmpCapabilityMask")


def section():
    return DOCUMENT.read_text().split(HEADING)[1].split("\n## ")[0]


def rows():
    """(key, bits, functions) of each row of the table of keys."""
    table = re.findall(r"^\| `(\w+)`([^|]*)\| ([^|]*) \|$", section(), flags=re.M)
    return [(key, [int(bit) for bit in re.findall(r"\d+", rest)],
             re.findall(r"`(set\w+)`", functions))
            for key, rest, functions in table]


def lines_of(node):
    lines = [{"fabscan_snapshot": 2}, node, {"end": True, "nodes": 1}]
    return "".join(json.dumps(line) + "\n" for line in lines)


def without_bit(node, bit):
    changed = copy.deepcopy(node)
    words = [int(word, 16) for word in node["smpCapabilityMask"]]
    words[bit // 32] &= ~(1 << bit % 32)
    changed["smpCapabilityMask"] = [hex(word) for word in words]
    return changed


def without(node, key):
    changed = copy.deepcopy(node)
    del (changed if key in MASKS else changed["attributes"])[key]
    return changed


class CollectorTest(LiveTestCase):
    def setUp(self):
        self.fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(self.fabric)
        self.leaf = json.loads(EXTRA.read_text().splitlines()[1])

    def check(self, extra, guid):
        """Merges the extra snapshot; returns the exit status of `check` and the functions with #error."""
        (self.fabric.folder / "extra.jsonl").write_text(extra)
        merged = self.fabric.fabscan("merge", "fabric.jsonl", "extra.jsonl", "--output",
                                     "whole.jsonl", "--force")
        self.assertEqual(merged.returncode, 0, merged.stderr)
        return self.errors("whole.jsonl", guid)

    def errors(self, snapshot, guid):
        done = self.fabric.fabscan("check", snapshot, "--guid", guid, "--json")
        functions = json.loads(done.stdout)["nodes"][0]["functions"]
        return done.returncode, {function["name"] for function in functions
                                 if function["mark"] == "error"}

    def test_the_bundled_snapshot_completes_a_switch(self):
        self.assertEqual(self.check(EXTRA.read_text(), LEAF_GUID), (0, set()))

    def test_every_error_line_of_a_discovered_switch_is_in_the_table(self):
        status, errors = self.errors("fabric.jsonl", LEAF_GUID)
        self.assertEqual(status, 3)
        self.assertEqual(errors, {name for _, _, functions in rows() for name in functions})

    def test_each_key_is_needed_for_the_listed_functions(self):
        self.assertEqual(len(rows()), 9)
        for key, bits, functions in rows():
            changes = [without_bit(self.leaf, bit) for bit in bits] or [without(self.leaf, key)]
            for changed in changes:
                with self.subTest(key, bits=bits):
                    self.assertEqual(self.check(lines_of(changed), LEAF_GUID),
                                     (3, set(functions)))

    def test_a_version_of_congestion_control_is_needed(self):
        self.leaf["attributes"]["CC_EnhancedCongestionInfo"]["ver0"] = 0
        self.assertEqual(self.check(lines_of(self.leaf), LEAF_GUID),
                         (3, {"setCongestionSwitchGeneralSettings"}))

    def test_the_documented_snapshot_completes_an_adapter(self):
        [sample] = re.findall(r"```json\n(.*?)```", section(), flags=re.S)
        self.assertEqual(self.errors("fabric.jsonl", HERE_GUID)[0], 3)
        self.assertEqual(self.check(sample, HERE_GUID), (0, set()))


if __name__ == "__main__":
    unittest.main()
