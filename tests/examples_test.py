"""The bundled snapshots contain values that real devices could report."""

import collections
import json
import pathlib
import re
import unittest

EXAMPLES = pathlib.Path(__file__).resolve().parent.parent / "examples"
SNAPSHOTS = sorted(EXAMPLES.glob("*.jsonl"))
LAST_UNICAST_LID = 0xBFFF
STATES = ["UNKNOWN", "DOWN", "INIT", "ARM", "ACTIVE"]
POLLING, LINK_UP = 2, 5
KNOWN_REASON = re.compile(r"timed out|status 0x[0-9a-f]{4}|"
                          r"not asked: two consecutive queries of this node timed out")


def nodes_of(path):
    return [json.loads(line) for line in path.read_text().splitlines()[1:-1]]


def infos_of(nodes):
    """(node, port, PortInfo) of every port with PortInfo. An omitted field is 0."""
    return [(node, port, collections.defaultdict(int, port["attributes"]["SMP_PortInfo"]))
            for node in nodes for port in node["ports"]
            if "SMP_PortInfo" in port.get("attributes", {})]


class Examples(unittest.TestCase):
    def infos(self):
        return [info for path in SNAPSHOTS for info in infos_of(nodes_of(path))]

    def test_there_are_three_examples(self):
        self.assertEqual([path.name for path in SNAPSHOTS],
                         ["demo.fabscan.jsonl", "extra.jsonl", "partial.fabscan.jsonl"])
        self.assertGreater(len(self.infos()), 20)

    def test_every_switch_and_every_port_of_another_node_has_its_own_lid(self):
        for path in SNAPSHOTS:
            owners = {}
            infos = infos_of(nodes_of(path))
            for node, port, info in infos:
                owner = node["guid"], None if node["type"] == "SW" else port["num"]
                self.assertIn(info["LID"], range(1, LAST_UNICAST_LID + 1))
                self.assertEqual(owners.setdefault(info["LID"], owner), owner)
                self.assertEqual(info["LMC"], 0)
            self.assertEqual(len(set(owners.values())), len(owners))
            managers = {info["MasterSMLID"] for _, _, info in infos}
            self.assertLessEqual(len(managers), 1)
            self.assertLessEqual(managers, owners.keys())

    def test_link_widths_and_speeds_are_enabled_if_supported_and_active_if_enabled(self):
        for node, port, info in self.infos():
            place = f"{node['name']} port {port['num']}"
            for supported, enabled, active in (
                ("LinkWidthSup", "LinkWidthEnabled", "LinkWidthActive"),
                ("LinkSpeedSup", "LinkSpeedEnabled", "LinkSpeedActive"),
                ("LinkSpeedExtSup", "LinkSpeedExtEnabled", "LinkSpeedExtActive"),
                ("LinkSpeedExtSup2", "LinkSpeedExtEnabled2", "LinkSpeedExtActive2"),
            ):
                supported, enabled, active = info[supported], info[enabled], info[active]
                self.assertEqual(enabled & ~supported, 0, place)
                self.assertEqual(active & (active - 1), 0, place)
                if port["state"] != "DOWN":
                    self.assertEqual(active & ~enabled, 0, place)
            self.assertLessEqual(info["NeighborMTU"], info["MTUCap"], place)
            self.assertIn(info["MTUCap"], range(1, 6), place)
            self.assertLessEqual(info["OperationalVLs"], info["VLCap"], place)

    def test_port_states_agree(self):
        for _, port, info in self.infos():
            self.assertEqual(STATES[info["PortState"]], port["state"])
            self.assertEqual(info["PortPhysicalState"],
                             POLLING if port["state"] == "DOWN" else LINK_UP)

    def test_reasons_are_those_of_a_discovery(self):
        reasons = [reason for path in SNAPSHOTS for node in nodes_of(path)
                   for owner in (node, *node["ports"])
                   for reason in owner.get("absent", {}).values()]
        self.assertGreater(len(reasons), 3)
        for reason in reasons:
            self.assertRegex(reason, rf"\A({KNOWN_REASON.pattern})\Z")


if __name__ == "__main__":
    unittest.main(verbosity=2)
