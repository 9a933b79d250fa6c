"""`fabscan models` from end to end."""

import json

from command_line import DONE, EXAMPLES, FAILED, CommandTest, main, snapshot, switch


def node_info(**fields):
    names = ("NumPorts NodeType ClassVersion BaseVersion SystemImageGUID NodeGUID PortGUID "
             "DeviceID PartitionCap revision VendorID LocalPortNum")
    return {"SMP_NodeInfo": {name: fields.get(name, 0) for name in names.split()}}


def spine(number, **more):
    attributes = node_info(VendorID=0x5a1e0c, DeviceID=0xd2f0, revision=0xa0)
    return switch(f"spine-{number:05}", hex(0x1000 + number), attributes=attributes, **more)


def host(number, **more):
    attributes = node_info(VendorID=0x5a1e0c, DeviceID=0x1021)
    return {"name": f"host-{number:05}", "guid": hex(0x100000 + number), "type": "CA",
            "numPorts": 1, "attributes": attributes, **more}


class Models(CommandTest):
    def test_the_most_frequent_come_first(self):
        path = self.put("my fabric.jsonl", snapshot(
            host(1), spine(2), spine(1), host(2, specialNode="AN"),
            switch("unknown", "0x9"), spine(3, inSubFabric=False)))
        run = self.run_command("models", path.name)
        self.assertEqual(run.stderr, "")
        self.assertEqual(
            run.stdout,
            "my fabric.jsonl: 5 nodes, 4 device models\n"
            "skipped (outside the sub-fabric): 1 node\n"
            "\n"
            "model     nodes  type     vendor    device  revision  PSID  firmware  collected  "
            "representative\n"
            "SW_d2f0       2  SW       0x5a1e0c  0xd2f0  0xa0      -     -           1 of 20  "
            "0x0000000000001001  spine-00001\n"
            "HCA_1021      1  CA       0x5a1e0c  0x1021  -         -     -           1 of 15  "
            "0x0000000000100001  host-00001\n"
            "AN_1021       1  CA (AN)  0x5a1e0c  0x1021  -         -     -           1 of 15  "
            "0x0000000000100002  host-00002\n"
            "SW_0000       1  SW       -         -       -         -     -           0 of 20  "
            "0x0000000000000009  unknown\n"
            "\n"
            "To make simulated devices, one for each model:\n"
            "  fabscan scaffold 'my fabric.jsonl' --prefix MyDev --output-dir sim\n"
            "To write only the exact generated files:\n"
            "  fabscan dump 'my fabric.jsonl' --prefix MyDev --one-per-model\n")
        self.assertEqual(run.returncode, DONE)

    def test_json(self):
        path = self.put("f.jsonl", snapshot(host(1), spine(1), spine(2)))
        result = json.loads(self.run_command("models", path.name, "--json").stdout)
        self.assertEqual((result["nodes"], result["outsideSubFabric"]), (3, 0))
        missing = result["models"][0].pop("missing")
        self.assertEqual(len(missing), 19)
        self.assertIn("smpCapabilityMask", missing)
        self.assertNotIn("SMP_NodeInfo", missing)
        self.assertNotIn("SMP_RouterInfo", missing)
        self.assertEqual(
            result["models"][0],
            {"nodes": 2, "records": 1, "attributes": 20, "type": "SW", "vendorID": 0x5a1e0c, "deviceID": 0xd2f0,
             "revision": 0xa0, "psid": "", "firmware": "", "name": "spine-00001",
             "guid": "0x0000000000001001", "prefix": "SW_d2f0",
             "dump": "fabscan dump f.jsonl --prefix SW_d2f0 --guid 0x0000000000001001"})
        self.assertEqual([model["nodes"] for model in result["models"]], [2, 1])

    def test_the_representative_has_the_most_records(self):
        port = {"num": 1, "state": "ACTIVE", "attributes": {"SMP_PortInfo": json.loads(
            (EXAMPLES / "demo.fabscan.jsonl").read_text().splitlines()[1])["ports"][0]["attributes"][
                "SMP_PortInfo"]}}
        path = self.put("f.jsonl", snapshot(host(1), host(2, ports=[port]), host(3, ports=[port])))
        (model,) = json.loads(self.run_command("models", path, "--json").stdout)["models"]
        self.assertEqual((model["nodes"], model["records"], model["name"]), (3, 2, "host-00002"))

    def test_the_dump_lines_work(self):
        path = self.put("f.jsonl", snapshot(host(1), spine(1), host(2, specialNode="AN")))
        for model in json.loads(self.run_command("models", path.name, "--json").stdout)["models"]:
            run = self.run_command(*model["dump"].split()[1:])
            self.assertEqual(run.returncode, DONE, run.stderr)
            self.assertIn("  nodes written                   1\n", run.stdout)
        self.assertEqual([name for name in self.entries() if name.endswith(".cpp")],
                         ["an_1021_generated.cpp", "hca_1021_generated.cpp",
                          "sw_d2f0_generated.cpp"])

    def test_ten_thousand_nodes_of_a_few_models(self):
        nodes = [spine(i) for i in range(2000)] + [host(i) for i in range(8000)]
        path = self.put("f.jsonl", snapshot(*nodes))
        run = self.run_command("models", path.name)
        self.assertEqual(run.stdout.splitlines()[0], "f.jsonl: 10000 nodes, 2 device models")

    def test_no_nodes(self):
        run = self.run_command("models", "-", input=snapshot())
        self.assertEqual((run.returncode, run.stdout), (DONE, "standard input: 0 nodes, 0 device models\n"))

    def test_a_missing_file(self):
        run = self.run_command("models", "none.jsonl")
        self.assert_fails(run, "none.jsonl: cannot open: No such file or directory", FAILED)


if __name__ == "__main__":
    main()
