#include "fabrics/link_differences.h"

#include <gmock/gmock.h>

namespace fabscan {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Three switches of four ports each, all ports active.
struct Switches {
  explicit Switches(u_int64_t next_guid = 0xa) {
    for (const char* name : {"A", "B", "C"}) {
      IBNode& node = fabric.makeNode(name, next_guid++, IB_SW_NODE, 4);
      for (phys_port_t number = 0; number <= 4; ++number) {
        fabric.makePort(node, number).port_state = IB_PORT_STATE_ACTIVE;
      }
    }
  }

  void Link(const char* one, phys_port_t port, const char* other, phys_port_t other_port) {
    IBNode& node = *fabric.NodeByName.at(one);
    IBNode& other_node = *fabric.NodeByName.at(other);
    node.getPort(port)->setRemotePort(RemotePort{other_node.guid, other_port});
    other_node.getPort(other_port)->setRemotePort(RemotePort{node.guid, port});
  }

  IBFabric fabric;
};

std::string Text(const LinkEnd& end) { return end.name + '[' + std::to_string(end.port) + ']'; }

std::vector<std::string> Differences(const Switches& first, const Switches& second,
                                     bool by_name = false) {
  std::vector<std::string> texts;
  for (const LinkDifference& link : LinkDifferences(first.fabric, second.fabric, by_name)) {
    switch (link.change) {
      case LinkDifference::Change::kMoved:
        texts.push_back(Text(link.end) + " from " + Text(link.before) + " to " + Text(link.after));
        break;
      case LinkDifference::Change::kLost:
        texts.push_back("lost " + Text(link.end) + ' ' + Text(link.before));
        break;
      case LinkDifference::Change::kAdded:
        texts.push_back("added " + Text(link.end) + ' ' + Text(link.after));
    }
  }
  return texts;
}

TEST(LinkDifferences, AMovedCableIsOneDifference) {
  Switches first;
  Switches second;
  first.Link("A", 3, "B", 1);
  second.Link("A", 3, "C", 1);
  EXPECT_THAT(Differences(first, second), ElementsAre("A[3] from B[1] to C[1]"));
  EXPECT_THAT(Differences(first, first), IsEmpty());
}

TEST(LinkDifferences, TheEndThatStayedIsNamedEvenIfItComesLater) {
  Switches first;
  Switches second;
  first.Link("A", 1, "C", 2);
  second.Link("B", 1, "C", 2);
  EXPECT_THAT(Differences(first, second), ElementsAre("C[2] from A[1] to B[1]"));
}

TEST(LinkDifferences, TwoCrossedCablesAreTwo) {
  Switches first;
  Switches second;
  first.Link("A", 1, "B", 1);
  first.Link("A", 2, "C", 1);
  second.Link("A", 1, "C", 1);
  second.Link("A", 2, "B", 1);
  EXPECT_THAT(Differences(first, second),
              ElementsAre("A[1] from B[1] to C[1]", "A[2] from C[1] to B[1]"));
}

TEST(LinkDifferences, LostLinksComeBeforeAddedOnes) {
  Switches first;
  Switches second;
  first.Link("B", 1, "C", 1);
  second.Link("A", 1, "A", 2);
  EXPECT_THAT(Differences(first, second), ElementsAre("lost B[1] C[1]", "added A[1] A[2]"));
}

TEST(LinkDifferences, ALinkThatOneEndKnowsIsALink) {
  Switches first;
  Switches second;
  first.Link("A", 1, "B", 1);
  second.fabric.NodeByName.at("B")->getPort(1)->setRemotePort(RemotePort{0xa, 1});
  EXPECT_THAT(Differences(first, second), IsEmpty());
}

TEST(LinkDifferences, APeerOutsideIsNamedByItsGuid) {
  Switches first;
  Switches second;
  first.fabric.NodeByName.at("B")->getPort(1)->setRemotePort(RemotePort{0x77, 9});
  EXPECT_THAT(Differences(first, second), ElementsAre("lost B[1] 0x0000000000000077[9]"));
}

TEST(LinkDifferences, NodesCanBeMatchedByName) {
  Switches first;
  Switches others(0x50);
  first.Link("A", 1, "B", 1);
  others.Link("A", 1, "B", 1);
  EXPECT_THAT(Differences(first, others, true), IsEmpty());
  EXPECT_THAT(Differences(first, others), ElementsAre("lost A[1] B[1]", "added A[1] B[1]"));
}

}  // namespace
}  // namespace fabscan
