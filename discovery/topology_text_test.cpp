#include "discovery/topology_text.h"

#include <gmock/gmock.h>

#include <sstream>

namespace fabscan {
namespace {

using ::testing::HasSubstr;

constexpr char kText[] = R"(#
# Topology file: generated on Sun Nov 22 15:45:59 2026
#
# Initiated from node 5a1e0c0000200000 port 5a1e0c0000200000

vendid=0x5a1e0c
devid=0x5a50
sysimgguid=0x20
switchguid=0x20(20)
Switch	36 "S-0000000000000020"		# "leaf "1" [x]" enhanced port 0 lid 12 lmc 0
[1]	"H-0000000000000010"[1](11) 		# "host HCA-1" lid 4 4xNDR
[17][ext 3]	"S-0000000000000030"[2]		# "spine" lid 13 2xFDR10

vendid=0x5a1e0c
devid=0x5a50
switchguid=0x30(30)
Switch	4 "S-0000000000000030"		# "spine" base port 0 lid 13 lmc 0
[2]	"S-0000000000000020"[17]		# "leaf "1" [x]" lid 12 2xFDR10

caguid=0x10
Ca	2 "H-0000000000000010"		# "host HCA-1"
[1](11) 	"S-0000000000000020"[1]		# lid 4 lmc 0 "leaf "1" [x]" lid 12 4xNDR
)";

/// What is wrong with a text; "none" if nothing is. `fabscan` gets the nodes.
std::string Read(const std::string& text, Fabscan& fabscan) {
  try {
    TopologyText topology;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) topology.Add(line);
    topology.Build(fabscan, text.empty() || text.back() == '\n');
  } catch (const TopologyError& error) {
    return error.what();
  }
  return "none";
}

std::string ErrorOf(const std::string& text) {
  Fabscan fabscan;
  return Read(text, fabscan);
}

