"""`fabscan anonymise` from end to end."""

import json
import re

from command_line import (DONE, EXAMPLES, FAILED, WRONG_USAGE, CommandTest, main, snapshot, switch)

DEMO = EXAMPLES / "demo.fabscan.jsonl"

# Paths of identifying values, without list indices.
REPLACED = {
    "name", "guid", "alternativeName", "absent",
    "attributes.SMP_NodeInfo.SystemImageGUID", "attributes.SMP_NodeInfo.NodeGUID",
    "attributes.SMP_NodeInfo.PortGUID",
    "attributes.VendorSpec_GeneralInfo.HWInfo.manufacturing_base_mac_32_47",
    "attributes.VendorSpec_GeneralInfo.HWInfo.manufacturing_base_mac_0_31",
    "attributes.IB_ClassPortInfo.RedirectGID", "attributes.IB_ClassPortInfo.TrapGID",
    "attributes.IB_ClassPortInfo.RedirectQKey", "attributes.IB_ClassPortInfo.TrapQKey",
    "ports.attributes.SMP_PortInfo.GIDPrefix", "ports.absent", "description", "ports.portGuid",
    "ports.peer.guid",
}


def values(node, path=""):
    """(path, value) of every value in a node line."""
    if isinstance(node, dict):
        for key, value in node.items():
            yield from values(value, f"{path}.{key}" if path else key)
    elif isinstance(node, list):
        for index, value in enumerate(node):
            yield from values(value, f"{path}[{index}]")
    else:
        yield path, node


def kind(path):
    path = re.sub(r"\[\d+\]", "", path)
    return path[:path.index("absent") + 6] if "absent." in path else path


