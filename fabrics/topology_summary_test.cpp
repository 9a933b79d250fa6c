#include "fabrics/topology_summary.h"

#include <gmock/gmock.h>

#include <string>

namespace fabscan {
namespace {

using ::testing::ElementsAre;

/// Builds a fabric link by link; every link is 4x, HDR to adapters and NDR between switches.
class Tree : public ::testing::Test {
 protected:
  void Node(const std::string& name, IBNodeType type, phys_port_t ports) {
    IBNode& node = fabric_.makeNode(name, fabric_.nodeCount() + 1, type, ports);
    for (phys_port_t number = 1; number <= ports; ++number) fabric_.makePort(node, number);
  }

  void Link(const std::string& one, const std::string& other, IBLinkSpeed speed) {
    IBNode& node = *fabric_.NodeByName.at(one);
    IBNode& other_node = *fabric_.NodeByName.at(other);
    IBPort& port = FreePort(node);
    IBPort& other_port = FreePort(other_node);
    port.setRemotePort(RemotePort{other_node.guid, other_port.num});
    other_port.setRemotePort(RemotePort{node.guid, port.num});
    for (IBPort* end : {&port, &other_port}) {
      end->link_width = IB_LINK_WIDTH_4X;
      end->link_speed = speed;
    }
  }

  static IBPort& FreePort(const IBNode& node) {
    for (IBPort* port : node.Ports) {
      if (port != nullptr && !port->getRemotePort()) return *port;
    }
    throw std::logic_error("no free port");
  }

  /// Two spines, four leaves with two links up and four adapters each, and the third leaf one less.
  void MakeTree() {
    for (const char* spine : {"s1", "s2"}) Node(spine, IB_SW_NODE, 8);
    for (const char* leaf : {"l1", "l2", "l3", "l4"}) {
      Node(leaf, IB_SW_NODE, 8);
      for (const char* spine : {"s1", "s2"}) Link(leaf, spine, IB_LINK_SPEED_NDR);
      for (int i = 1; i <= (leaf == std::string("l3") ? 3 : 4); ++i) {
        const std::string host = leaf + ("-h" + std::to_string(i));
        Node(host, IB_CA_NODE, 1);
        Link(leaf, host, IB_LINK_SPEED_HDR);
      }
    }
  }

  Fabscan fabscan_;
  IBFabric& fabric_ = fabscan_.discovered_fabric;
};

std::string Text(const SwitchGroup& group) {
  std::string text = std::to_string(group.level) + ": " + std::to_string(group.down) + " down " +
                     std::to_string(group.up) + " up " + std::to_string(group.sideways) +
                     " side, " + std::to_string(static_cast<int>(group.oversubscription() * 100)) +
                     " %,";
  for (const IBNode* node : group.switches) text += ' ' + node->name;
  return text;
}

std::string Text(const LinkGroup& group) {
  return std::to_string(group.lower) + '-' + std::to_string(group.upper) + ' ' +
         std::string(group.width) + ' ' + std::string(group.speed) + ' ' +
         std::to_string(group.links);
}

template <class Group>
std::vector<std::string> Texts(const std::vector<Group>& groups) {
  std::vector<std::string> texts;
  for (const Group& group : groups) texts.push_back(Text(group));
  return texts;
}

TEST_F(Tree, SwitchesThatAreAlikeAreOneGroup) {
  MakeTree();
  const TopologySummary summary = SummariseTopology(fabscan_);
  EXPECT_THAT(Texts(summary.switches), ElementsAre("2: 4 down 0 up 0 side, 0 %, s1 s2",
                                                   "1: 4 down 2 up 0 side, 100 %, l1 l2 l4",
                                                   "1: 3 down 2 up 0 side, 75 %, l3"));
  EXPECT_THAT(Texts(summary.links), ElementsAre("1-2 4x NDR 8", "0-1 4x HDR 15"));
  EXPECT_EQ(summary.adapters, 15U);
  EXPECT_EQ(summary.outside, 0U);
  ASSERT_EQ(summary.parts.size(), 1U);
  EXPECT_EQ(summary.parts[0].size(), fabric_.nodeCount());
}

TEST_F(Tree, PartsAreNotConnected) {
  MakeTree();
  Node("alone", IB_SW_NODE, 2);
  Node("x1", IB_SW_NODE, 2);
  Node("x2", IB_SW_NODE, 2);
  Link("x1", "x2", IB_LINK_SPEED_EDR);
  FreePort(*fabric_.NodeByName.at("x1")).setRemotePort(RemotePort{0x99, 1});
  const TopologySummary summary = SummariseTopology(fabscan_);
  ASSERT_EQ(summary.parts.size(), 3U);
  EXPECT_EQ(summary.parts[1].size(), 2U);
  EXPECT_EQ(summary.parts[1][0]->name, "x1");
  EXPECT_EQ(summary.parts[2][0]->name, "alone");
  EXPECT_EQ(summary.outside, 1U);
  // Without a path to an adapter, a switch has no level.
  EXPECT_EQ(Texts(summary.switches).back(), "-1: 0 down 0 up 2 side, 0 %, x1");
}

TEST_F(Tree, SpecialNodesAndRoutersDoNotMakeLevels) {
  MakeTree();
  Node("aggregation", IB_CA_NODE, 1);
  fabric_.NodeByName.at("aggregation")->setSpecialNodeType(IB_SPECIAL_PORT_AN);
  Node("router", IB_RTR_NODE, 1);
  Link("s1", "aggregation", IB_LINK_SPEED_HDR);
  Link("s1", "router", IB_LINK_SPEED_HDR);
  EXPECT_EQ(Texts(SummariseTopology(fabscan_).switches)[0], "2: 4 down 0 up 0 side, 0 %, s2");
}

}  // namespace
}  // namespace fabscan
