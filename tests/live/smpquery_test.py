"""Every field of NodeInfo, SwitchInfo and PortInfo, compared with the output of smpquery."""

import unittest

import nets
from simulated_fabric import LiveTestCase, number, tool

WIDTHS = {1: "1X", 2: "4X", 4: "8X", 8: "12X", 16: "2X"}
SPEEDS = {1: "2.5 Gbps", 2: "5.0 Gbps", 4: "10.0 Gbps"}
STATES = {1: "Down", 2: "Initialize", 3: "Armed", 4: "Active"}
PHYSICAL_STATES = {2: "Polling", 5: "LinkUp"}
DOWN_DEFAULTS = {1: "Sleep", 2: "Polling"}
MTUS = {1: "256", 2: "512", 3: "1024", 4: "2048", 5: "4096"}
LANES = {1: "VL0", 2: "VL0-1", 3: "VL0-3", 4: "VL0-7", 5: "VL0-14"}
NODE_TYPES = {1: "Channel Adapter", 2: "Switch", 3: "Router"}


def bits(words):
    return lambda value: " or ".join(words[bit] for bit in words if value & bit)


def word(words):
    return lambda value: words[value]


def padded(digits):
    return lambda value: f"{value:#0{digits + 2}x}"


def extended_active(value):
    assert value == 0
    return "No Extended Speed"


# The record's field, the label that smpquery prints, and how it prints the value.
NODE_INFO = [
    ("BaseVersion", "BaseVers", str), ("ClassVersion", "ClassVers", str),
    ("NodeType", "NodeType", word(NODE_TYPES)), ("NumPorts", "NumPorts", str),
    ("SystemImageGUID", "SystemGuid", padded(16)), ("NodeGUID", "Guid", padded(16)),
    ("PortGUID", "PortGuid", padded(16)), ("PartitionCap", "PartCap", str),
    ("DeviceID", "DevId", padded(4)), ("revision", "Revision", padded(8)),
    ("LocalPortNum", "LocalPort", str), ("VendorID", "VendorId", padded(6)),
]
SWITCH_INFO = [
    ("LinearFDBCap", "LinearFdbCap", str), ("RandomFDBCap", "RandomFdbCap", str),
    ("MCastFDBCap", "McastFdbCap", str), ("LinearFDBTop", "LinearFdbTop", str),
    ("DefPort", "DefPort", str), ("DefMCastPriPort", "DefMcastPrimPort", str),
    ("DefMCastNotPriPort", "DefMcastNotPrimPort", str), ("LifeTimeValue", "LifeTime", str),
    ("PortStateChange", "StateChange", str), ("OptimizedSLVLMapping", "OptSLtoVLMapping", str),
    ("LidsPerPort", "LidsPerPort", str), ("PartEnfCap", "PartEnforceCap", str),
    ("InbEnfCap", "InboundPartEnf", str), ("OutbEnfCap", "OutboundPartEnf", str),
    ("FilterRawInbCap", "FilterRawInbound", str),
    ("FilterRawOutbCap", "FilterRawOutbound", str), ("ENP0", "EnhancedPort0", str),
    ("MCastFDBTop", "MulticastFDBTop", padded(4)),
]
PORT_INFO = [
    ("GIDPrefix", "GidPrefix", padded(16)), ("LID", "Lid", str), ("MasterSMLID", "SMLid", str),
    ("CapMsk", "CapMask", hex), ("DiagCode", "DiagCode", padded(4)),
    ("MKeyLeasePeriod", "MkeyLeasePeriod", str), ("LocalPortNum", "LocalPort", str),
    ("LinkWidthEnabled", "LinkWidthEnabled", bits(WIDTHS)),
    ("LinkWidthSup", "LinkWidthSupported", bits(WIDTHS)),
    ("LinkWidthActive", "LinkWidthActive", bits(WIDTHS)),
    ("LinkSpeedSup", "LinkSpeedSupported", bits(SPEEDS)),
    ("PortState", "LinkState", word(STATES)),
    ("PortPhysicalState", "PhysLinkState", word(PHYSICAL_STATES)),
    ("LinkDownDefaultState", "LinkDownDefState", word(DOWN_DEFAULTS)),
    ("MKeyProtectBits", "ProtectBits", str), ("LMC", "LMC", str),
    ("LinkSpeedActive", "LinkSpeedActive", bits(SPEEDS)),
    ("LinkSpeedEnabled", "LinkSpeedEnabled", bits(SPEEDS)),
    ("NeighborMTU", "NeighborMTU", word(MTUS)), ("MasterSMSL", "SMSL", str),
    ("VLCap", "VLCap", word(LANES)), ("InitType", "InitType", padded(2)),
    ("VLHighLimit", "VLHighLimit", str), ("VLArbitrationHighCap", "VLArbHighCap", str),
    ("VLArbitrationLowCap", "VLArbLowCap", str), ("InitTypeReply", "InitReply", padded(2)),
    ("MTUCap", "MtuCap", word(MTUS)), ("VLStallCount", "VLStallCount", str),
    ("HOQLife", "HoqLife", str), ("OperationalVLs", "OperVLs", word(LANES)),
    ("PartitionEnforcementInbound", "PartEnforceInb", str),
    ("PartitionEnforcementOutbound", "PartEnforceOutb", str),
    ("FilterRawInbound", "FilterRawInb", str), ("FilterRawOutbound", "FilterRawOutb", str),
    ("MKeyViolations", "MkeyViolations", str), ("PKeyViolations", "PkeyViolations", str),
    ("QKeyViolations", "QkeyViolations", str), ("GUIDCap", "GuidCap", str),
    ("ClientReregister", "ClientReregister", str),
    ("MulticastPKeyTrapSuppressionEnabled", "McastPkeyTrapSuppressionEnabled", str),
    ("SubnetTimeOut", "SubnetTimeout", str), ("RespTimeValue", "RespTimeVal", str),
    ("LocalPhyErrors", "LocalPhysErr", str), ("OverrunErrors", "OverrunErr", str),
    ("MaxCreditHint", "MaxCreditHint", str), ("LinkRoundTripLatency", "RoundTrip", str),
    ("CapMsk2", "CapabilityMask2", hex),
    ("LinkSpeedExtActive", "LinkSpeedExtActive", extended_active),
    ("LinkSpeedExtSup", "LinkSpeedExtSupported", str),
    ("LinkSpeedExtEnabled", "LinkSpeedExtEnabled", str),
]
NOT_KEPT = {"Mkey"}

