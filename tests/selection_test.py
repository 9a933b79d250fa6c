"""How subcommands select nodes: --guid, --guid-file, --name, --type and --model."""

import json
import re

from command_line import (DONE, EXAMPLES, FAILED, WRONG_USAGE, CommandTest, main, snapshot,
                          switch)

DEMO = EXAMPLES / "demo.fabscan.jsonl"
LEAVES = ["leaf-01/U1", "leaf-02/U1"]
ADAPTERS = ["compute-001 HCA-1", "compute-002 HCA-1"]


class Selection(CommandTest):
    def names(self, *arguments, subcommand="show"):
        run = self.run_command(subcommand, DEMO, "--json", *arguments)
        self.assertEqual(run.stderr, "")
        return sorted(node["name"] for node in json.loads(run.stdout)["nodes"])

    def test_forms_of_guids(self):
        for guid in ("5a1e0c0000000200", "0x5A1E0C0000000200", "5a1e:0c00:0000:0200",
                     "5a:1e:0c:00:00:00:02:00", "S-5a1e0c0000000200"):
            self.assertEqual(self.names("--guid", guid), LEAVES[:1], guid)
        guids = self.put("guids", "5a1e:0c00:0000:0200\nS-5a1e0c0000000300  # leaf two\n")
        self.assertEqual(self.names("--guid-file", guids), LEAVES)

    def test_options(self):
        self.assertEqual(self.names("--name", "leaf*"), LEAVES)
        self.assertEqual(self.names("--name", "leaf-0[13]/U?"), LEAVES[:1])
        self.assertEqual(self.names("--type", "Router"), ["router-01"])
        self.assertEqual(self.names("--model", "RTR_5a52"), ["router-01"])
        self.assertEqual(self.names("--model", "0x5a50"), LEAVES[:1])

    def test_values_are_alternatives_and_options_are_combined(self):
        self.assertEqual(self.names("--name", "leaf*", "--name", "router*"), [*LEAVES, "router-01"])
        self.assertEqual(self.names("--name", "*-01*", "--type", "RTR", "--type", "SW"),
                         ["leaf-01/U1", "mgmt-switch-01/U1", "router-01", "spine-01/U1"])
        self.assertEqual(self.names("--guid", "5a1e0c0000000200", "--guid", "5a1e0c0000000600",
                                    "--type", "CA"), ADAPTERS[:1])

    def test_models_are_the_listed_ones(self):
        models = json.loads(self.run_command("models", DEMO, "--json").stdout)["models"]
        for model in models:
            selected = self.names("--model", model["prefix"], subcommand="check")
            self.assertEqual(len(selected), model["nodes"], model["prefix"])
            self.assertIn(model["name"], selected)

    def test_in_every_subcommand(self):
        self.assertEqual(self.names("--name", "compute*"), ADAPTERS)
        self.assertEqual(self.names("--name", "compute*", subcommand="check"), ADAPTERS)
        for subcommand in (["dump", "--prefix", "P"], ["verify"]):
            run = self.run_command(subcommand[0], DEMO, *subcommand[1:], "--name", "x*")
            verb = {"dump": "write"}.get(subcommand[0], subcommand[0])
            self.assert_fails(run, f"{DEMO}: no node to {verb}: no node matches --name 'x*'; "
                                   "'fabscan show' lists the nodes")

    def test_dump_writes_the_selected_nodes(self):
        self.run_command("dump", DEMO, "--prefix", "P", "--name", "compute*", "--type", "HCA")
        text = (self.folder / "p_generated.cpp").read_text()
        self.assertEqual(text.count("// Node Type: "), 2)
        for name in ADAPTERS:
            self.assertIn(name, text)

    def test_outside_the_sub_fabric(self):
        self.assertEqual(self.names("--name", "lab-guest*"), ["lab-guest-01 HCA-1"])
        self.assert_fails(self.run_command("check", DEMO, "--name", "lab-guest*"),
                          f"{DEMO}: no node to check: no node in the sub-fabric matches --name "
                          "'lab-guest*'; 'fabscan show' lists the nodes")

    def test_a_value_without_a_match_among_others(self):
        run = self.run_command("show", DEMO, "--name", "leaf*", "--name", "leef*", "--guid", "1",
                               "--guid", "5a1e0c0000000200")
        self.assertEqual(run.stderr, "fabscan: warning: no node has the GUID 0x0000000000000001\n"
                                     "fabscan: warning: no node matches --name 'leef*'\n")
        self.assertEqual(run.returncode, DONE)
        run = self.run_command("verify", DEMO, "--name", "compute-001*", "--name", "leef*")
        self.assert_fails(run, f"{DEMO}: no node matches --name 'leef*'; 'fabscan show' lists the "
                               "nodes", FAILED)

    def test_a_file_that_has_no_guids(self):
        for name, cause in (("/dev/zero", "is larger than 67108864 bytes"),
                            ("/", "cannot read the GUIDs: Is a directory"),
                            ("none", "cannot read the GUIDs: No such file or directory")):
            self.assert_fails(self.run_command("show", DEMO, "--guid-file", name),
                              f"{name}: {cause}; check --guid-file")
        with open("/dev/zero", "rb") as zeros:
            self.assert_fails(self.run_command("show", DEMO, "--guid-file", "-", stdin=zeros),
                              "standard input: is larger than 67108864 bytes; check --guid-file")

    def test_options_that_exclude_each_other(self):
        self.assert_fails(self.run_command("show", DEMO, "--name", "leaf*", "--type", "CA"),
                          f"{DEMO}: no node to show: no node matches all of --name and --type; "
                          "'fabscan show' lists the nodes")

    def test_a_malformed_type(self):
        self.assert_fails(self.run_command("check", DEMO, "--type", "node"),
                          "--type: 'node' is not a node type; expected SW (switch), CA (adapter, "
                          "HCA) or RTR (router)", WRONG_USAGE)

    def test_one_per_model_uses_the_selected_nodes(self):
        run = self.run_command("dump", DEMO, "--prefix", "P", "--one-per-model", "--name", "leaf*")
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertEqual(self.entries(), ["p_sw_5a40_generated.cpp", "p_sw_5a50_generated.cpp"])