std::string Changed(const std::string& from, const std::string& to) {
  std::string text = kText;
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

TEST(TopologyText, ReadsNodesPortsAndLinks) {
  Fabscan fabscan;
  ASSERT_EQ(Read(kText, fabscan), "none");
  const IBFabric& fabric = fabscan.discovered_fabric;
  ASSERT_EQ(fabric.nodeCount(), 3U);
  const IBNode& host = fabric.nodes()[0];
  const IBNode& leaf = fabric.nodes()[1];
  EXPECT_EQ(leaf.guid, 0x20U);
  EXPECT_EQ(leaf.type, IB_SW_NODE);
  EXPECT_EQ(leaf.numPorts, 36);
  EXPECT_EQ(leaf.name, "leaf %221%22 [x]");
  EXPECT_EQ(leaf.getDescription(), "leaf %221%22 [x]");
  EXPECT_EQ(leaf.getPort(0)->lid, 12);
  const IBPort& port = *leaf.getPort(1);
  EXPECT_EQ(port.getRemotePort(), (RemotePort{0x10, 1}));
  EXPECT_EQ(port.link_width, IB_LINK_WIDTH_4X);
  EXPECT_EQ(port.link_speed, IB_LINK_SPEED_NDR);
  EXPECT_EQ(port.lid, 0);
  EXPECT_EQ(leaf.getPort(17)->getRemotePort(), (RemotePort{0x30, 2}));
  EXPECT_EQ(leaf.getPort(17)->link_width, IB_LINK_WIDTH_2X);
  EXPECT_EQ(leaf.getPort(17)->link_speed, IB_UNKNOWN_LINK_SPEED);  // no speed of the architecture
  EXPECT_EQ(leaf.getPort(2), nullptr);
  EXPECT_EQ(host.type, IB_CA_NODE);
  EXPECT_EQ(host.getPort(1)->guid, 0x11U);
  EXPECT_EQ(host.getPort(1)->lid, 4);
  const TesselExtendedInfo& store = fabscan.fabric_extended_info;
  EXPECT_EQ(store.absentReasons(leaf).at("SMP_SwitchInfo"), "not in the text of ibnetdiscover");
  EXPECT_EQ(store.absentReasons(host).at("SMP_NodeInfo"), "not in the text of ibnetdiscover");
  EXPECT_EQ(store.absentReasons(port).at("SMP_PortInfo"), "not in the text of ibnetdiscover");
}

TEST(TopologyText, ReadsNetFiles) {
  Fabscan fabscan;
  EXPECT_EQ(Read("Switch 4 \"S-20\"\n[1] \"H-10\"[1]\n\nHca 1 \"H-10\"\n[1] \"S-20\"[1] # x\r\n",
                 fabscan),
            "none");
  EXPECT_EQ(fabscan.discovered_fabric.nodes()[1].getPort(1)->getRemotePort(),
            (RemotePort{0x10, 1}));
}

TEST(TopologyText, RefusesTextsThatAreCut) {
  const std::string text = kText;
  const std::size_t one_node = text.find("[1]\t");  // a switch without links is a topology
  for (std::size_t size = 0; size + 1 < text.size(); ++size) {
    const std::string cut = text.substr(0, size);
    EXPECT_EQ(ErrorOf(cut) == "none", size == one_node) << cut;
  }
  EXPECT_EQ(ErrorOf(text.substr(0, text.find("caguid"))),
            "line 10: port 1 is linked to port 1 of 0x0000000000000010, which is not in the text; "
            "use the complete text");
  EXPECT_EQ(ErrorOf("# Topology file: generated on Sun\n"),
            "line 1: the text contains no nodes; use the output of ibnetdiscover");
}

TEST(TopologyText, RefusesOtherLines) {
  EXPECT_EQ(ErrorOf("Ca 1 \"H-1\"\nHello\n"),
            "line 2: not a line that ibnetdiscover writes; use its output as it is");
  EXPECT_EQ(ErrorOf("[1] \"H-1\"[1]\n"), "line 1: a port before the first node");
  EXPECT_THAT(ErrorOf("Ca x \"H-1\"\n"), HasSubstr("a node has a number of ports"));
  EXPECT_THAT(ErrorOf("Ca 256 \"H-1\"\n"), HasSubstr("a node has a number of ports"));
  EXPECT_THAT(ErrorOf("Ca 1 \"H-10000000000000000\"\n"), HasSubstr("a node has a number of ports"));
  for (const char* port : {"[x] \"S-2\"[1]", "[1 \"S-2\"[1]", "[1] S-2[1]", "[1] \"S-2\"",
                           "[1](zz) \"S-2\"[1]", "[1][ext x] \"S-2\"[1]", "[1] \"S-\"[1]"}) {
    EXPECT_THAT(ErrorOf(std::string("Ca 1 \"H-1\"\n") + port + '\n'),
                HasSubstr("a port is [number]"))
        << port;
  }
}

TEST(TopologyText, RefusesContradictions) {
  EXPECT_EQ(ErrorOf(Changed("Ca\t2 \"H-0000000000000010\"", "Ca\t2 \"H-0000000000000030\"")),
            "line 21: 0x0000000000000030 is in line 17 already; keep one");
  EXPECT_EQ(ErrorOf(Changed("[17][ext 3]", "[37]")), "line 12: the node has ports 1 to 36, not 37");
  EXPECT_EQ(ErrorOf(Changed("[17][ext 3]", "[1]")), "line 12: duplicate port 1; keep one");
  EXPECT_THAT(ErrorOf(Changed("\"S-0000000000000020\"[17]", "\"S-0000000000000020\"[18]")),
              HasSubstr("line 17: port 2 is linked to port 18 of 0x0000000000000020"));
  EXPECT_THAT(ErrorOf(Changed("\"S-0000000000000030\"[2]", "\"S-0000000000000030\"[5]")),
              HasSubstr("line 10: port 17 is linked to port 5 of 0x0000000000000030"));
  EXPECT_THAT(ErrorOf(Changed("[1](11) \t\"S-0000000000000020\"[1]",
                              "[1](11) \t\"S-0000000000000020\"[17]")),
              HasSubstr("line 21: port 1: port 17 of \"leaf %221%22 [x]\" has another peer"));
}

}  // namespace
}  // namespace fabscan
