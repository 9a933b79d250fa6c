#include "snapshot/reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <vector>

#include "snapshot/testing/snapshot_text.h"

namespace fabscan {
namespace {

struct Case {
  std::string text;
  std::string error;
};

void Check(const std::vector<Case>& cases) {
  for (const Case& c : cases) EXPECT_EQ(ReadError(c.text), c.error) << c.text;
}

const std::string kInfo =
    R"("WrenReductionInfo":{"capability_mask":1,"hbf_group_cap":1,"reduction_fdb_cap":1})";
const std::string kPortInfo = R"("WrenReductionPortInfo":{"capability_mask":1})";

/// A node with one WrenReductionInfo, whose capability_mask is `value`.
std::string Number(const std::string& value) {
  return OneNode(NodeLine(R"(,"attributes":{"WrenReductionInfo":{"hbf_group_cap":1,)"
                          R"("reduction_fdb_cap":1,"capability_mask":)" +
                          value + "}}"));
}
const std::string kAtNumber = "f:2: attributes.WrenReductionInfo.capability_mask: ";

TEST(ReaderErrors, Numbers) {
  const std::string wanted = "must be a whole number, or \"0x...\" in hexadecimal digits, not ";
  Check({
      {Number("4294967295"), ""},
      {Number("\"0xFFFFffff\""), ""},
      {Number("4294967296"), kAtNumber + "4294967296 does not fit the field's 32 bits; give 0 to "
                                         "4294967295"},
      {Number("99999999999999999999999"),
       kAtNumber +
           "99999999999999999999999 does not fit the field's 32 bits; give 0 to 4294967295"},
      {Number("\"0x100000000\""),
       kAtNumber + "\"0x100000000\" does not fit the field's 32 bits; give 0 to 4294967295"},
      {Number("-1"), kAtNumber + "-1 is negative; give 0 or more"},
      {Number("1.5"), kAtNumber + "1.5 is not a whole number; omit the fraction and exponent"},
      {Number("1e3"), kAtNumber + "1e3 is not a whole number; omit the fraction and exponent"},
      {Number("\"12\""), kAtNumber + wanted + "the text \"12\""},
      {Number("\"0x\""), kAtNumber + wanted + "the text \"0x\""},
      {Number("\"0x1g\""), kAtNumber + wanted + "the text \"0x1g\""},
      {Number(R"("0x\u0031")"),
       kAtNumber + "must be a whole number, or \"0x...\" in hexadecimal digits, without escapes"},
      {Number("\"0x1\" "), ""},
      {Number("true"), kAtNumber + wanted + "true or false"},
      {Number("null"), kAtNumber + wanted + "null"},
      {Number("[1]"), kAtNumber + wanted + "a list"},
      {Number("{}"), kAtNumber + wanted + "an object"},
      {Number("01"), kAtNumber + "not JSON: a malformed number; correct it"},
  });
}

TEST(ReaderErrors, EachWidthHasItsOwnLimit) {
  const auto port = [](const std::string& field, const std::string& value) {
    return OneNode(PortLine(R"(,"attributes":{"SMP_PortInfo":{")" + field + "\":" + value + "}}"));
  };
  const std::string at = "f:2: ports[0].attributes.SMP_PortInfo.";
  Check({
      {port("LMC", "256"), at + "LMC: 256 does not fit the field's 8 bits; give 0 to 255"},
      {port("LID", "65536"), at + "LID: 65536 does not fit the field's 16 bits; give 0 to 65535"},
      {port("CapMsk", "\"0x1ffffffff\""),
       at + "CapMsk: \"0x1ffffffff\" does not fit the field's 32 bits; give 0 to 4294967295"},
      {port("GIDPrefix", "\"0x10000000000000000\""),
       at + "GIDPrefix: \"0x10000000000000000\" does not fit the field's 64 bits; give 0 to "
            "18446744073709551615"},
      {port("GIDPrefix", "18446744073709551616"),
       at + "GIDPrefix: 18446744073709551616 does not fit the field's 64 bits; give 0 to "
            "18446744073709551615"},
  });
}

TEST(ReaderErrors, Keys) {
  Check({
      {OneNode(NodeLine(R"(,"opalSwich":true)")),
       "f:2: unknown key \"opalSwich\"; did you mean \"opalSwitch\"?"},
      {OneNode(NodeLine(R"(,"colour":1)")), "f:2: unknown key \"colour\"; remove it"},
      {OneNode(NodeLine(R"(,"a\nb\u202e":1)")), "f:2: unknown key \"a%0Ab%E2%80%AE\"; remove it"},
      {OneNode(NodeLine(R"(,"guid":2)")), "f:2: duplicate key \"guid\"; keep one"},
      {OneNode(PortLine(R"(,"FNM":true)")),
       "f:2: ports[0]: unknown key \"FNM\"; did you mean \"fnm\"?"},
      {OneNode(PortLine(R"(,"state":"DOWN")")), "f:2: ports[0]: duplicate key \"state\"; keep one"},
      {OneNode(PortLine(R"(,"num":1)")), "f:2: ports[0]: duplicate key \"num\"; keep one"},
      {OneNode(NodeLine(R"(,"ports":[{"num":1}])")),
       "f:2: ports[0]: the key \"state\" is missing; add it"},
      {OneNode(NodeLine(R"(,"ports":[{"state":"ARM"}])")),
       "f:2: ports[0]: the key \"num\" is missing; add it"},
      {OneNode(R"({"name":"S1","type":"SW","numPorts":4})"),
       "f:2: the key \"guid\" is missing; add it"},
      {OneNode("{}"), "f:2: the key \"name\" is missing; add it"},
      {OneNode(NodeLine(R"(,"end":true)")),
       "f:2: end: the key does not belong to a node; remove it"},
  });
}

TEST(ReaderErrors, Records) {
  const auto node = [](const std::string& records) {
    return OneNode(NodeLine(",\"attributes\":{" + records + '}'));
  };
  const auto port = [](const std::string& records) {
    return OneNode(PortLine(",\"attributes\":{" + records + '}'));
  };
  Check({
      {node(R"("SMP_NodeInf":{})"),
       "f:2: attributes: unknown record \"SMP_NodeInf\"; did you mean \"SMP_NodeInfo\"?"},
      {node(kPortInfo),
       "f:2: attributes: unknown record \"WrenReductionPortInfo\"; it is a port's; "
       "move it to the port"},
      {port(kInfo),
       "f:2: ports[0].attributes: unknown record \"WrenReductionInfo\"; it is a "
       "node's; move it to the node"},
      {node(kInfo + ',' + kInfo),
       "f:2: attributes: duplicate record \"WrenReductionInfo\"; keep one"},
      {node(R"("WrenReductionInfo":{"capability_mask":1,"hbf_group_cap":1})"),
       "f:2: attributes.WrenReductionInfo: the field \"reduction_fdb_cap\" is missing, which the "
       "generated file needs; add it, or omit the record and give the reason under \"absent\""},
      {node(R"("VendorSpec_GeneralInfo":{"HWInfo":{}})"),
       "f:2: attributes.VendorSpec_GeneralInfo.HWInfo: the field \"DeviceID\" is missing, which "
       "the "
       "generated file needs; add it, or omit the record and give the reason under \"absent\""},
      {port(R"("WrenReductionPortInfo":{"capability_mask":1,"capability_mask":1})"),
       "f:2: ports[0].attributes.WrenReductionPortInfo: duplicate field "
       "\"capability_mask\"; keep one"},
      {node(R"("IB_ClassPortInfo":{"RedirectGID":[1]})"),
       "f:2: attributes.IB_ClassPortInfo.RedirectGID: the list has 1 elements; give 2"},
      {node(R"("IB_ClassPortInfo":{"RedirectGID":[1,2,3]})"),
       "f:2: attributes.IB_ClassPortInfo.RedirectGID: the list has 3 elements; give 2"},
      {node(
           R"("ib_private_lft_info":{"Description_Mode":[{"NumOfLFTables":1,"LFTableSize":1},7]})"),
       "f:2: attributes.ib_private_lft_info.Description_Mode[1]: must be an object, {...}, not a "
       "number"},
      {node(R"("SMP_NodeInfo":[])"),
       "f:2: attributes.SMP_NodeInfo: must be an object, {...}, not a list"},
      {port(R"("WrenReductionCounters":{"8":{}})"),
       "f:2: ports[0].attributes.WrenReductionCounters: unknown counter set \"8\"; give counter "
       "sets "
       "\"0\" to \"7\""},
      {port(R"("WrenReductionCounters":{"3":{"dropped_pkt":-1}})"),
       "f:2: ports[0].attributes.WrenReductionCounters.3.dropped_pkt: -1 is negative; give 0 or "
       "more"},
      {port(R"("WrenReductionConfigureMLIDMonitors":[2])"),
       "f:2: ports[0].attributes.WrenReductionConfigureMLIDMonitors[0]: monitor selector 2 is "
       "unknown; use 0 (reduction counters) or 1 (push reduction counters)"},
      {port(R"("WrenReductionConfigureMLIDMonitors":[1,1])"),
       "f:2: ports[0].attributes.WrenReductionConfigureMLIDMonitors[1]: duplicate monitor "
       "selector 1; keep one"},
  });
}

TEST(ReaderErrors, Absent) {
  const std::string both = "the record is also under \"attributes\"; keep one of the two";
  Check({
      {OneNode(
           NodeLine(R"(,"absent":{"WrenReductionInfo":"time-out"},"attributes":{)" + kInfo + '}')),
       "f:2: absent.WrenReductionInfo: " + both},
      {OneNode(PortLine(R"(,"attributes":{)" + kPortInfo +
                        R"(},"absent":{"WrenReductionPortInfo":"time-out"})")),
       "f:2: ports[0].absent.WrenReductionPortInfo: " + both},
      {OneNode(NodeLine(R"(,"absent":{"SMP_PortInfo":"time-out"})")),
       "f:2: absent: unknown record \"SMP_PortInfo\"; it is a port's; move it to the port"},
      {OneNode(NodeLine(R"(,"absent":{"WrenReductionInfo":1})")),
       "f:2: absent.WrenReductionInfo: must be text, not a number"},
      {OneNode(PortLine(R"(,"absent":{"WrenReductionCounters":"a","WrenReductionCounters":"b"})")),
       "f:2: ports[0].absent: duplicate record \"WrenReductionCounters\"; keep one"},
  });
}

TEST(ReaderErrors, NodesAndPorts) {
  const std::string again = NodeLine("") + '\n';
  Check({
      {kHeaderLine + again + R"({"name":"S2","guid":1,"type":"CA","numPorts":1})" + '\n',
       "f:3: guid: 0x0000000000000001 is the GUID of node \"S1\" too; give each node its own"},
      {kHeaderLine + again + R"({"name":"S1","guid":2,"type":"CA","numPorts":1})" + '\n',
       "f:3: name: \"S1\" is the name of another node too; give each its own"},
      {OneNode(R"({"name":"S1","guid":1,"type":"SWITCH","numPorts":4})"),
       "f:2: type: \"SWITCH\" is not one of \"SW\", \"RTR\", \"CA\" or \"UNKNOWN\""},
      {OneNode(R"({"name":"S1","guid":1,"type":"SW","numPorts":256})"),
       "f:2: numPorts: 256 does not fit the field's 8 bits; give 0 to 255"},
      {OneNode(R"({"name":7,"guid":1,"type":"SW","numPorts":1})"),
       "f:2: name: must be text, not a number"},
      {OneNode(R"({"name":{"hex":"00"},"guid":1,"type":"SW","numPorts":1})"),
       "f:2: name: must be text, or one object {\"escaped\": text}"},
      {OneNode(NodeLine(R"(,"specialNode":"an")")),
       "f:2: specialNode: \"an\" is not one of \"AN\", \"ROUTER\" or \"ETH_GATEWAY\""},
      {OneNode(NodeLine(R"(,"opalSwitch":1)")),
       "f:2: opalSwitch: must be true or false, not a number"},
      {OneNode(NodeLine(R"(,"smpCapabilityMask":[1,2,3])")),
       "f:2: smpCapabilityMask: the mask has 3 words; give 4 of 32 bits, the lowest bits first"},
      {OneNode(NodeLine(R"(,"gmpCapabilityMask":[0,0,0,4294967296])")),
       "f:2: gmpCapabilityMask[3]: 4294967296 does not fit the field's 32 bits; give 0 to "
       "4294967295"},
      {OneNode(NodeLine(R"(,"ports":{})")), "f:2: ports: must be a list, [...], not an object"},
      {OneNode(NodeLine(R"(,"ports":[{"num":5,"state":"ARM"}])")),
       "f:2: ports[0].num: port 5 is above the node's numPorts, 4; correct one of the two"},
      {OneNode(NodeLine(R"(,"ports":[{"num":2,"state":"ARM"},{"num":2,"state":"ARM"}])")),
       "f:2: ports[1].num: duplicate port 2; keep one"},
      {OneNode(
           R"({"name":"H1","guid":1,"type":"CA","numPorts":1,"ports":[{"num":0,"state":"ARM"}]})"),
       "f:2: ports[0].num: port 0 exists on a switch only; number this node's ports from 1"},
      {OneNode(NodeLine(R"(,"ports":[{"num":1,"state":"UP"}])")),
       "f:2: ports[0].state: \"UP\" is not one of \"ACTIVE\", \"ARM\", \"INIT\", \"DOWN\" or "
       "\"UNKNOWN\""},
  });
}

TEST(ReaderErrors, Lines) {
  const std::string node = NodeLine("") + '\n';
  const std::string no_snapshot =
      "f:1: not a snapshot: line 1 must be the header, {\"fabscan_snapshot\": 2, "
      "...}";
  const std::string not_json =
      "not JSON: brackets, commas or colons are missing or too many; correct them";
  Check({
      {"", no_snapshot},
      {node, no_snapshot},
      {"{\"source\":\"s\"}\n", no_snapshot},
      {"\x7F"
       "ELF\x02\xFF",
       no_snapshot},
      {"[1]\n", no_snapshot},
      {"{\"fabscan_snapshot\":2,\"sauce\":\"s\"}\n",
       "f:1: unknown key \"sauce\"; did you mean \"source\"?"},
      {"{\"fabscan_snapshot\":2,\"fabscan_snapshot\":1}\n",
       "f:1: duplicate key \"fabscan_snapshot\"; keep one"},
      {"{\"fabscan_snapshot\":3}\n",
       "f:1: fabscan_snapshot: version 3 is newer than this program, which reads versions 1 to 2; "
       "use a newer one"},
      {kHeaderLine + std::string(kHeaderLine) + EndLine(0),
       "f:2: a second header; a snapshot has one, in its first line"},
      {kHeaderLine + node,
       "f:3: the file is truncated: its last line, {\"end\": true, \"nodes\": N}, is missing; use "
       "the complete file"},
      {kHeaderLine + node + EndLine(2),
       "f:3: nodes: the last line counts 2 nodes, but 1 precede it; use the complete file, or "
       "correct the count"},
      {kHeaderLine + std::string("{\"end\":false,\"nodes\":0}\n"), "f:2: end: must be true"},
      {kHeaderLine + std::string("{\"end\":true}\n"), "f:2: the key \"nodes\" is missing; add it"},
      {kHeaderLine + EndLine(0) + node,
       "f:3: text follows the last line, {\"end\": true, ...}; remove it"},
      {kHeaderLine + EndLine(0) + "\n",
       "f:3: text follows the last line, {\"end\": true, ...}; remove it"},
      {kHeaderLine + std::string("\n") + EndLine(0), "f:2: the line is empty; remove it"},
      {kHeaderLine + std::string("[]\n"), "f:2: the line must be an object, {...}"},
      {kHeaderLine + std::string("7\n"), "f:2: the line must be an object, {...}"},
      {OneNode(NodeLine("") + " {}"),
       "f:2: more text follows the object; put each object on its own line"},
      {OneNode(NodeLine(",")), "f:2: " + not_json},
      {OneNode(NodeLine(R"(,"ports":[)")), "f:2: ports[0]: " + not_json},
      {OneNode(NodeLine(R"(,"ports":[{"num":1,"state":"ARM"} {"num":2,"state":"ARM"}])")),
       "f:2: ports[1]: " + not_json},
      {OneNode("{\"name\":\"S1\\q\",\"guid\":1,\"type\":\"SW\",\"numPorts\":1}"),
       "f:2: name: not JSON: text with an escape that does not exist; correct it"},
      {OneNode("{\"name\":\"S\x01\",\"guid\":1,\"type\":\"SW\",\"numPorts\":1}"),
       "f:2: not JSON: a control character within text; write it as \\u00XX"},
      {OneNode("{\"name\":\"S1"), "f:2: not JSON: text without its closing quote; correct it"},
      {kHeaderLine + std::string("{\"name\":\"S1"),
       "f:2: unexpected end of file in this line; use the complete file"},
      {kHeaderLine + node.substr(0, node.size() - 2),
       "f:2: unexpected end of file in this line; use the complete file"},
      {OneNode("{\"name\":\"S\xFF\",\"guid\":1,\"type\":\"SW\",\"numPorts\":1}"),
       "f:2: the line is not UTF-8 text; save it as UTF-8"},
  });
}

TEST(ReaderErrors, Limits) {
  SnapshotReadOptions options;
  options.max_line_bytes = 100;
  const std::string long_line =
      OneNode(NodeLine(R"(,"alternativeName":")" + std::string(100, 'a') + '"'));
  EXPECT_EQ(ReadError(long_line, options),
            "f:2: the line is longer than 100 bytes; raise max-line-bytes if it is meant to be");
  EXPECT_EQ(ReadError(OneNode(NodeLine("")), options), "");

  options.max_nodes = 0;
  EXPECT_EQ(ReadError(OneNode(NodeLine("")), options),
            "f:2: more than 0 nodes; raise max-nodes if that is meant");
  options.max_nodes = 1;
  EXPECT_EQ(ReadError(OneNode(NodeLine("")), options), "");
}

TEST(ReaderErrors, Files) {
  const auto error = [](const std::string& path) -> std::string {
    Fabscan fabscan;
    try {
      ReadSnapshot(path, fabscan);
      return {};
    } catch (const SnapshotError& e) {
      return e.what();
    }
  };
  EXPECT_EQ(error("/no/such/file"), "/no/such/file: cannot open: No such file or directory");
  EXPECT_EQ(error("/"), "/: cannot read: Is a directory");
}

TEST(Reader, EveryTruncationIsAnError) {
  const std::string text = OneNode(PortLine(R"(,"attributes":{)" + kPortInfo + '}'));
  ASSERT_EQ(ReadError(text), "");
  // Without its last line end the file is whole.
  ASSERT_EQ(ReadError(text.substr(0, text.size() - 1)), "");
  for (std::size_t size = 0; size + 1 < text.size(); ++size) {
    EXPECT_NE(ReadError(text.substr(0, size)), "") << size;
  }
}

TEST(Reader, EveryFlippedBitIsAnErrorOrAModelThatRoundTrips) {
  const std::string text = OneNode(
      NodeLine(R"(,"alternativeName":{"escaped":"%FF"},"smpCapabilityMask":["0x0",1,2,3],)"
               R"("attributes":{)" +
               kInfo + R"(},"ports":[{"num":1,"state":"ARM","attributes":{)" + kPortInfo +
               R"(,"WrenReductionConfigureMLIDMonitors":[0,1]},"absent":{"SMP_PortInfo":"no"}}])"));
  ASSERT_EQ(ReadError(text), "");
  std::size_t errors = 0;
  for (std::size_t bit = 0; bit < 8 * text.size(); ++bit) {
    std::string flipped = text;
    flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << (bit % 8)));
    Fabscan fabscan;
    try {
      const SnapshotHeader header = ReadText(flipped, fabscan);
      const std::string written = WriteText(fabscan, header);
      EXPECT_EQ(Rewritten(written), written) << flipped;
    } catch (const SnapshotError& error) {
      ++errors;
      EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos) << error.what();
    }
  }
  EXPECT_GT(errors, 6 * text.size());  // most bits matter
}

