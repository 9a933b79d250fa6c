"""`fabscan show` from end to end."""

import json
import re

from command_line import (DONE, EXAMPLES, FAILED, WRONG_USAGE, CommandTest, main, snapshot, switch)

DEMO = EXAMPLES / "demo.fabscan.jsonl"
PARTIAL = EXAMPLES / "partial.fabscan.jsonl"
LEAF = "0x5a1e0c0000000100"
HOST = "0x5a1e0c0000000200"
GUEST = "0x5a1e0c0000000900"  # outside the sub-fabric

# For examples/partial.fabscan.jsonl: two nodes with absent records and their reasons.
SUMMARY = """\
partial.jsonl: 2 nodes (1 SW, 1 CA), 4 ports
source: an invented fabric of which some records were not collected
links: 1

type  GUID                LID  active  abcdefghijklmn opqrstu  node
CA    0x5a1e0c0000000200   33     0/1  +   .  -. ..+. +++....  compute-117 HCA-1
SW    0x5a1e0c0000000100    1     1/2  ++ ..--.....+. ~~~....  leaf-07/U1

  +  collected
  -  absent for a recorded reason
  .  not collected
     blank: does not apply to this type of node
  ~  not the same for all

   attribute                           of    +  -  .
a  SMP_NodeInfo                        node  2
b  SMP_SwitchInfo                      node  1
c  SMP_RouterInfo                      node
d  SMP_ExtendedSwitchInfo              node        1
e  ib_extended_node_info               node        2
f  ib_private_lft_info                 node     1
g  adaptive_routing_info               node     1
h  VendorSpec_GeneralInfo              node     1  1
i  CC_EnhancedCongestionInfo           node        2
j  CC_CongestionSwitchGeneralSettings  node        1
k  IB_ClassPortInfo                    node        2
l  WrenReductionInfo                   node        2
m  smpCapabilityMask                   node  2
n  gmpCapabilityMask                   node        2
o  SMP_PortInfo                        port  3  1
p  SMP_PortInfoExtended                port  2     2
q  SMP_TarnExtPortInfo                 port  2     2
r  WrenReductionPortInfo               port        4
s  WrenPushReductionCounters           port        4
t  WrenReductionCounters               port        4
u  WrenReductionConfigureMLIDMonitors  port        4

   absent                      of  reason
f  ib_private_lft_info     1 node  status 0x000c
g  adaptive_routing_info   1 node  timed out
h  VendorSpec_GeneralInfo  1 node  not asked: two consecutive queries of this node timed out
o  SMP_PortInfo            1 port  timed out
"""

NODE = """\
node              leaf-07/U1
GUID              0x5a1e0c0000000100
type              SW
system GUID       0x5a1e0c0000000103
vendor            0x5a1e0c
device            0x5a50
revision          0xa1
SMP capabilities  0x00253655 0x00121000 0x00000008 0x00000000
active ports      1/2

attribute
SMP_NodeInfo                        collected
SMP_SwitchInfo                      collected
SMP_ExtendedSwitchInfo              not collected
ib_extended_node_info               not collected
ib_private_lft_info                 absent: status 0x000c
adaptive_routing_info               absent: timed out
VendorSpec_GeneralInfo              not collected
CC_EnhancedCongestionInfo           not collected
CC_CongestionSwitchGeneralSettings  not collected
IB_ClassPortInfo                    not collected
WrenReductionInfo                   not collected
smpCapabilityMask                   collected
gmpCapabilityMask                   not collected

port  state   LID  width  speed  opqrstu  remote port
   0  ACTIVE    1                +......
   1  INIT      -                -......  compute-117 HCA-1[1]
   2  ACTIVE    1  1x     EDR    +++....                        fnm

  +  collected
  -  absent for a recorded reason
  .  not collected

   attribute                           of    +  -  .
o  SMP_PortInfo                        port  2  1
p  SMP_PortInfoExtended                port  1     2
q  SMP_TarnExtPortInfo                 port  1     2
r  WrenReductionPortInfo               port        3
s  WrenPushReductionCounters           port        3
t  WrenReductionCounters               port        3
u  WrenReductionConfigureMLIDMonitors  port        3

   absent            of  reason
o  SMP_PortInfo  1 port  timed out
"""

