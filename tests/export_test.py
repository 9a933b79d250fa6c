"""`fabscan export`: expected texts, and the programs that read them."""

import csv
import getpass
import io
import json
import os
import socket
import subprocess
import time

import command_line
from command_line import DONE, FAILED, WRONG_USAGE, EXAMPLES, CommandTest, snapshot

DEMO = EXAMPLES / "demo.fabscan.jsonl"

# The distribution's Python has the packages that read the formats.
SYSTEM_PYTHON = "/usr/bin/python3"


def port(number, peer=None, peer_port=0, guid=None):
    more = {} if peer is None else {"peer": {"guid": peer, "port": peer_port}}
    if guid: more["portGuid"] = guid
    return {"num": number, "state": "ACTIVE" if peer else "DOWN", **more}


def node(name, guid, kind, ports, **more):
    return {"name": name, "guid": guid, "type": kind, "numPorts": 8, "description": name,
            "ports": ports, **more}


# Two leaves below a spine, a host with two adapters on different leaves, a node outside.
SMALL = snapshot(
    node("spine", "0x30", "SW", [port(1, "0x20", 8), port(2, "0x21", 8), port(3, "0x99", 4)]),
    node("leaf 1, left", "0x20", "SW", [port(1, "0x10", 1), port(8, "0x30", 1)]),
    node("leaf2", "0x21", "SW", [port(1, "0x11", 1), port(2, "0x12", 1), port(8, "0x30", 2)]),
    node("n1 HCA-1", "0x10", "CA", [port(1, "0x20", 1, "0x1001")]),
    node("n1 HCA-2", "0x11", "CA", [port(1, "0x21", 1, "0x1101")]),
    node("n2 HCA-1", "0x12", "CA", [port(1, "0x21", 2, "0x1201"), port(2)]))