class Anonymise(CommandTest):
    def anonymise(self, *arguments, source=DEMO, **more):
        return self.run_command("anonymise", source, "--output", "out.jsonl", *arguments, **more)

    def nodes(self, path=None):
        text = (path or self.folder / "out.jsonl").read_text()
        return [json.loads(line) for line in text.splitlines()[1:-1]]

    def test_changed_and_unchanged_values(self):
        nodes = self.nodes(DEMO)
        node = next(node for node in nodes if node["name"] == "router-01")
        node["absent"] = {"SMP_SwitchInfo": "no answer"}
        port = next(port for port in node["ports"] if "SMP_PortInfo" in port["attributes"])
        port["absent"] = {"WrenReductionPortInfo": "no answer"}
        port["attributes"]["SMP_PortInfo"]["GIDPrefix"] = "0xfec0000000000001"
        source = self.put("in.jsonl", snapshot(*nodes))
        self.assertEqual(self.anonymise("--key", "k", source=source).returncode, DONE)
        changed = set()
        for before, after in zip(self.nodes(source), self.nodes(), strict=True):
            before, after = dict(values(before)), dict(values(after))
            self.assertEqual(before.keys(), after.keys())
            for path in before:
                if before[path] != after[path]:
                    changed.add(kind(path))
                elif kind(path) in REPLACED:
                    # Unchanged values do not identify anything.
                    self.assertIn(before[path],
                                  (0, 0xfe800000, "0x0", "0xfe80000000000000"), path)
        self.assertEqual(changed, REPLACED)

    def test_no_name_or_guid_remains(self):
        self.anonymise()
        text = (self.folder / "out.jsonl").read_text()
        for node in self.nodes(DEMO):
            for name in (node["name"], node.get("alternativeName")):
                if isinstance(name, str):
                    self.assertNotIn(name, text)
            self.assertNotIn(node["guid"][2:].lstrip("0"), text)
        self.assertNotIn("5a1e0c0000", text)

    def test_the_header_is_replaced(self):
        lines = [{"fabscan_snapshot": 2, "source": "our cluster", "created": "today"}, switch(),
                 {"end": True, "nodes": 1}]
        path = self.put("in.jsonl", "".join(json.dumps(line) + "\n" for line in lines))
        self.anonymise(source=path)
        self.assertEqual((self.folder / "out.jsonl").read_text().splitlines()[0],
                         '{"fabscan_snapshot":2,"source":"anonymised"}')

    def test_consistent(self):
        info = {name: 0 for name in "NumPorts NodeType ClassVersion BaseVersion DeviceID "
                "PartitionCap revision VendorID LocalPortNum".split()}
        info.update(SystemImageGUID="0x2", NodeGUID="0x1", PortGUID="0x1")
        path = self.put("in.jsonl", snapshot(
            switch("S1", "0x1", alternativeName="S2", attributes={"SMP_NodeInfo": info}),
            switch("S2", "0x2")))
        self.anonymise(source=path)
        one, other = self.nodes()
        info = one["attributes"]["SMP_NodeInfo"]
        self.assertEqual(int(info["NodeGUID"], 16), int(one["guid"], 16))
        self.assertEqual(info["PortGUID"], info["NodeGUID"])
        self.assertEqual(int(info["SystemImageGUID"], 16), int(other["guid"], 16))
        self.assertEqual(one["alternativeName"], other["name"])

    def test_repeatable_with_the_same_key(self):
        def text(*arguments):
            self.assertEqual(self.anonymise("--force", *arguments).returncode, DONE)
            return (self.folder / "out.jsonl").read_text()

        key = self.put("key", "one\n")
        self.assertEqual(text("--key", "one"), text("--key-file", key))
        self.assertNotEqual(text("--key", "one"), text("--key", "two"))
        self.assertNotEqual(text(), text())

    def test_the_result_is_a_snapshot_of_the_same_structure(self):
        self.anonymise()
        def models(path):
            run = self.run_command("models", path, "--json")
            return sorted((model["type"], model["vendorID"], model["deviceID"], model["psid"],
                           model["firmware"], model["nodes"])
                          for model in json.loads(run.stdout)["models"])
        self.assertEqual(models("out.jsonl"), models(DEMO))

    def test_reasons(self):
        path = self.put("in.jsonl", snapshot(
            switch(absent={"SMP_RouterInfo": "no answer from S9"})))
        self.anonymise(source=path)
        self.assertEqual(self.nodes()[0]["absent"], {"SMP_RouterInfo": "withheld"})
        self.anonymise("--keep-reasons", "--force", source=path)
        self.assertEqual(self.nodes()[0]["absent"], {"SMP_RouterInfo": "no answer from S9"})

    def test_report(self):
        path = self.put("in.jsonl", snapshot(switch()))
        run = self.anonymise(source=path)
        self.assertEqual(
            run.stdout,
            "out.jsonl: 1 node, 0 ports\n"
            "  replaced  names and alternative names; GUIDs of nodes, ports and systems; GIDs and "
            "GID\n"
            "            prefixes except the default one; manufacturing MAC addresses; queue keys\n"
            "  removed   source and time of the snapshot; reasons why records are absent\n"
            "  kept      types, port numbers and states, LIDs, partition keys, vendor and device "
            "ids,\n"
            "            hardware revision, PSID, firmware and its date, up time, counters, the "
            "order\n"
            "            of nodes\n"
            "  the key was random and is not stored; use --key-file for repeatable replacements\n")
        run = self.run_command("anonymise", path, "--output", "-", "--key", "k")
        self.assertTrue(run.stdout.startswith('{"fabscan_snapshot":2'))
        self.assertTrue(run.stderr.startswith("standard output: 1 node, 0 ports\n"))
        self.assertNotIn("gone", run.stderr)

    def test_the_report_fits_the_terminal(self):
        path = self.put("in.jsonl", snapshot(switch()))
        for columns in (80, 40):
            text = self.on_terminal("anonymise", path, "--output", "out", "--force",
                                    columns=columns)
            self.assertIn("\n            ", text)
            self.assertRegex(text, r"order\s+of\s+nodes\n")
            for line in text.splitlines():
                self.assertLessEqual(len(line), columns, line)

    def test_errors(self):
        self.assert_fails(self.anonymise("--key", ""), "--key: is empty; specify some text",
                          WRONG_USAGE)
        self.assert_fails(self.anonymise("--key-file", "none"),
                          "none: cannot read the key: No such file or directory; check --key-file")
        (self.folder / "folder").mkdir()
        self.assert_fails(self.anonymise("--key-file", "folder"),
                          "folder: cannot read the key: Is a directory; check --key-file")
        self.assert_fails(self.anonymise("--key-file", "/dev/zero"),
                          "/dev/zero: is larger than 1048576 bytes; check --key-file")
        self.put("empty", "\n")
        self.assert_fails(self.anonymise("--key-file", "empty"),
                          "empty: contains no key; write one line of text", WRONG_USAGE)
        self.assertEqual(self.anonymise("--key", "a", "--key-file", "empty").returncode,
                         WRONG_USAGE)
        self.put("out.jsonl", "mine")
        self.assert_fails(self.anonymise(), "out.jsonl: exists; --force replaces it")
        self.assertEqual((self.folder / "out.jsonl").read_text(), "mine")


if __name__ == "__main__":
    main()
