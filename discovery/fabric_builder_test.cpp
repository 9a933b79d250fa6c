#include "discovery/fabric_builder.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "discovery/cache_reader.h"
#include "discovery/testing/cache_builder.h"

namespace fabscan {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr unsigned kCapMskBit = 160;
constexpr unsigned kCapMsk2Bit = 480;
constexpr u_int64_t kHasCapMsk2 = 1U << 15U;

/// A switch with two ports, all of whose attributes were read.
NodeFindings Switch(u_int64_t guid) {
  NodeFindings node;
  node.guid = guid;
  WriteBits(node.node_info, 16, 8, IB_SW_NODE);
  WriteBits(node.node_info, 24, 8, 2);
  Payload description = {'s', 'w'};
  node.description = Answer::Read(description);
  node.switch_info = Answer::Read({0xc0});
  for (u_int8_t number = 0; number <= 2; ++number) {
    PortFindings port;
    port.number = number;
    port.scanned = true;
    port.info = Answer::Read({});
    node.ports.push_back(port);
  }
  return node;
}

void SetLinked(PortFindings& port) {
  WriteBits(port.info.payload, 260, 4, IB_PORT_STATE_ACTIVE);
  WriteBits(port.info.payload, 264, 4, 5);
}

TEST(FabricBuilder, FillsModelAndStore) {
  Fabscan fabscan;
  const DiscoveryReport report =
      BuildFabric(CacheFindings(CacheBuilder::Sample().Bytes()), fabscan);
  EXPECT_EQ(report.nodes, 4U);
  EXPECT_EQ(report.ports, 11U);
  EXPECT_EQ(report.attributes_asked, 4U + 4U + 2U + 10U);
  EXPECT_EQ(report.attributes_read, report.attributes_asked);
  EXPECT_THAT(report.gaps, IsEmpty());

  const IBNode* leaf = fabscan.discovered_fabric.getNodeByGuid(0x200000);
  ASSERT_NE(leaf, nullptr);
  EXPECT_EQ(leaf->name, "leaf");
  EXPECT_EQ(leaf->type, IB_SW_NODE);
  EXPECT_EQ(leaf->numPorts, 4);
  EXPECT_EQ(leaf->getAlternativeName(), "");
  EXPECT_EQ(leaf->getPort(0)->port_state, IB_PORT_STATE_DOWN);
  EXPECT_EQ(leaf->getPort(1)->port_state, IB_PORT_STATE_ACTIVE);
  const TesselExtendedInfo& store = fabscan.fabric_extended_info;
  EXPECT_EQ(store.find<SMP_NodeInfo>(*leaf)->DeviceID, 0xd2f0);
  EXPECT_EQ(store.find<SMP_SwitchInfo>(*leaf)->LinearFDBCap, 0xc000);
  EXPECT_EQ(store.find<SMP_PortInfo>(*leaf->getPort(1))->LinkWidthSup, 0x1f);

  const IBNode* adapter = fabscan.discovered_fabric.getNodeByGuid(0x100000);
  EXPECT_EQ(store.find<SMP_SwitchInfo>(*adapter), nullptr);
  EXPECT_EQ(adapter->getPort(2)->port_state, IB_UNKNOWN_PORT_STATE);
  EXPECT_EQ(store.find<SMP_PortInfo>(*adapter->getPort(2)), nullptr);
  EXPECT_THAT(
      store.absentReasons(*adapter->getPort(2)),
      ElementsAre(Pair("SMP_PortInfo",
                       "a discovery cache contains only the ports that the scan traversed")));
}

TEST(FabricBuilder, OrdersNodesByGuidAndGivesDistinctNames) {
  FabricFindings findings;
  findings.nodes = {Switch(0x20), Switch(0x10)};
  Fabscan fabscan;
  BuildFabric(findings, fabscan);
  const auto& nodes = fabscan.discovered_fabric.nodes();
  ASSERT_EQ(nodes.size(), 2U);
  EXPECT_EQ(nodes[0].name, "sw [0x0000000000000010]");
  EXPECT_EQ(nodes[0].getAlternativeName(), "sw");
  EXPECT_EQ(nodes[1].name, "sw [0x0000000000000020]");
}

TEST(FabricBuilder, BuildsPartsOfWholeNodes) {
  FabricFindings findings;
  findings.nodes = {Switch(0x30), Switch(0x20), Switch(0x10)};
  std::vector<std::vector<std::string>> names;
  const DiscoveryReport report = BuildFabricInParts(findings, 4, [&](const Fabscan& part) {
    names.emplace_back();
    for (const IBNode& node : part.discovered_fabric.nodes()) names.back().push_back(node.name);
  });
  EXPECT_THAT(names, ElementsAre(ElementsAre("sw [0x0000000000000010]", "sw [0x0000000000000020]"),
                                 ElementsAre("sw [0x0000000000000030]")));
  EXPECT_EQ(report.nodes, 3U);
  EXPECT_EQ(report.ports, 9U);
}

TEST(FabricBuilder, RefusesDuplicateGuidsAcrossParts) {
  FabricFindings findings;
  findings.nodes = {Switch(0x10), Switch(0x20), Switch(0x10)};
  Fabscan fabscan;
  EXPECT_THROW(BuildFabric(findings, fabscan), std::invalid_argument);
  EXPECT_THROW(BuildFabricInParts(findings, 1, [](const Fabscan&) {}), std::invalid_argument);
}

TEST(FabricBuilder, RecordsFailuresWithTheirCause) {
  FabricFindings findings;
  findings.nodes = {Switch(0x10)};
  NodeFindings& node = findings.nodes.front();
  node.switch_info = Answer::Failed("status 0x000c");
  node.ports[1].info = Answer::Failed("timed out");
  node.ports[2].info = Answer::Failed("timed out");
  Fabscan fabscan;
  const DiscoveryReport report = BuildFabric(findings, fabscan);
  EXPECT_EQ(report.attributes_asked, 6U);
  EXPECT_EQ(report.attributes_read, 3U);
  EXPECT_THAT(report.gaps, ElementsAre("sw (0x0000000000000010) lacks SwitchInfo (status 0x000c); "
                                       "PortInfo (timed out) of ports 1, 2"));

  const IBNode& made = fabscan.discovered_fabric.nodes().front();
  const TesselExtendedInfo& store = fabscan.fabric_extended_info;
  EXPECT_THAT(store.absentReasons(made), ElementsAre(Pair("SMP_SwitchInfo", "status 0x000c")));
  EXPECT_THAT(store.absentReasons(*made.getPort(2)),
              ElementsAre(Pair("SMP_PortInfo", "timed out")));
}

TEST(FabricBuilder, RecordsTheReasonOfEachPort) {
  static constexpr char kNotHeld[] = "not held";
  FabricFindings findings;
  findings.nodes = {Switch(0x10), Switch(0x20)};
  for (NodeFindings& node : findings.nodes) {
    for (PortFindings& port : node.ports) port.extended = Answer::NotAsked(kNotHeld);
  }
  findings.nodes[0].ports[1].info = Answer::Failed("timed out");
  findings.nodes[1].ports[0].extended = Answer::NotAsked("another");
  findings.nodes[1].ports[1].extended = Answer::NotAsked({});
  Fabscan fabscan;
  BuildFabric(findings, fabscan);

  const auto reasons = [&](u_int64_t guid, phys_port_t number) -> const auto& {
    return fabscan.fabric_extended_info.absentReasons(
        *fabscan.discovered_fabric.getNodeByGuid(guid)->getPort(number));
  };
  const auto not_held = ElementsAre(Pair("SMP_PortInfoExtended", "not held"));
  EXPECT_THAT(reasons(0x10, 0), not_held);
  EXPECT_THAT(reasons(0x10, 1), ElementsAre(Pair("SMP_PortInfo", "timed out"),
                                            Pair("SMP_PortInfoExtended", "not held")));
  EXPECT_THAT(reasons(0x10, 2), not_held);
  EXPECT_THAT(reasons(0x20, 0), ElementsAre(Pair("SMP_PortInfoExtended", "another")));
  EXPECT_THAT(reasons(0x20, 1), IsEmpty());
  EXPECT_THAT(reasons(0x20, 2), not_held);
}

TEST(FabricBuilder, ReportsALinkedPortWithoutAPeer) {
  FabricFindings findings;
  findings.nodes = {Switch(0x10)};
  NodeFindings& node = findings.nodes.front();
  for (PortFindings& port : node.ports) SetLinked(port);  // port 0 has no link to lack
  node.ports[1].peer = RemotePort{0x20, 1};
  node.ports[2].peer_failure = "timed out";
  Fabscan fabscan;
  EXPECT_THAT(BuildFabric(findings, fabscan).gaps,
              ElementsAre("sw (0x0000000000000010) lacks the linked peer (timed out) of port 2"));
}

TEST(FabricBuilder, ExpectsNoPeerOfAPortThatTheScanDidNotTraverse) {
  FabricFindings findings;
  findings.nodes = {Switch(0x10)};
  SetLinked(findings.nodes.front().ports[2]);
  findings.nodes.front().ports[2].scanned = false;
  Fabscan fabscan;
  EXPECT_TRUE(BuildFabric(findings, fabscan).complete());
}

TEST(FabricBuilder, RecordsThatRouterInfoIsNotRequested) {
  CacheBuilder builder;
  builder.AddPort(builder.Add(0x30, IB_RTR_NODE, 1, "router"), 1);
  Fabscan fabscan;
  EXPECT_TRUE(BuildFabric(CacheFindings(builder.Bytes()), fabscan).complete());
  EXPECT_THAT(
      fabscan.fabric_extended_info.absentReasons(fabscan.discovered_fabric.nodes().front()),
      ElementsAre(Pair("SMP_RouterInfo",
                       "not requested: the public libraries define neither its attribute ID nor "
                       "its layout")));
}

TEST(Findings, ASwitchReportsPortInfoExtendedSupportAtPort0) {
  NodeFindings node = Switch(0x10);
  EXPECT_FALSE(PortInfoExtendedOffer(node).Has(node.ports[1]));
  WriteBits(node.ports[0].info.payload, kCapMskBit, 32, kHasCapMsk2);
  WriteBits(node.ports[0].info.payload, kCapMsk2Bit, 16, 1U << 1U);
  EXPECT_TRUE(PortInfoExtendedOffer(node).Has(node.ports[1]));
  EXPECT_FALSE(PortInfoExtendedOffer(node).Has(node.ports[0]));
}

TEST(Findings, AnAdapterReportsPortInfoExtendedSupportPerPort) {
  NodeFindings node = Switch(0x10);
  WriteBits(node.node_info, 16, 8, IB_CA_NODE);
  WriteBits(node.ports[2].info.payload, kCapMskBit, 32, kHasCapMsk2);
  WriteBits(node.ports[2].info.payload, kCapMsk2Bit, 16, 1U << 1U);
  EXPECT_TRUE(PortInfoExtendedOffer(node).Has(node.ports[2]));
  EXPECT_FALSE(PortInfoExtendedOffer(node).Has(node.ports[1]));
}

}  // namespace
}  // namespace fabscan
