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
            "7 differences: 1 node in both, 1 only in a.jsonl, 1 only in b.jsonl\n")
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
            "1 difference: 1 node in both, 0 only in a.jsonl, 0 only in b.jsonl\n")
        self.assertEqual(self.diff(other, "--by-name", "--ignore", "guid").returncode, SAME)

    def test_json(self):
        def change(nodes):
            nodes[0x5a1e0c0000000200]["attributes"]["SMP_NodeInfo"]["DeviceID"] = 1

        run = self.diff(self.changed(change), "--json")
        self.assertEqual(run.returncode, DIFFERENT)
        self.assertEqual(
            json.loads(run.stdout),
            {"first": "a.jsonl", "second": "b.jsonl", "same": False,
             "differences": [{"name": "leaf-01/U1", "guid": "0x5a1e0c0000000200",
                              "record": "SMP_NodeInfo", "field": "DeviceID",
                              "first": "0x5a50", "second": "0x1"}]})
        run = self.diff(DEMO, "--json")
        self.assertEqual(run.returncode, SAME)
        self.assertEqual(json.loads(run.stdout)["same"], True)

    def test_a_file_that_cannot_be_read_is_told_from_a_difference(self):
        self.assert_fails(self.diff("none.jsonl"),
                          "none.jsonl: cannot open: No such file or directory", TROUBLE)
        self.put("bad.jsonl", "{}\n")
        self.assertEqual(self.diff("bad.jsonl").returncode, TROUBLE)

    def test_wrong_usage(self):
        self.assert_fails(self.diff(DEMO, "--ignore", "stat"),
                          "--ignore: there is no field 'stat'; did you mean 'state'?", TROUBLE)
        self.assertEqual(self.diff().returncode, TROUBLE)

    def test_a_full_disk_is_told_from_a_difference(self):
        with open("/dev/full", "w") as full:
            run = self.diff(EXAMPLES / "partial.fabscan.jsonl", stdout=full)
        self.assertEqual(run.returncode, TROUBLE)
        self.assertEqual(run.stderr,
                         "fabscan: error: standard output: cannot write: No space left on device; "
                         "free some space, or write elsewhere\n")


if __name__ == "__main__":
    main()
