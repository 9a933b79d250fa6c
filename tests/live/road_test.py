"""The whole workflow: discover, merge what another collector read, dump, verify."""

import json
import unittest

import nets
from simulated_fabric import EXTRA, LiveTestCase

LEAF_GUID = "0x" + nets.LEAF[2:]


class RoadTest(LiveTestCase):
    def setUp(self):
        self.fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(self.fabric)

    def merge(self, *arguments, expect=0):
        done = self.fabric.fabscan("merge", "fabric.jsonl", "extra.jsonl", "--output",
                                   "whole.jsonl", *arguments)
        self.assertEqual(done.returncode, expect, done.stdout + done.stderr)
        return done

    def verify(self, snapshot, expect, *arguments):
        done = self.fabric.fabscan("verify", snapshot, *arguments, seconds=300)
        self.assertEqual(done.returncode, expect, done.stdout + done.stderr)
        return done

    def test_a_discovered_fabric_is_dumped_and_simulated(self):
        dumped = self.fabric.fabscan("dump", "fabric.jsonl", "--prefix", "MyDev")
        self.assertEqual(dumped.returncode, 0, dumped.stderr)
        generated = (self.fabric.folder / "mydev_generated.cpp").read_text()
        self.assertIn("mad_buffer.DeviceID = 0x5a50;", generated)
        done = self.verify("fabric.jsonl", 3)  # uncollected attributes need manual edits
        self.assertIn(" 0 differ", done.stdout)

    def test_a_collector_completes_a_node(self):
        (self.fabric.folder / "extra.jsonl").write_bytes(EXTRA.read_bytes())
        done = self.merge()
        # 7 records of the node, both masks, one record of the port
        self.assertEqual(done.stdout, "whole.jsonl: 5 nodes, 0 of them added; 10 records added\n")
        dumped = self.fabric.fabscan("dump", "whole.jsonl", "--prefix", "MyDev", "--guid",
                                     LEAF_GUID, "--strict")
        self.assertEqual(dumped.returncode, 0, dumped.stdout + dumped.stderr)
        done = self.verify("whole.jsonl", 0, "--guid", LEAF_GUID)
        self.assertIn(" 0 differ", done.stdout)

    def test_a_merge_with_itself_changes_nothing(self):
        (self.fabric.folder / "extra.jsonl").write_text(
            (self.fabric.folder / "fabric.jsonl").read_text())
        self.merge()
        self.assertEqual(self.fabric.snapshot("whole.jsonl").lines, self.fabric.snapshot().lines)

    def test_a_contradiction_reports_both_values(self):
        lines = [json.loads(line) for line in EXTRA.read_text().splitlines()]
        lines[1]["numPorts"] = 7
        (self.fabric.folder / "extra.jsonl").write_text(
            "".join(json.dumps(line) + "\n" for line in lines))
        done = self.merge(expect=1)
        self.assertEqual(done.stderr,
                         "fabscan: error: fabric.jsonl and extra.jsonl contradict each other in 1 "
                         f"value: leaf ({LEAF_GUID}): numPorts is 6 and 7; use --prefer "
                         "base or --prefer extra to select one; 'fabscan diff' lists the "
                         "differences\n")
        self.assertFalse((self.fabric.folder / "whole.jsonl").exists())
        self.merge("--prefer", "extra")
        self.assertEqual(self.fabric.snapshot("whole.jsonl").node(nets.LEAF)["numPorts"], 7)
        self.merge("--prefer", "both", expect=2)


if __name__ == "__main__":
    unittest.main()