# Masks and identifiers are hexadecimal, numbers decimal; codes are explained.
VALUES = """\
leaf-07/U1 (0x5a1e0c0000000100)

port 2 SMP_PortInfo
GIDPrefix                            0xfe80000000000000
LID                                  1
MasterSMLID                          1
CapMsk                               0x0100c040
                                     bit 6               IsSLMappingSupported
                                     bit 14              IsExtendedSpeedsSupported
                                     bit 15              IsCapabilityMask2Supported
                                     bit 24              IsLinkRoundTripLatencySupported
DiagCode                             0x0000
MKeyLeasePeriod                      0
LocalPortNum                         2
LinkWidthEnabled                     1                   (1x)
LinkWidthSup                         1                   (1x)
LinkWidthActive                      1                   (1x)
LinkSpeedSup                         7                   (SDR, DDR, QDR)
PortState                            4                   (ACTIVE)
PortPhysicalState                    5                   (link up)
LinkDownDefaultState                 2                   (polling)
MKeyProtectBits                      0
LMC                                  0
LinkSpeedActive                      4                   (10 Gb/s, QDR)
LinkSpeedEnabled                     7                   (SDR, DDR, QDR)
NeighborMTU                          4                   (2048)
MasterSMSL                           0
VLCap                                4                   (VL0-7)
InitType                             0
VLHighLimit                          4
VLArbitrationHighCap                 8
VLArbitrationLowCap                  8
InitTypeReply                        0
MTUCap                               4                   (2048)
VLStallCount                         7
HOQLife                              18
OperationalVLs                       3                   (VL0-3)
PartitionEnforcementInbound          1
PartitionEnforcementOutbound         1
FilterRawInbound                     0
FilterRawOutbound                    0
MKeyViolations                       0
PKeyViolations                       0
QKeyViolations                       0
GUIDCap                              0
ClientReregister                     0
MulticastPKeyTrapSuppressionEnabled  0
SubnetTimeOut                        0
RespTimeValue                        16
LocalPhyErrors                       8
OverrunErrors                        8
MaxCreditHint                        56
LinkRoundTripLatency                 52
LinkSpeedExtActive2                  0                   (no extended speed)
LinkSpeedExtSup2                     0
LinkSpeedExtEnabled2                 0
LinkSpeedExtActive                   2                   (25.78125 Gb/s, EDR)
LinkSpeedExtSup                      2                   (EDR)
LinkSpeedExtEnabled                  2                   (EDR)
CapMsk2                              0x043b
                                     bit 0               IsSetNodeDescriptionSupported
                                     bit 1               IsPortInfoExtendedSupported
                                     bit 3               IsSwitchPortStateTableSupported
                                     bit 4               IsLinkWidth2xSupported
                                     bit 5               IsLinkSpeedHDRSupported
                                     bit 10              IsLinkSpeedNDRSupported

port 2 SMP_PortInfoExtended
CapMsk                       0x00000007
FDRFECModeSupported          0x0003
FECModeActive                3
EDRFECModeSupported          0x0007
FDRFECModeEnabled            0x0002
HDRFECModeSupported          0x000c
EDRFECModeEnabled            0x0004
NDRFECModeSupported          0x001c
HDRFECModeEnabled            0x0008
PartitionTop                 3
NDRFECModeEnabled            0x0010

port 2 SMP_TarnExtPortInfo
LinkSpeedSupported          0x01
CapabilityMask              0x00d7
FECModeActive               3
RetransMode                 1
FDR10FECModeSupported       0x000b
FDRFECModeSupported         0x0003
EDR20FECModeSupported       0x0009
EDRFECModeSupported         0x0007
FDR10RetranSupported        0x00
FDRRetranSupported          0x02
EDR20RetranSupported        0x04
EDRRetranSupported          0x06
SpecialPortType             0
IsSpecialPort               0
SpecialPortCapabilityMask   0x00
is_fnm_port                 1
HDRFECModeSupported         0x000c
NDRFECModeSupported         0x001c
XDRFECModeSupported         0x0000
LinkSpeedEnabled            0x00
"""