class Order(CommandTest):
    """Lists are in natural order; generated files are not."""

    NAMES = ["leaf1", "leaf2", "leaf10", "leaf10/U2", "leaf10/U10"]

    def setUp(self):
        super().setUp()
        self.put("f.jsonl", snapshot(*(switch(name, hex(guid), attributes={"SMP_NodeInfo": {
            "ClassVersion": 1, "BaseVersion": 1, "DeviceID": guid, "PartitionCap": 1,
            "revision": 1, "VendorID": 0x5a1e0c}})
            for guid, name in enumerate(sorted(self.NAMES), 1))))

    def test_json(self):
        for subcommand, key in (("show", "nodes"), ("check", "nodes"), ("models", "models")):
            run = self.run_command(subcommand, "f.jsonl", "--json")
            self.assertEqual([each["name"] for each in json.loads(run.stdout)[key]], self.NAMES,
                             subcommand)

    def test_text(self):
        for subcommand in ("show", "check", "models"):
            rows = [line.split()[-1] for line in
                    self.run_command(subcommand, "f.jsonl").stdout.splitlines() if line]
            self.assertEqual([word for word in rows if word in self.NAMES], self.NAMES, subcommand)

    def test_page(self):
        page = self.run_command("check", "f.jsonl", "--html", "-").stdout
        places = [page.index(f'["{name}",') for name in self.NAMES]
        self.assertEqual(places, sorted(places))

    def test_generated_file(self):
        self.run_command("dump", "f.jsonl", "--prefix", "P")
        text = (self.folder / "p_generated.cpp").read_text()
        self.assertEqual(re.findall(r"Node GUID: 0x0*(\d)", text), ["1", "2", "3", "4", "5"])


if __name__ == "__main__":
    main()
