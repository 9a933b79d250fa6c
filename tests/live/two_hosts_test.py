"""`fabscan diff` and `fabscan merge` with discoveries of one fabric from two hosts."""

import json
import unittest

import nets
from simulated_fabric import LiveTestCase

INCLUDE = "--include-ingress-port"


class TwoHostsTest(LiveTestCase):
    def setUp(self):
        net = nets.two_switches()
        # Each host reaches this adapter through a different port.
        self.dual = net.add("H", int(nets.THERE[2:], 16) + 0x100, 2, "dual HCA-1")
        net.link(nets.LEAF, 5, self.dual, 1)
        net.link(nets.SPINE, 4, self.dual, 2)
        self.fabric = self.serve(net, nets.HERE)
        self.discover(self.fabric, output="here.jsonl")
        self.fabric.host = nets.THERE
        self.discover(self.fabric, output="there.jsonl")

    def diff(self, *arguments):
        return self.fabric.fabscan("diff", *arguments)

    def test_the_discoveries_do_not_differ(self):
        run = self.diff("here.jsonl", "there.jsonl")
        self.assertEqual((run.returncode, run.stdout, run.stderr), (0, "", ""))

    def test_what_depends_on_the_host(self):
        run = self.diff("here.jsonl", "there.jsonl", INCLUDE, "--json")
        self.assertEqual(run.returncode, 1, run.stderr)
        differences = json.loads(run.stdout)["differences"]
        self.assertEqual({(each["record"], each["field"]) for each in differences},
                         {("SMP_NodeInfo", "LocalPortNum"), ("SMP_NodeInfo", "PortGUID"),
                          ("SMP_PortInfo", "LocalPortNum")})
        guids = [each for each in differences if each["field"] == "PortGUID"]
        dual = int(self.dual[2:], 16)
        self.assertEqual(
            [(int(each["guid"], 16), int(each["first"], 16), int(each["second"], 16))
             for each in guids], [(dual, dual + 1, dual + 2)])

    def test_they_merge_into_the_first(self):
        run = self.fabric.fabscan("merge", "here.jsonl", "there.jsonl", "--output", "both.jsonl")
        self.assertEqual(run.returncode, 0, run.stderr)
        run = self.diff("here.jsonl", "both.jsonl", INCLUDE)
        self.assertEqual((run.returncode, run.stdout), (0, ""))
        run = self.fabric.fabscan("merge", "here.jsonl", "there.jsonl", INCLUDE, "--output",
                                  "refused.jsonl")
        self.assertEqual(run.returncode, 1)
        self.assertIn("contradict each other", run.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)
