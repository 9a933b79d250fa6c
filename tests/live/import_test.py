"""`fabscan import` of ibnetdiscover caches, compared with `discover`."""

import unittest

import nets
from simulated_fabric import LiveTestCase, tool

NOT_SCANNED = {"SMP_PortInfo": "a discovery cache contains only the ports that the scan traversed"}
NOT_STORED = {"SMP_PortInfoExtended": "a discovery cache does not contain it"}


class ImportTest(LiveTestCase):
    def save_cache(self, fabric, **more):
        done = fabric.run(tool("ibnetdiscover"), "--cache", "fabric.cache", **more)
        self.assertEqual(done.returncode, 0, done.stderr)

    def import_cache(self, fabric, expect=0):
        done = fabric.fabscan("import", "fabric.cache", "--output", "imported.jsonl")
        self.assertEqual(done.returncode, expect, done.stderr)
        return done

    def without_what_a_cache_lacks(self, fabric):
        """The discovered snapshot, reduced to what a cache contains."""
        nodes = fabric.snapshot().nodes
        for node in nodes.values():
            for port in node["ports"]:
                if node["type"] != "SW" and port["state"] == "DOWN":
                    port.update(state="UNKNOWN", absent=NOT_SCANNED)
                    del port["attributes"]
                elif port["attributes"].pop("SMP_PortInfoExtended", None) is not None:
                    port["absent"] = NOT_STORED
        return nodes

    def compare(self, fabric, **more):
        self.discover(fabric, **more)
        self.save_cache(fabric, **more)
        self.import_cache(fabric)
        self.assertEqual(fabric.snapshot("imported.jsonl").nodes,
                         self.without_what_a_cache_lacks(fabric))

    def test_agrees_with_discover(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.compare(fabric)
        self.assertEqual(len(fabric.snapshot("imported.jsonl").nodes), 5)

    def test_agrees_with_discover_except_for_port_info_extended(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.compare(fabric, FABSCAN_FAKE_OFFER="1", FABSCAN_FAKE_RULES="33:*:answer")
        self.assertEqual(fabric.snapshot("imported.jsonl").port(nets.LEAF, 5)["absent"],
                         NOT_STORED)

    def test_agrees_with_discover_on_a_fat_tree(self):
        fabric = self.serve(nets.fat_tree(), "H-5a1e0c0010000000",
                            ("-N", 4000, "-S", 600, "-P", 40000))
        self.compare(fabric)
        self.assertEqual(len(fabric.snapshot("imported.jsonl").nodes), 2500)

    def test_reports_what_the_scan_did_not_read(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        fabric.command(f'Error "{nets.THERE}" 100')
        self.save_cache(fabric, FABSCAN_FAKE_RULES="15:5:silence")
        done = self.import_cache(fabric, expect=3)
        self.assertIn("leaf (0x5a1e0c0000200000) lacks PortInfo (not in the discovery cache: the "
                      "query had failed) of port 5\n", done.stderr)
        self.assertIn("spine (0x5a1e0c0000200100) lacks the linked peer of port 3\n", done.stderr)

    def test_refuses_a_damaged_cache(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.save_cache(fabric)
        cache = fabric.folder / "fabric.cache"
        whole = cache.read_bytes()
        cache.write_bytes(whole[:1000])
        done = self.import_cache(fabric, expect=1)
        self.assertEqual(done.stderr,
                         "fabscan: error: fabric.cache: byte 1000: the file ends too early; "
                         f"expected {len(whole)} bytes\n")
        self.assertFalse((fabric.folder / "imported.jsonl").exists())

    def test_reads_a_fabric_with_lids(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        for port, lid, mask in ((f'"{nets.HERE}"[1]', 5, 1), (f'"{nets.LEAF}"[0]', 7, 2),
                                (f'"{nets.LEAF}"[3]', 9, 1), (f'"{nets.ROUTER}"[1]', 12, 3)):
            fabric.command(f"Baselid {port} {lid} {mask}")
        self.compare(fabric)
        info = fabric.snapshot("imported.jsonl").port(nets.HERE, 1)["attributes"]["SMP_PortInfo"]
        self.assertEqual(info["LID"], 5)

    def test_reads_standard_input(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.save_cache(fabric)
        done = fabric.run("sh", "-c", '"$FABSCAN" import - --output - < fabric.cache')
        self.assertEqual(done.returncode, 0, done.stderr)
        self.import_cache(fabric)
        self.assertEqual(done.stdout, (fabric.folder / "imported.jsonl").read_text())

    def test_writes_compressed_as_discover_does(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(fabric)
        self.discover(fabric, output="fabric.zst")
        self.save_cache(fabric)
        self.import_cache(fabric)
        fabric.fabscan("import", "fabric.cache", "--output", "imported.zst")
        for plain, compressed in (("fabric.jsonl", "fabric.zst"),
                                  ("imported.jsonl", "imported.zst")):
            self.assertEqual((fabric.folder / compressed).read_bytes()[:4], b"\x28\xb5\x2f\xfd")
            done = fabric.fabscan("diff", plain, compressed)
            self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
