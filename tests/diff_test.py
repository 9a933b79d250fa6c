"""`fabscan diff` from end to end."""

import json

from command_line import DONE, EXAMPLES, CommandTest, main, snapshot, switch

SAME, DIFFERENT, TROUBLE = range(3)
DEMO = EXAMPLES / "demo.fabscan.jsonl"


class Diff(CommandTest):
    def changed(self, change):
        """The bundled snapshot with a change to its nodes by GUID, as b.jsonl."""
        lines = [json.loads(line) for line in DEMO.read_text().splitlines()]
        nodes = {int(line["guid"], 16): line for line in lines if "guid" in line}
        change(nodes)
        lines[1:-1] = nodes.values()
        lines[-1]["nodes"] = len(lines) - 2
        return self.put("b.jsonl", "".join(json.dumps(line) + "\n" for line in lines)).name

    def diff(self, *arguments, **more):
        self.put("a.jsonl", DEMO.read_text())
        return self.run_command("diff", "a.jsonl", *arguments, **more)

    def test_the_same(self):
        run = self.diff(DEMO)
        self.assertEqual((run.returncode, run.stdout, run.stderr), (SAME, "", ""))

    def test_different(self):
        def change(nodes):
            leaf = nodes[0x5a1e0c0000000200]
            leaf["attributes"]["SMP_NodeInfo"]["DeviceID"] = 0x5a51
            del leaf["attributes"]["SMP_SwitchInfo"]
            port = leaf["ports"][3]
            port["state"] = "DOWN"
            port["attributes"]["SMP_PortInfo"]["LID"] = 0xbeef
            del leaf["ports"][-1]
            del nodes[0x5a1e0c0000000600]
            nodes[1] = switch("new", "0x1")

        lines = [json.loads(line) for line in DEMO.read_text().splitlines()]
        leaf = next(line for line in lines if line.get("name") == "leaf-01/U1")
        port = leaf["ports"][3]
        lid = port["attributes"]["SMP_PortInfo"]["LID"]
        run = self.diff(self.changed(change))
        self.assertEqual(
            run.stdout,
            "compute-001 HCA-1 (0x5a1e0c0000000600): only in a.jsonl\n"
            "leaf-01/U1 (0x5a1e0c0000000200)\n"
            "  SMP_NodeInfo.DeviceID: 0x5a50 -> 0x5a51\n"
            "  SMP_SwitchInfo: only in a.jsonl\n"
            f"  port {port['num']} state: {port['state']} -> DOWN\n"
            f"  port {port['num']} SMP_PortInfo.LID: {lid:#x} -> 0xbeef\n"
            f"  port {leaf['ports'][-1]['num']}: only in a.jsonl\n"
            "new (0x0000000000000001): only in b.jsonl\n"
            "\n"
            "7 differences: in 1 node; 1 node only in a.jsonl; 1 node only in b.jsonl\n")
        self.assertEqual((run.returncode, run.stderr), (DIFFERENT, ""))

    def test_ignore(self):
        def change(nodes):
            port = nodes[0x5a1e0c0000000200]["ports"][3]
            port["state"] = "DOWN"
            port["attributes"]["SMP_PortInfo"]["LID"] = 0xbeef

        other = self.changed(change)
        self.assertEqual(self.diff(other).returncode, DIFFERENT)
        self.assertEqual(self.diff(other, "--ignore", "state").returncode, DIFFERENT)
        run = self.diff(other, "--ignore", "state", "--ignore=SMP_PortInfo.LID")
        self.assertEqual((run.returncode, run.stdout), (SAME, ""))

    def test_by_name(self):
        def change(nodes):
            nodes[0x5a1e0c0000000500]["guid"] = "0x77"
            nodes[0x5a1e0c0000000200]["ports"][4]["peer"]["guid"] = "0x77"
            nodes[0x5a1e0c0000000b00]["ports"][0]["peer"]["guid"] = "0x77"

        other = self.changed(change)
        run = self.diff(other)
        self.assertIn("router-01 (0x5a1e0c0000000500): only in a.jsonl\n", run.stdout)
        self.assertIn("router-01 (0x0000000000000077): only in b.jsonl\n", run.stdout)
        run = self.diff(other, "--by-name")
        self.assertEqual(
            run.stdout,
            "router-01 (0x5a1e0c0000000500)\n"
            "  guid: 0x5a1e0c0000000500 -> 0x0000000000000077\n"
            "\n"
            "1 difference: in 1 node\n")
        self.assertEqual(self.diff(other, "--by-name", "--ignore", "guid").returncode, SAME)

    def test_links_come_first(self):
        def change(nodes):
            # The cable of compute-001 is now in a port of leaf-02 that was free.
            leaf, other_leaf = nodes[0x5a1e0c0000000200], nodes[0x5a1e0c0000000300]
            del leaf["ports"][3]["peer"]
            del other_leaf["ports"][2]["peer"]
            other_leaf["ports"][2]["peer"] = {"guid": "0x5a1e0c0000000600", "port": 1}
            nodes[0x5a1e0c0000000600]["ports"][0]["peer"] = {"guid": "0x5a1e0c0000000300", "port": 2}
            del nodes[0x5a1e0c0000000800]["ports"][0]["peer"]
            leaf["ports"][1]["peer"] = {"guid": "0x99", "port": 5}
            leaf["ports"][2]["state"] = "DOWN"

        other = self.changed(change)
        run = self.diff(other)
        self.assertEqual(run.returncode, DIFFERENT)
        self.assertEqual(
            run.stdout,
            "link moved: compute-001 HCA-1[1] from leaf-01/U1[3] to leaf-02/U1[2]\n"
            "link lost: leaf-02/U1[2] to unidentified-01[1]\n"
            "link added: leaf-01/U1[1] to 0x0000000000000099[5]\n"
            "leaf-01/U1 (0x5a1e0c0000000200)\n"
            "  port 2 state: ACTIVE -> DOWN\n"
            "\n"
            "3 links, 1 difference: in 1 node\n")
        run = self.diff(other, "--ignore", "state")
        self.assertTrue(run.stdout.endswith("\n\n3 links\n"), run.stdout)
        run = self.diff(other, "--ignore", "state", "--ignore", "peer")
        self.assertEqual((run.returncode, run.stdout), (SAME, ""))
        links = json.loads(self.diff(other, "--json").stdout)["links"]
        host = {"name": "compute-001 HCA-1", "guid": "0x5a1e0c0000000600", "port": 1}
        leaf = {"name": "leaf-01/U1", "guid": "0x5a1e0c0000000200"}
        other_leaf = {"name": "leaf-02/U1", "guid": "0x5a1e0c0000000300", "port": 2}
        self.assertEqual(links, [
            {"change": "moved", "end": host, "first": {**leaf, "port": 3}, "second": other_leaf},
            {"change": "lost", "end": other_leaf,
             "first": {"name": "unidentified-01", "guid": "0x5a1e0c0000000800", "port": 1}},
            {"change": "added", "end": {**leaf, "port": 1},
             "second": {"name": "0x0000000000000099", "guid": "0x0000000000000099", "port": 5}}])

    def test_a_snapshot_without_links(self):
        def change(nodes):
            for node in nodes.values():
                for port in node.get("ports", ()):
                    port.pop("peer", None)

        other = self.changed(change)
        run = self.diff(other)
        self.assertEqual((run.returncode, run.stdout),
                         (SAME, "links are not compared: b.jsonl contains none, though ports are up\n"))
        self.assertEqual(json.loads(self.diff(other, "--json").stdout)["linksCompared"], False)

    def test_json(self):
        def change(nodes):
            leaf = nodes[0x5a1e0c0000000200]
            leaf["attributes"]["SMP_NodeInfo"]["DeviceID"] = 1
            leaf["attributes"]["SMP_NodeInfo"]["NodeGUID"] = "0x2"
            leaf["inSubFabric"] = False
            del leaf["attributes"]["SMP_SwitchInfo"]
            leaf["absent"] = {"SMP_SwitchInfo": "\x1b"}
            nodes[1] = switch("new", "0x1")

        run = self.diff(self.changed(change), "--json")
        self.assertEqual(run.returncode, DIFFERENT)
        leaf = {"name": "leaf-01/U1", "guid": "0x5a1e0c0000000200"}
        self.assertEqual(
            json.loads(run.stdout),
            {"fabscan_report": 1, "first": "a.jsonl", "second": "b.jsonl", "same": False,
             "links": [], "linksCompared": True,
             "differences": [
                 {**leaf, "field": "inSubFabric", "first": True, "second": False},
                 {**leaf, "record": "SMP_NodeInfo", "field": "NodeGUID",
                  "first": "0x5a1e0c0000000200", "second": "0x2"},
                 {**leaf, "record": "SMP_NodeInfo", "field": "DeviceID",
                  "first": 0x5a50, "second": 1},
                 {**leaf, "record": "SMP_SwitchInfo", "first": True, "second": False},
                 {**leaf, "field": "absent.SMP_SwitchInfo", "second": "\x1b"},
                 {"name": "new", "guid": "0x0000000000000001", "first": False, "second": True}]})
        run = self.diff(DEMO, "--json")
        self.assertEqual(run.returncode, SAME)
        self.assertEqual(json.loads(run.stdout)["same"], True)

    def test_texts_are_harmless_on_a_terminal(self):
        self.put("one.jsonl", snapshot(switch("a\x1b[1m", absent={"SMP_NodeInfo": "\x1b]0;%\x07"})))
        self.put("other.jsonl", snapshot(switch("a", absent={"SMP_NodeInfo": ""})))
        run = self.run_command("diff", "one.jsonl", "other.jsonl")
        self.assertEqual(run.stdout, "a%1B[1m (0x0000000000000001)\n"
                                     "  name: a%1B[1m -> a\n"
                                     "  absent.SMP_NodeInfo: %1B]0;%%07 -> without a reason\n"
                                     "\n"
                                     "2 differences: in 1 node\n")

    def test_two_hosts(self):
        def change(nodes):
            for guid in (0x5a1e0c0000000200, 0x5a1e0c0000000600):
                info = nodes[guid]["attributes"]["SMP_NodeInfo"]
                info["LocalPortNum"] += 1
                info["PortGUID"] = "0x1"
            port = nodes[0x5a1e0c0000000200]["ports"][3]
            port["attributes"]["SMP_PortInfo"]["LocalPortNum"] += 1

        other = self.changed(change)
        run = self.diff(other)
        self.assertIn("leaf-01/U1 (0x5a1e0c0000000200)\n  SMP_NodeInfo.PortGUID: ", run.stdout)
        self.assertIn("\n1 difference: in 1 node\n", run.stdout)
        run = self.diff(other, "--include-ingress-port")
        self.assertIn("\n5 differences: in 2 nodes\n", run.stdout)

    def test_nodes_are_listed_in_natural_order(self):
        self.put("one.jsonl", snapshot(*(switch(f"leaf{n}", hex(n)) for n in (10, 9, 1))))
        self.put("none.jsonl", snapshot())
        run = self.run_command("diff", "one.jsonl", "none.jsonl")
        self.assertEqual([line.split()[0] for line in run.stdout.splitlines()[:3]],
                         ["leaf1", "leaf9", "leaf10"])
        self.assertIn("\n3 differences: 3 nodes only in one.jsonl\n", run.stdout)

    def test_an_unreadable_file_is_not_a_difference(self):
        self.assert_fails(self.diff("none.jsonl"),
                          "none.jsonl: cannot open: No such file or directory", TROUBLE)
        self.put("bad.jsonl", "{}\n")
        self.assertEqual(self.diff("bad.jsonl").returncode, TROUBLE)

    def test_wrong_usage(self):
        self.assert_fails(self.diff(DEMO, "--ignore", "stat"),
                          "--ignore: unknown field 'stat'; did you mean 'state'?", TROUBLE)
        self.assertEqual(self.diff().returncode, TROUBLE)

    def test_a_full_disk_is_not_a_difference(self):
        for arguments in ((EXAMPLES / "partial.fabscan.jsonl",), (DEMO,), ("--help",)):
            with open("/dev/full", "w") as full:
                run = self.diff(*arguments, stdout=full)
            if arguments == (DEMO,):  # equal: nothing to write
                self.assertEqual((run.returncode, run.stderr), (DONE, ""))
                continue
            self.assertEqual(run.returncode, TROUBLE)
            self.assertEqual(run.stderr,
                             "fabscan: error: standard output: cannot write: No space left on "
                             "device; free some space, or write elsewhere\n")


if __name__ == "__main__":
    main()
