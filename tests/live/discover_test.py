"""`fabscan discover` with complete fabrics."""

import os
import shutil
import signal
import unittest

import nets
from simulated_fabric import LiveTestCase, number


class DiscoverTest(LiveTestCase):
    def test_reads_every_node_and_port(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        done = self.discover(fabric)
        # 5 NodeInfo, 5 NodeDescription, 2 SwitchInfo, 7 + 5 + 2 + 2 + 2 PortInfo
        self.assertEqual(done.stdout, "fabric.jsonl: 5 nodes, 18 ports; 30 of 30 attributes\n")
        self.assertEqual(done.stderr, "")
        snapshot = fabric.snapshot()
        self.assertEqual(
            [(n["name"], n["type"], n["numPorts"], [p["num"] for p in n.get("ports", [])])
             for n in snapshot.nodes.values()],
            [("here HCA-1", "CA", 2, [1, 2]), ("there HCA-1", "CA", 2, [1, 2]),
             ("leaf", "SW", 6, [0, 1, 2, 3, 4, 5, 6]), ("spine", "SW", 4, [0, 1, 2, 3, 4]),
             ("router", "RTR", 2, [1, 2])])
        info = snapshot.node(nets.HERE)["attributes"]["SMP_NodeInfo"]
        self.assertEqual(info["VendorID"], 0x5A1E0C)
        self.assertEqual(info["DeviceID"], 0x5A90)
        self.assertEqual(number(info["NodeGUID"]), 0x5A1E0C0000100000)
        self.assertEqual(number(info["SystemImageGUID"]), 0x5A1E0C0000100080)

    def test_distinguishes_linked_ports_from_ports_that_are_down(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(fabric)
        snapshot = fabric.snapshot()
        states = [p["state"] for p in snapshot.node(nets.LEAF)["ports"]]
        self.assertEqual(states, ["ACTIVE", "INIT", "INIT", "INIT", "INIT", "DOWN", "DOWN"])
        self.assertEqual(snapshot.port(nets.HERE, 2)["state"], "DOWN")

    def test_follows_one_of_two_parallel_links_when_the_other_goes_down(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        fabric.command(f'Unlink "{nets.LEAF}"[1]')
        self.discover(fabric)
        snapshot = fabric.snapshot()
        self.assertEqual(len(snapshot.nodes), 5)
        self.assertEqual(snapshot.port(nets.LEAF, 1)["state"], "DOWN")
        self.assertEqual(snapshot.port(nets.SPINE, 1)["state"], "DOWN")
        self.assertEqual(snapshot.port(nets.LEAF, 2)["state"], "INIT")

    def test_records_why_a_router_has_no_router_info(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(fabric)
        absent = fabric.snapshot().node(nets.ROUTER)["absent"]
        self.assertEqual(absent, {"SMP_RouterInfo": "not requested: the public libraries "
                                                    "define neither its attribute ID nor its "
                                                    "layout"})

    def test_gives_nodes_with_equal_descriptions_distinct_names(self):
        fabric = self.serve(nets.two_switches(("twin", "twin")), nets.HERE)
        self.discover(fabric)
        snapshot = fabric.snapshot()
        for node_id in (nets.LEAF, nets.SPINE):
            node = snapshot.node(node_id)
            self.assertEqual(node["name"], f"twin [0x{node_id[2:]}]")
            self.assertEqual(node["alternativeName"], "twin")

    def test_repeats_the_same_output(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(fabric)
        first = fabric.snapshot().lines
        self.discover(fabric, "--force", "--outstanding", "8")
        self.assertEqual(fabric.snapshot().lines, first)

    def test_an_earlier_snapshot_is_kept(self):
        """Standard output cannot be written."""
        fabric = self.serve(nets.two_switches(), nets.HERE)
        for arguments, earlier in (((), None), (("--force",), "earlier\n")):
            path = fabric.folder / "fabric.jsonl"
            if earlier is not None:
                path.write_text(earlier)
            with open("/dev/full", "w") as full:
                done = self.discover(fabric, *arguments, "--verbose", expect=1, stdout=full)
            self.assertEqual(done.stderr.splitlines()[-1],
                             "fabscan: error: standard output: cannot write: No space left on "
                             "device; free some space, or write elsewhere")
            ours, its = os.pipe()
            os.close(ours)
            self.discover(fabric, *arguments, expect=-signal.SIGPIPE, stdout=its)
            os.close(its)
            for left in fabric.folder.glob("sys-*"):  # by the simulator's client, without an exit
                shutil.rmtree(left)
            self.assertEqual(path.read_text() if path.exists() else None, earlier)

    def test_reads_from_the_given_port(self):
        fabric = self.serve(nets.two_switches(), nets.THERE)
        self.discover(fabric, "-C", "ibsim0", "-P", "1")
        self.assertIn("ibsim0 port 1", fabric.snapshot().lines[0])

    def test_reads_a_fat_tree_of_500_switches_and_2000_adapters(self):
        net = nets.fat_tree()
        host = "H-5a1e0c0010000000"
        fabric = self.serve(net, host, ("-N", 4000, "-S", 600, "-P", 40000))
        done = self.discover(fabric, "--outstanding", "16")
        self.assertEqual(done.stderr, "")
        # 2 of each node, 500 SwitchInfo, 500 x 37 and 2000 x 2 PortInfo
        self.assertEqual(done.stdout,
                         "fabric.jsonl: 2500 nodes, 22500 ports; 28000 of 28000 attributes\n")
        snapshot = fabric.snapshot()
        kinds = [node["type"] for node in snapshot.nodes.values()]
        self.assertEqual((kinds.count("SW"), kinds.count("CA")), (500, 2000))
        for node_id, links in net.links.items():
            up = {p["num"] for p in snapshot.node(node_id)["ports"]
                  if p["num"] != 0 and p["state"] != "DOWN"}
            self.assertEqual(up, set(links), node_id)
        names = [node["name"] for node in snapshot.nodes.values()]
        self.assertEqual(len(set(names)), 2500)
        self.assertEqual(snapshot.node(host)["name"], "host HCA-1 [0x5a1e0c0010000000]")


if __name__ == "__main__":
    unittest.main()