class Export(CommandTest):
    def export(self, kind, source=SMALL):
        run = self.run_command("export", "-", "--format", kind, input=source)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        return run.stdout

    def test_ibnetdiscover(self):
        self.assertEqual(self.export("ibnetdiscover"), """\
#
# Topology file: written by fabscan export
#

switchguid=0x20(20)
Switch	8 "S-0000000000000020"		# "leaf 1, left" base port 0 lid 0 lmc 0
[1]	"H-0000000000000010"[1](1001) 		# "n1 HCA-1" lid 0
[8]	"S-0000000000000030"[1]		# "spine" lid 0

switchguid=0x21(21)
Switch	8 "S-0000000000000021"		# "leaf2" base port 0 lid 0 lmc 0
[1]	"H-0000000000000011"[1](1101) 		# "n1 HCA-2" lid 0
[2]	"H-0000000000000012"[1](1201) 		# "n2 HCA-1" lid 0
[8]	"S-0000000000000030"[2]		# "spine" lid 0

switchguid=0x30(30)
Switch	8 "S-0000000000000030"		# "spine" base port 0 lid 0 lmc 0
[1]	"S-0000000000000020"[8]		# "leaf 1, left" lid 0
[2]	"S-0000000000000021"[8]		# "leaf2" lid 0
[3]	"S-0000000000000099"[4]		# "" lid 0

caguid=0x10
Ca	8 "H-0000000000000010"		# "n1 HCA-1"
[1](1001) 	"S-0000000000000020"[1]		# lid 0 lmc 0 "leaf 1, left" lid 0

caguid=0x11
Ca	8 "H-0000000000000011"		# "n1 HCA-2"
[1](1101) 	"S-0000000000000021"[1]		# lid 0 lmc 0 "leaf2" lid 0

caguid=0x12
Ca	8 "H-0000000000000012"		# "n2 HCA-1"
[1](1201) 	"S-0000000000000021"[2]		# lid 0 lmc 0 "leaf2" lid 0
""")

    def test_csv(self):
        text = self.export("csv")
        self.assertEqual(text.splitlines()[1],
                         '"leaf 1, left",0x0000000000000020,1,,n1 HCA-1,0x0000000000000010,1,,,')
        rows = list(csv.DictReader(io.StringIO(text)))
        self.assertEqual([(row["name"], row["port"], row["remote_name"], row["remote_port"])
                          for row in rows],
                         [("leaf 1, left", "1", "n1 HCA-1", "1"), ("leaf 1, left", "8", "spine", "1"),
                          ("leaf2", "1", "n1 HCA-2", "1"), ("leaf2", "2", "n2 HCA-1", "1"),
                          ("leaf2", "8", "spine", "2"), ("spine", "3", "", "4")])
        self.assertEqual(rows[-1]["remote_guid"], "0x0000000000000099")
        rows = list(csv.DictReader(io.StringIO(self.export("csv", DEMO.read_text()))))
        self.assertEqual(len(rows), 12)
        leaf = next(row for row in rows if row["name"] == "compute-001 HCA-1")
        self.assertEqual((leaf["lid"], leaf["remote_lid"], leaf["width"], leaf["speed"]),
                         ("97", "2", "4x", "NDR"))

    def test_graphs(self):
        read = ("import json, sys, networkx; "
                "graph = networkx.node_link_graph(json.load(sys.stdin)); "
                "print(len(graph), graph.number_of_edges(), sorted(networkx.degree(graph)))")
        for source, expected in ((SMALL, "7 6 "), (DEMO.read_text(), "12 12 ")):
            text = self.export("json", source)
            run = subprocess.run([SYSTEM_PYTHON, "-c", read], input=text, text=True,
                                 capture_output=True, check=True)
            self.assertEqual(run.stdout[:len(expected)], expected)
            plain = subprocess.run(["dot", "-Tplain"], input=self.export("dot", source), text=True,
                                   capture_output=True, check=True).stdout
            words = [line.split()[0] for line in plain.splitlines()]
            self.assertEqual((words.count("node"), words.count("edge")),
                             tuple(map(int, expected.split())))
        self.assertEqual(json.loads(self.export("json"))["links"][0],
                         {"source": "0x0000000000000020", "sourcePort": 1,
                          "target": "0x0000000000000010", "targetPort": 1})
        self.assertEqual(self.export("mermaid").splitlines()[:3],
                         ["graph LR", '  n0000000000000020["leaf 1, left"]',
                          '  n0000000000000021["leaf2"]'])
        self.assertIn('  n0000000000000030 ---|"3 - 4"| n0000000000000099\n', self.export("mermaid"))

    def test_lists(self):
        self.assertEqual(self.export("names").splitlines()[0], '0x0000000000000020 "leaf 1, left"')
        self.assertEqual(self.export("guids"), "0x0000000000000030\n")
        self.assertEqual(self.export("adapter-guids"),
                         "0x0000000000001001\n0x0000000000001101\n0x0000000000001201\n")

    def test_slurm(self):
        expected = ("SwitchName=leaf-1--left Nodes=n1\n"
                    "SwitchName=leaf2 Nodes=n2\n"
                    "SwitchName=fabric1 Switches=leaf-1--left,leaf2\n")
        self.assertEqual(self.export("slurm"), expected)
        read = "import json, sys, yaml; json.dump(yaml.safe_load(sys.stdin), sys.stdout)"
        run = subprocess.run([SYSTEM_PYTHON, "-c", read], input=self.export("slurm-yaml"), text=True,
                             capture_output=True, check=True)
        self.assertEqual(json.loads(run.stdout), [
            {"topology": "fabric", "cluster_default": True, "tree": {"switches": [
                {"switch": "leaf-1--left", "nodes": "n1"}, {"switch": "leaf2", "nodes": "n2"},
                {"switch": "fabric1", "children": "leaf-1--left,leaf2"}]}}])

    def test_slurm_reads_its_topology(self):
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            number = free.getsockname()[1]
        (self.folder / "state").mkdir()
        self.put("topology.conf", self.export("slurm"))
        conf = self.put("slurm.conf", f"""\
ClusterName=test
SlurmctldHost=localhost
SlurmctldPort={number}
AuthType=auth/none
CredType=cred/none
SlurmUser={getpass.getuser()}
StateSaveLocation={self.folder}/state
SlurmctldPidFile={self.folder}/pid
TopologyPlugin=topology/tree
ProctrackType=proctrack/linuxproc
AccountingStorageType=accounting_storage/none
NodeName=n[1-2] NodeAddr=127.0.0.1 NodeHostname=localhost Port=[{number + 1}-{number + 2}] State=FUTURE
PartitionName=all Nodes=ALL Default=YES
""")
        log = self.folder / "log"
        with log.open("wb") as out:
            server = subprocess.Popen(["/usr/sbin/slurmctld", "-D", "-c", "-f", conf], stdout=out,
                                      stderr=out)
        self.addCleanup(server.wait, 20)
        self.addCleanup(server.terminate)
        end = time.monotonic() + 30
        while True:
            run = subprocess.run(["scontrol", "-o", "show", "topology"], text=True, timeout=30,
                                 capture_output=True, env={**os.environ, "SLURM_CONF": str(conf)})
            if run.stdout or time.monotonic() > end: break
            time.sleep(0.2)
        self.assertEqual(run.returncode, 0, run.stderr + log.read_text(errors="replace"))
        lines = [" ".join(line.split()[i] for i in (0, 1)) + " " +
                 next(word for word in line.split() if word.startswith("Nodes="))
                 for line in run.stdout.splitlines()]
        self.assertEqual(sorted(lines), ["SwitchName=fabric1 Level=1 Nodes=n[1-2]",
                                         "SwitchName=leaf-1--left Level=0 Nodes=n1",
                                         "SwitchName=leaf2 Level=0 Nodes=n2"])

    def test_hostile_names_stay_in_their_field(self):
        hostile = 'a"b\\c]#--|;\n<script>, d'
        source = snapshot(node(hostile, "0x20", "SW", [port(1, "0x10", 1)]),
                          node("x'; DROP -- HCA-1", "0x10", "CA", [port(1, "0x20", 1)]))
        row = list(csv.DictReader(io.StringIO(self.export("csv", source))))[0]
        self.assertEqual(row["name"], "a%22b%5Cc]#--|;%0A<script>, d")
        self.assertEqual(json.loads(self.export("json", source))["nodes"][0]["name"], row["name"])
        subprocess.run(["dot", "-Tplain"], input=self.export("dot", source), text=True,
                       capture_output=True, check=True)
        self.assertEqual(self.export("slurm", source),
                         "SwitchName=a-22b-5Cc-------0A-script---d Nodes=x--\n")

    def test_files(self):
        path = self.folder / "out" / "fabric.net"
        run = self.run_command("export", DEMO, "--format", "ibnetdiscover", "--output", path)
        self.assertEqual((run.returncode, run.stdout), (DONE, ""))
        self.assertTrue(path.read_text().startswith("#\n# Topology file"))
        run = self.run_command("export", DEMO, "--format", "csv", "--output", path)
        self.assertEqual(run.returncode, FAILED)
        self.assertIn("exists; ", run.stderr)
        self.assertTrue(path.read_text().startswith("#\n# Topology file"))

    def test_errors(self):
        run = self.run_command("export", DEMO, "--format", "xml")
        self.assertEqual(run.returncode, WRONG_USAGE)
        self.assertIn("xml not in {ibnetdiscover,", run.stderr)
        run = self.run_command("export", "-", "--format", "csv", input=snapshot(
            node("S", "0x1", "SW", [{"num": 1, "state": "ACTIVE"}])))
        self.assertEqual((run.returncode, run.stdout), (FAILED, ""))
        self.assertIn("contains no links, though ports are up", run.stderr)


if __name__ == "__main__":
    command_line.main()