TEST(Reader, ReturnsTheHeader) {
  Fabscan fabscan;
  const SnapshotHeader header =
      ReadText(R"({"fabscan_snapshot":1,"source":"rack 7","created":"on a \u0007 Friday"})"
               "\n" +
                   EndLine(0),
               fabscan);
  EXPECT_EQ(header.source, "rack 7");
  EXPECT_EQ(header.created, "on a \a Friday");
}

TEST(Reader, FillsTheModel) {
  Fabscan fabscan;
  ReadText(
      OneNode(NodeLine(
          R"(,"alternativeName":"A /* b","inSubFabric":false,"specialNode":"ETH_GATEWAY",)"
          R"("smpCapabilityMask":["0x1",2,0,"0x80000000"],"absent":{"SMP_NodeInfo":"lost"},)"
          R"("ports":[{"num":0,"state":"UNKNOWN"},)"
          R"({"num":2,"state":"INIT","inSubFabric":false,"special":true,)"
          R"("attributes":{"WrenReductionCounters":{},"WrenReductionConfigureMLIDMonitors":[1]},)"
          R"("absent":{"SMP_PortInfo":"time-out"}},)"
          R"({"num":3,"state":"DOWN","fnm":true},{"num":4,"state":"ARM","fnm1":true}])")),
      fabscan);
  const IBNode* node = fabscan.discovered_fabric.getNodeByGuid(1);
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->getAlternativeName(), "A /%2A b");
  EXPECT_FALSE(node->in_sub_fabric);
  EXPECT_EQ(node->getSpecialNodeType(), IB_SPECIAL_PORT_ETH_GATEWAY);
  EXPECT_FALSE(node->isOpalSwitch());
  const capability_mask_t* mask = fabscan.capability_module.find(*node, false);
  ASSERT_NE(mask, nullptr);
  EXPECT_EQ(mask->mask[0], 1U);
  EXPECT_EQ(mask->mask[1], 2U);
  EXPECT_EQ(mask->mask[3], 0x80000000U);
  EXPECT_EQ(fabscan.capability_module.find(*node, true), nullptr);
  const TesselExtendedInfo& store = fabscan.fabric_extended_info;
  EXPECT_EQ(store.absentReasons(*node).at("SMP_NodeInfo"), "lost");

  ASSERT_EQ(node->Ports.size(), 5U);
  EXPECT_EQ(node->Ports[0]->port_state, IB_UNKNOWN_PORT_STATE);
  EXPECT_EQ(node->Ports[1], nullptr);
  const IBPort& special = *node->Ports[2];
  EXPECT_EQ(special.port_state, IB_PORT_STATE_INIT);
  EXPECT_FALSE(special.getInSubFabric());
  EXPECT_TRUE(special.isSpecialPort());
  EXPECT_FALSE(special.isFNMPort());
  EXPECT_FALSE(special.isFNM1Port());
  EXPECT_EQ(store.getWrenReductionConfigureMLIDMonitors(special.createIndex, 0), nullptr);
  EXPECT_NE(store.getWrenReductionConfigureMLIDMonitors(special.createIndex, 1), nullptr);
  EXPECT_EQ(store.absentReasons(special).at("SMP_PortInfo"), "time-out");
  EXPECT_EQ(node->Ports[3]->port_state, IB_PORT_STATE_DOWN);
  EXPECT_TRUE(node->Ports[3]->isFNMPort());
  EXPECT_TRUE(node->Ports[3]->getInSubFabric());
  EXPECT_EQ(node->Ports[4]->port_state, IB_PORT_STATE_ARM);
  EXPECT_TRUE(node->Ports[4]->isFNM1Port());
}

}  // namespace
}  // namespace fabscan