# Directed route from the host, and the ports to compare.
NODES = [(nets.HERE, "0", [1, 2]), (nets.LEAF, "0,1", [0, 1, 5]), (nets.ROUTER, "0,1,4", [1, 2])]


def printed(text):
    """Label -> value of the lines such as `NumPorts:........................36`."""
    values = {}
    for line in text.splitlines():
        if not line.startswith(("#", "\t")):
            label, value = line.split(":", 1)
            values[label] = value.lstrip(".")
    return values


class SmpqueryTest(LiveTestCase):
    def setUp(self):
        self.fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(self.fabric)
        self.snapshot = self.fabric.snapshot()

    def compare(self, record, fields, *query):
        done = self.fabric.run(tool("smpquery"), "-D", *query)
        self.assertEqual(done.returncode, 0, done.stderr)
        values = printed(done.stdout)
        self.assertEqual(set(values) - NOT_KEPT, {label for _, label, _ in fields})
        for field, label, show in fields:
            # A snapshot omits fields that are 0.
            self.assertEqual(show(number(record.get(field, 0))), values[label], (query, field))
        unread = {"LinkSpeedExtSup2"}  # which a snapshot always contains
        self.assertEqual(set(record) - unread - {field for field, _, _ in fields}, set())

    def test_node_info(self):
        for node_id, way, _ in NODES:
            record = self.snapshot.node(node_id)["attributes"]["SMP_NodeInfo"]
            self.compare(record, NODE_INFO, "nodeinfo", way)

    def test_node_description(self):
        for node_id, way, _ in NODES:
            done = self.fabric.run(tool("smpquery"), "-D", "nodedesc", way)
            self.assertEqual(printed(done.stdout),
                             {"Node Description": self.snapshot.node(node_id)["name"]})

    def test_switch_info(self):
        record = self.snapshot.node(nets.LEAF)["attributes"]["SMP_SwitchInfo"]
        self.compare(record, SWITCH_INFO, "switchinfo", "0,1")

    def test_port_info(self):
        for node_id, way, ports in NODES:
            for port in ports:
                record = self.snapshot.port(node_id, port)["attributes"]["SMP_PortInfo"]
                self.compare(record, PORT_INFO, "portinfo", way, port)


if __name__ == "__main__":
    unittest.main()