class Show(CommandTest):
    def test_all_nodes(self):
        path = self.put("partial.jsonl", PARTIAL.read_text())
        run = self.run_command("show", path.name)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertEqual(run.stdout, SUMMARY)

    def test_one_node(self):
        run = self.run_command("show", PARTIAL, "--guid", LEAF)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertEqual(run.stdout, NODE)

    def test_values(self):
        run = self.run_command("show", PARTIAL, "--guid", LEAF, "--values", "--port", "2")
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertEqual(run.stdout, VALUES)

    def test_values_agree_with_the_snapshot(self):
        """Each number of each record is printed once, in decimal or hexadecimal."""
        line = next(line for line in map(json.loads, DEMO.read_text().splitlines())
                    if line.get("guid") == "0x5a1e0c0000000100")

        def numbers(value):
            if isinstance(value, dict):
                return [n for nested in value.values() for n in numbers(nested)]
            if isinstance(value, list):
                return [n for nested in value for n in numbers(nested)]
            return [int(value, 0) if isinstance(value, str) else value]

        text = self.run_command("show", DEMO, "--guid", line["guid"], "--values").stdout
        shown = {}
        for block in text.split("\n\n")[1:]:
            head, *rows = block.splitlines()
            fields = {}
            for row in rows:
                name, *words = row.split()
                if row.startswith(" ") or words[0].startswith('"'): continue
                fields[name] = [int(word, 0) for word in words if re.fullmatch(r"0x[0-9a-f]+|\d+",
                                                                              word)]
            shown[head] = fields
        for name, record in line["attributes"].items():
            for field, value in record.items():
                if isinstance(value, (int, str)) or all(isinstance(v, int) for v in value):
                    self.assertEqual(shown[name][field][:len(numbers(value))], numbers(value))
        for port in line["ports"]:
            for name, record in port["attributes"].items():
                if name.startswith("SMP"):
                    for field, value in record.items():
                        self.assertEqual(shown[f"port {port['num']} {name}"][field][0],
                                         *numbers(value))

    def test_values_of_a_missing_port(self):
        self.assert_fails(self.run_command("show", PARTIAL, "--values", "--port", "77"),
                          f"{PARTIAL}: no node to show: none has a port 77; use another port")
        run = self.run_command("show", PARTIAL, "--values", "--port", "2")
        self.assertEqual(run.stdout, VALUES)

    def test_by_model(self):
        nodes = [switch(f"S{i}", hex(i + 1), absent={"SMP_SwitchInfo": "refused"} if i else {})
                 for i in range(3)]
        nodes.append({"name": "H1", "guid": "0x9", "type": "CA", "numPorts": 1})
        run = self.run_command("show", "-", "--summary", input=snapshot(*nodes))
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        head, models, signs, *_ = run.stdout.split("\n\n")
        self.assertEqual(head, "standard input: 4 nodes (3 SW, 1 CA), 0 ports")
        self.assertEqual([line.split() for line in models.splitlines()], [
            ["nodes", "type", "vendor", "device", "revision", "PSID", "firmware",
             "abcdefghijklmn", "opqrstu", "for", "example"],
            ["1", "CA", "-", "-", "-", "-", "-", ".", ".", "..", "....", ".......", "H1"],
            ["3", "SW", "-", "-", "-", "-", "-", ".~", "...........", ".......", "S0"]])
        self.assertTrue(run.stdout.endswith("b  SMP_SwitchInfo  2 nodes  refused\n"))

    def test_names_are_in_natural_order(self):
        names = ["leaf2", "leaf10", "leaf1", "a"]
        nodes = [switch(name, hex(i + 1)) for i, name in enumerate(names)]
        run = self.run_command("show", "-", "--json", input=snapshot(*nodes))
        self.assertEqual([node["name"] for node in json.loads(run.stdout)["nodes"]],
                         ["a", "leaf1", "leaf2", "leaf10"])

    def test_only_possible_attributes_are_missing(self):
        nodes = [{"name": f"H{i}", "guid": hex(i + 1), "type": "CA", "numPorts": 1}
                 for i in range(3)]
        run = self.run_command("show", "-", input=snapshot(switch("S", "0x9"), *nodes))
        self.assertRegex(run.stdout, r"\nb  SMP_SwitchInfo +node +1\n")
        self.assertRegex(run.stdout, r"\na  SMP_NodeInfo +node +4\n")
        self.assertRegex(run.stdout, r"\nc  SMP_RouterInfo +node\n")

    def test_output_forms_exclude_each_other(self):
        for one, other in (("--json", "--values"), ("--json", "--summary"),
                           ("--summary", "--values")):
            run = self.run_command("show", PARTIAL, one, other)
            self.assertEqual((run.returncode, run.stdout), (WRONG_USAGE, ""))
            self.assertIn("excludes", run.stderr)
        self.assertEqual(self.run_command("show", PARTIAL, "--port", "1").returncode, WRONG_USAGE)

    def test_several_nodes_are_separated(self):
        run = self.run_command("show", PARTIAL, "--guid", LEAF, "--guid", HOST)
        first, second = run.stdout.split("\nnode ")
        self.assertIn("compute-117 HCA-1", first)
        self.assertEqual("node " + second, NODE)

    def test_a_node_outside_the_sub_fabric_is_shown(self):
        run = self.run_command("show", DEMO, "--guid", GUEST)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertIn("notes             outside the sub-fabric\n", run.stdout)
        run = self.run_command("show", DEMO)
        self.assertEqual(run.stdout.splitlines()[3], "outside the sub-fabric: lab-guest-01 HCA-1")

    def test_json(self):
        result = json.loads(self.run_command("show", PARTIAL, "--guid", LEAF, "--json").stdout)
        self.assertEqual(result, {
            "fabscan_report": 1,
            "snapshot": str(PARTIAL),
            "source": "an invented fabric of which some records were not collected",
            "nodes": [{
                "name": "leaf-07/U1", "guid": LEAF, "type": "SW",
                "description": "leaf-07/U1", "inSubFabric": True,
                "opalSwitch": False, "numPorts": 2,
                "vendorID": 0x5a1e0c, "deviceID": 0x5a50, "revision": 0xa1,
                "collected": {"SMP_NodeInfo": 1, "SMP_SwitchInfo": 1, "smpCapabilityMask": 1},
                "absent": {"ib_private_lft_info": "status 0x000c",
                           "adaptive_routing_info": "timed out"},
                "ports": [
                    {"num": 0, "state": "ACTIVE", "lid": 1, "inSubFabric": True, "fnm": False,
                     "fnm1": False, "special": False, "collected": {"SMP_PortInfo": 1},
                     "absent": {}},
                    {"num": 1, "state": "INIT", "inSubFabric": True, "fnm": False,
                     "fnm1": False, "special": False, "collected": {},
                     "peer": {"guid": "0x5a1e0c0000000200", "port": 1,
                              "name": "compute-117 HCA-1"},
                     "absent": {"SMP_PortInfo": "timed out"}},
                    {"num": 2, "state": "ACTIVE", "lid": 1, "inSubFabric": True, "fnm": True,
                     "fnm1": False, "special": False,
                     "collected": {"SMP_PortInfo": 1, "SMP_PortInfoExtended": 1,
                                   "SMP_TarnExtPortInfo": 1},
                     "absent": {}}]}]})

    def test_topology(self):
        run = self.run_command("show", DEMO, "--topology")
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertEqual(run.stdout.split("\n\n", 1)[1], """\
level  switches  ports  down  up  other  down:up  for example
2             1      2     1   0      0           mgmt-switch-01/U1
1             1      3     2   0      1           leaf-02/U1
1             1      4     2   0      1           leaf-01/U1
1             1      8     2   1      4     5.00  spine-01/U1

levels  links  width  speed
1 to 2      1  2x     EDR
1 to 2      1  4x     EDR
1 to 2      2  4x     HDR
- to 2      1  4x     HDR
1 to 1      1  1x     EDR
1 to 1      1  4x     NDR
0 to 1      1  2x     EDR
0 to 1      1  4x     EDR
0 to 1      1  4x     NDR

level 0: 3 adapters
""")

    def test_counts_agree_with_the_snapshot(self):
        """The result contains every node and every record of the file, and nothing else."""
        result = json.loads(self.run_command("show", DEMO, "--json").stdout)
        shown = {node["guid"]: node for node in result["nodes"]}
        lines = [json.loads(line) for line in DEMO.read_text().splitlines()[1:-1]]
        self.assertEqual(sorted(shown), sorted(line["guid"] for line in lines))
        for line in lines:
            node = shown[line["guid"]]
            masks = [key for key in ("smpCapabilityMask", "gmpCapabilityMask") if key in line]
            self.assertEqual(node["collected"],
                             {name: 1 for name in [*line["attributes"], *masks]})
            for port, written in zip(node["ports"], line["ports"], strict=True):
                several = ("WrenReductionCounters", "WrenReductionConfigureMLIDMonitors")
                self.assertEqual(port["collected"], {
                    name: len(record) if name in several else 1
                    for name, record in written["attributes"].items() if record})

    def test_many_reasons_are_counted(self):
        nodes = [switch(f"S{i}", hex(i + 1), absent={"SMP_SwitchInfo": f"reason {min(i, 7)}"})
                 for i in range(9)]
        run = self.run_command("show", "-", input=snapshot(*nodes))
        self.assertEqual(run.stdout.split("\n\n")[-1],
                         "   absent               of  reason\n"
                         "b  SMP_SwitchInfo  2 nodes  reason 7\n"
                         "b  SMP_SwitchInfo   1 node  reason 0\n"
                         "b  SMP_SwitchInfo   1 node  reason 1\n"
                         "b  SMP_SwitchInfo   1 node  reason 2\n"
                         "b  SMP_SwitchInfo   1 node  reason 3\n"
                         "b  SMP_SwitchInfo  3 nodes  3 other reasons\n")

    def test_hostile_text_stays_text(self):
        evil = "a\x1b[31m\nb"
        text = snapshot(switch(evil, absent={"SMP_NodeInfo": evil}))
        text = text.replace('"fabscan_snapshot": 2', '"fabscan_snapshot": 1, "source": "x\\u001b[2J"')
        for arguments in ((), ("--guid", "1")):
            run = self.run_command("show", "-", *arguments, input=text)
            self.assertNotIn("\x1b", run.stdout)
            self.assertEqual(run.stdout.count("a%1B[31m%0Ab"), 2, run.stdout)

    def test_no_nodes(self):
        run = self.run_command("show", "-", input=snapshot())
        self.assertEqual((run.returncode, run.stdout), (DONE, "standard input: 0 nodes, 0 ports\n"))

    def test_a_node_without_ports(self):
        run = self.run_command("show", "-", "--guid", "1", input=snapshot(switch()))
        self.assertTrue(run.stdout.endswith("gmpCapabilityMask                   not collected\n"))

    def test_bad_input(self):
        self.assert_fails(self.run_command("show", "none.jsonl"),
                          "none.jsonl: cannot open: No such file or directory", FAILED)
        self.assert_fails(self.run_command("show", DEMO, "--guid", "x"),
                          "--guid: 'x' is not a valid GUID; expected 1 to 16 hexadecimal digits, "
                          "with or without 0x or colons", WRONG_USAGE)
        self.assert_fails(self.run_command("show", DEMO, "--guid", "1"),
                          f"{DEMO}: no node to show: no node has the GUID 0x0000000000000001; "
                          "'fabscan show' lists the nodes")

    def test_on_a_terminal(self):
        text = self.on_terminal("show", PARTIAL, columns=80)
        self.assertIn("\x1b[33m-\x1b[0m", text)
        long = snapshot(switch("leaf of the long name " * 5,
                               absent={"SMP_NodeInfo": "some long reason " * 9}))
        path = self.put("long.jsonl", long)
        for arguments in ((), ("--guid", "1")):
            for columns in (76, 100):
                text = self.on_terminal("show", path.name, *arguments, columns=columns,
                                        NO_COLOR="1")
                self.assertNotIn("\x1b", text)
                self.assertLessEqual(max(map(len, text.splitlines())), columns, text)


if __name__ == "__main__":
    main()
