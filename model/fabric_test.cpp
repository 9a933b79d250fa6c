#include <gtest/gtest.h>
#include <infiniband/tessel/Fabric.h>

#include <sstream>
#include <stdexcept>
#include <string>

namespace {

TEST(FabricTest, OnlySwitchesHavePortZero) {
  IBFabric fabric;
  IBNode& sw = fabric.makeNode("S", 1, IB_SW_NODE, 2);
  IBNode& adapter = fabric.makeNode("H", 2, IB_CA_NODE, 2);
  IBNode& router = fabric.makeNode("R", 3, IB_RTR_NODE, 2);
  IBPort& management = fabric.makePort(sw, 0);
  fabric.makePort(adapter, 1);
  // A model filled by other code can have an entry 0 on any node.
  adapter.Ports[0] = &management;

  EXPECT_EQ(sw.getPort(0), &management);
  EXPECT_EQ(adapter.getPort(0), nullptr);
  EXPECT_EQ(router.getPort(0), nullptr);
}

TEST(FabricTest, PortsBeyondTheVectorAreNull) {
  IBFabric fabric;
  IBNode& sw = fabric.makeNode("S", 1, IB_SW_NODE, 255);
  EXPECT_EQ(sw.getPort(0), nullptr);  // no Ports at all
  EXPECT_EQ(sw.getPort(1), nullptr);
  IBPort& port = fabric.makePort(sw, 3);
  ASSERT_EQ(sw.Ports.size(), 4U);
  EXPECT_EQ(sw.getPort(3), &port);
  EXPECT_EQ(sw.getPort(2), nullptr);  // inside the vector, not created
  EXPECT_EQ(sw.getPort(4), nullptr);
  EXPECT_EQ(sw.getPort(255), nullptr);
  IBPort& last = fabric.makePort(sw, 255);
  EXPECT_EQ(sw.getPort(255), &last);
}

TEST(FabricTest, CreationIndicesAreDenseAndSeparateForNodesAndPorts) {
  IBFabric fabric;
  IBNode& second_by_name = fabric.makeNode("Z", 9, IB_SW_NODE, 2);
  IBNode& first_by_name = fabric.makeNode("A", 8, IB_CA_NODE, 2);
  EXPECT_EQ(second_by_name.createIndex, 0U);
  EXPECT_EQ(first_by_name.createIndex, 1U);
  EXPECT_EQ(fabric.makePort(second_by_name, 2).createIndex, 0U);
  EXPECT_EQ(fabric.makePort(first_by_name, 2).createIndex, 1U);
  EXPECT_EQ(fabric.makePort(second_by_name, 1).createIndex, 2U);
  EXPECT_EQ(fabric.nodeCount(), 2U);
  EXPECT_EQ(fabric.portCount(), 3U);
  EXPECT_EQ(&fabric.nodes()[1], &first_by_name);
  EXPECT_EQ(fabric.NodeByName.begin()->second, &first_by_name);
}

TEST(FabricTest, AddingNodesDoesNotMoveOthers) {
  IBFabric fabric;
  IBNode& first = fabric.makeNode("first", 1, IB_SW_NODE, 1);
  IBPort& port = fabric.makePort(first, 1);
  for (u_int64_t guid = 2; guid < 2000; ++guid) {
    fabric.makePort(fabric.makeNode("n" + std::to_string(guid), guid, IB_CA_NODE, 1), 1);
  }
  EXPECT_EQ(fabric.getNodeByGuid(1), &first);
  EXPECT_EQ(fabric.NodeByName.at("first"), &first);
  EXPECT_EQ(first.getPort(1), &port);
}

TEST(FabricTest, RefusesADuplicateNameOrGuid) {
  IBFabric fabric;
  fabric.makeNode("S", 1, IB_SW_NODE, 1);
  EXPECT_THROW(fabric.makeNode("S", 2, IB_SW_NODE, 1), std::invalid_argument);
  EXPECT_THROW(fabric.makeNode("T", 1, IB_SW_NODE, 1), std::invalid_argument);
  EXPECT_EQ(fabric.nodeCount(), 1U);
  EXPECT_EQ(fabric.NodeByName.size(), 1U);
  EXPECT_EQ(fabric.getNodeByGuid(2), nullptr);
  EXPECT_EQ(fabric.makeNode("T", 2, IB_SW_NODE, 1).createIndex, 1U);
}

TEST(FabricTest, RefusesImpossiblePorts) {
  IBFabric fabric;
  IBNode& adapter = fabric.makeNode("H", 1, IB_CA_NODE, 2);
  fabric.makePort(adapter, 1);
  EXPECT_THROW(fabric.makePort(adapter, 1), std::invalid_argument);
  EXPECT_THROW(fabric.makePort(adapter, 3), std::invalid_argument);
  EXPECT_THROW(fabric.makePort(adapter, 0), std::invalid_argument);
  EXPECT_EQ(fabric.portCount(), 1U);
  EXPECT_EQ(adapter.Ports.size(), 2U);
}

TEST(FabricTest, CanBeReusedAfterClear) {
  IBFabric fabric;
  fabric.makePort(fabric.makeNode("S", 1, IB_SW_NODE, 2), 1);
  fabric.clear();
  EXPECT_EQ(fabric.nodeCount(), 0U);
  EXPECT_EQ(fabric.portCount(), 0U);
  EXPECT_TRUE(fabric.NodeByName.empty());
  EXPECT_EQ(fabric.getNodeByGuid(1), nullptr);
  IBNode& node = fabric.makeNode("S", 1, IB_SW_NODE, 2);
  EXPECT_EQ(node.createIndex, 0U);
  EXPECT_EQ(fabric.makePort(node, 2).createIndex, 0U);
  EXPECT_EQ(fabric.getNodeByGuid(1), &node);
}

TEST(FabricTest, NamesAreCorrectAfterEachClear) {
  IBFabric fabric;
  for (const int count : {3, 2, 5}) {
    fabric.clear();
    for (int i = count; i > 0; --i) {  // descending: not in the order of the names
      const std::string name = "a node of " + std::to_string(count) + ": " + std::to_string(i);
      const IBNode& node = fabric.makeNode(name, static_cast<u_int64_t>(i), IB_CA_NODE, 1);
      EXPECT_EQ(fabric.NodeByName.at(name), &node);
      EXPECT_THROW(fabric.makeNode(name, 100, IB_CA_NODE, 1), std::invalid_argument);
      EXPECT_EQ(fabric.NodeByName.at(name), &node);
    }
    EXPECT_EQ(fabric.NodeByName.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(fabric.nodeCount(), static_cast<std::size_t>(count));
  }
}

TEST(FabricTest, NewNodesAreOrdinaryAndInTheSubFabric) {
  IBFabric fabric;
  IBNode& node = fabric.makeNode("S", 1, IB_SW_NODE, 1);
  const IBPort& port = fabric.makePort(node, 1);
  EXPECT_TRUE(node.in_sub_fabric);
  EXPECT_FALSE(node.isSpecialNode());
  EXPECT_EQ(node.getSpecialNodeType(), IB_NOT_SPECIAL_PORT);
  EXPECT_FALSE(node.isOpalSwitch());
  EXPECT_EQ(node.getAlternativeName(), "");
  EXPECT_EQ(port.port_state, IB_UNKNOWN_PORT_STATE);
  EXPECT_TRUE(port.getInSubFabric());
  EXPECT_FALSE(port.isFNMPort() || port.isFNM1Port() || port.isSpecialPort());
}

TEST(FabricTest, EverySpecialRoleMakesASpecialNode) {
  IBFabric fabric;
  IBNode& node = fabric.makeNode("H", 1, IB_CA_NODE, 1);
  for (const IBSpecialPortType role :
       {IB_SPECIAL_PORT_AN, IB_SPECIAL_PORT_ROUTER, IB_SPECIAL_PORT_ETH_GATEWAY}) {
    node.setSpecialNodeType(role);
    EXPECT_TRUE(node.isSpecialNode());
    EXPECT_EQ(node.getSpecialNodeType(), role);
  }
  node.setSpecialNodeType(IB_NOT_SPECIAL_PORT);
  EXPECT_FALSE(node.isSpecialNode());
}

TEST(FabricTest, DeviceNamesAreMadeHarmless) {
  IBFabric fabric;
  IBNode& node = fabric.makeNode("rack\n7\\", 1, IB_CA_NODE, 1);
  node.setAlternativeName("\"quoted\"");
  EXPECT_EQ(node.name, "rack%0A7%5C");
  EXPECT_EQ(node.getAlternativeName(), "%22quoted%22");
  EXPECT_EQ(fabric.NodeByName.count("rack%0A7%5C"), 1U);
  EXPECT_THROW(fabric.makeNode("rack\n7\\", 2, IB_CA_NODE, 1), std::invalid_argument);
}

TEST(FabricTest, TheFileHeaderIsCommentsAndNeverChanges) {
  std::ostringstream first;
  std::ostringstream second;
  IBFabric::WriteFileHeader(first, "//");
  IBFabric::WriteFileHeader(second, "//");
  EXPECT_EQ(first.str(), second.str());
  EXPECT_NE(first.str().find("fabscan " FABSCAN_VERSION), std::string::npos);
  std::istringstream lines(first.str());
  std::string line;
  while (std::getline(lines, line)) EXPECT_EQ(line.rfind("// ", 0), 0U) << line;
  EXPECT_EQ(first.str().back(), '\n');
}

}  // namespace
