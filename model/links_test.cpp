#include "model/links.h"

#include <gtest/gtest.h>

namespace fabscan {
namespace {

class LinksTest : public ::testing::Test {
 protected:
  LinksTest() {
    for (IBNode* node : {&a_, &b_}) {
      for (phys_port_t number = 0; number <= 4; ++number) fabric_.makePort(*node, number);
    }
  }

  static void Link(IBNode& node, phys_port_t number, u_int64_t to, phys_port_t to_number) {
    node.getPort(number)->setRemotePort(RemotePort{to, to_number});
  }
  void LinkBoth(phys_port_t of_a, phys_port_t of_b) {
    Link(a_, of_a, b_.guid, of_b);
    Link(b_, of_b, a_.guid, of_a);
  }

  std::string Contradiction() {
    const auto found = FindLinkContradiction(fabric_);
    if (!found) return "none";
    return found->node->name + '/' + std::to_string(found->port->num) + ": " + found->text;
  }

  IBFabric fabric_;
  IBNode& a_ = fabric_.makeNode("A", 0xa, IB_SW_NODE, 4);
  IBNode& b_ = fabric_.makeNode("B", 0xb, IB_SW_NODE, 4);
};

TEST_F(LinksTest, BothEndsAgree) {
  EXPECT_EQ(Contradiction(), "none");
  LinkBoth(1, 2);
  LinkBoth(2, 1);
  Link(a_, 3, a_.guid, 4);  // a cable from a switch to itself
  Link(a_, 4, a_.guid, 3);
  EXPECT_EQ(Contradiction(), "none");
  EXPECT_EQ(RemotePortIn(fabric_, *a_.getPort(1)), b_.getPort(2));
  EXPECT_EQ(RemotePortIn(fabric_, *b_.getPort(3)), nullptr);
}

TEST_F(LinksTest, TheRemotePortMayBeMissing) {
  Link(a_, 1, 0xc, 7);
  IBNode& d = fabric_.makeNode("D", 0xd, IB_CA_NODE, 1);  // without its port
  Link(a_, 2, d.guid, 1);
  EXPECT_EQ(Contradiction(), "none");
  EXPECT_EQ(RemotePortIn(fabric_, *a_.getPort(1)), nullptr);
  EXPECT_EQ(RemotePortIn(fabric_, *a_.getPort(2)), nullptr);
}

TEST_F(LinksTest, AMissingRemotePortHasOneLink) {
  Link(a_, 1, 0xc, 7);
  Link(b_, 3, 0xc, 7);
  EXPECT_EQ(Contradiction(),
            "B/3: port 7 of 0x000000000000000c is the peer of another port too; correct one of the "
            "two");
}

TEST_F(LinksTest, OneEndDoesNotKnowTheLink) {
  Link(a_, 1, b_.guid, 2);
  EXPECT_EQ(Contradiction(),
            "A/1: port 2 of \"B\" has no peer; add this port there, or remove the peer here");
}

TEST_F(LinksTest, OneEndHasAnotherLink) {
  LinkBoth(1, 2);
  Link(a_, 3, b_.guid, 2);
  EXPECT_EQ(Contradiction(),
            "A/3: port 2 of \"B\" has another peer, port 1 of \"A\"; correct one of the two");
  Link(b_, 2, 0xc, 9);
  EXPECT_EQ(Contradiction(),
            "A/1: port 2 of \"B\" has another peer, port 9 of 0x000000000000000c; correct one of "
            "the two");
}

TEST_F(LinksTest, ImpossiblePorts) {
  Link(a_, 1, b_.guid, 5);
  EXPECT_EQ(Contradiction(), "A/1: \"B\" has 4 ports, not a port 5; correct one of the two");
  Link(a_, 1, b_.guid, 0);
  EXPECT_EQ(Contradiction(), "A/1: a link does not end at port 0; correct the number");
  Link(a_, 1, a_.guid, 1);
  EXPECT_EQ(Contradiction(), "A/1: the port is its own peer; correct or remove it");
  Link(a_, 0, b_.guid, 1);
  EXPECT_EQ(Contradiction(), "A/0: port 0 of a switch has no link; remove it");
}

TEST_F(LinksTest, PortsOfIncompleteNodesAreNotCompared) {
  Link(a_, 1, b_.guid, 2);
  EXPECT_FALSE(FindLinkContradiction(fabric_, [](const IBNode& node) { return node.name == "A"; }));
}

TEST_F(LinksTest, AreNotKnownIfPortsAreUpAndNoneHasALink) {
  EXPECT_TRUE(KnowsLinks(fabric_));
  a_.getPort(0)->port_state = IB_PORT_STATE_ACTIVE;
  a_.getPort(1)->port_state = IB_PORT_STATE_DOWN;
  EXPECT_TRUE(KnowsLinks(fabric_));
  a_.getPort(2)->port_state = IB_PORT_STATE_INIT;
  EXPECT_FALSE(KnowsLinks(fabric_));
  Link(a_, 2, 0xc, 1);
  EXPECT_TRUE(KnowsLinks(fabric_));
}

}  // namespace
}  // namespace fabscan
