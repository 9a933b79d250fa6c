#include "cli/selection/node_matchers.h"

#include <gtest/gtest.h>

#include "cli/command.h"

namespace fabscan {
namespace {

class NodeMatchersTest : public testing::Test {
 protected:
  IBNode& Make(const char* name, IBNodeType type, u_int16_t device_id, u_int32_t revision = 0) {
    const u_int64_t guid = 0x5a1e0c0000000000 + fabscan_.discovered_fabric.nodeCount();
    IBNode& node = fabscan_.discovered_fabric.makeNode(name, guid, type, 1);
    SMP_NodeInfo& info = fabscan_.fabric_extended_info.put<SMP_NodeInfo>(node);
    info.DeviceID = device_id;
    info.revision = revision;
    return node;
  }

  bool HasModel(const IBNode& node, const char* word) {
    return MatchModel(word, NameModels(fabscan_, ""), fabscan_)(node);
  }

  Fabscan fabscan_;
};

TEST_F(NodeMatchersTest, NamesByPattern) {
  const IBNode& node = Make("leaf-01/U1", IB_SW_NODE, 1);
  for (const char* pattern :
       {"leaf-01/U1", "*", "leaf*", "leaf-?\?/U1", "leaf-0[1-3]*", "*/U[!2]"}) {
    EXPECT_TRUE(MatchName(pattern)(node)) << pattern;
  }
  for (const char* pattern : {"", "leaf", "Leaf*", "leaf-?/U1", "leaf-0[2-3]*", "\\*"}) {
    EXPECT_FALSE(MatchName(pattern)(node)) << pattern;
  }
}

TEST_F(NodeMatchersTest, TypesByWordIgnoringCase) {
  const IBNode& a_switch = Make("S", IB_SW_NODE, 1);
  const IBNode& adapter = Make("H", IB_CA_NODE, 1);
  const IBNode& router = Make("R", IB_RTR_NODE, 1);
  const IBNode& unknown = Make("U", IB_UNKNOWN_NODE_TYPE, 1);
  const struct {
    const char* word;
    const IBNode& node;
  } rows[] = {{"SW", a_switch},     {"sw", a_switch},    {"Switch", a_switch}, {"CA", adapter},
              {"adapter", adapter}, {"hca", adapter},    {"HCA", adapter},     {"RTR", router},
              {"router", router},   {"unknown", unknown}};
  for (const auto& row : rows) {
    const NodeMatcher matches = MatchType(row.word);
    for (const IBNode* node : {&a_switch, &adapter, &router, &unknown}) {
      EXPECT_EQ(matches(*node), node == &row.node) << row.word << ' ' << node->name;
    }
  }
}

TEST_F(NodeMatchersTest, RefusesOtherTypes) {
  for (const char* word : {"", "S", "SWITCHES", "sw "}) {
    try {
      MatchType(word);
      ADD_FAILURE() << word;
    } catch (const CommandError& error) {
      EXPECT_EQ(error.what(), "--type: '" + std::string(word) +
                                  "' is not a node type; expected SW (switch), CA (adapter, HCA) "
                                  "or RTR (router)");
      EXPECT_EQ(error.status(), kWrongUsage);
    }
  }
}

TEST_F(NodeMatchersTest, ModelsByPrefixIgnoringCase) {
  const IBNode& first = Make("S1", IB_SW_NODE, 0xd2f0, 1);
  const IBNode& second = Make("S2", IB_SW_NODE, 0xd2f0, 2);
  const IBNode& third = Make("S3", IB_SW_NODE, 0xd2f0, 2);
  for (const char* word : {"SW_d2f0", "sw_D2F0"}) {
    EXPECT_TRUE(HasModel(first, word)) << word;
    EXPECT_FALSE(HasModel(second, word)) << word;
  }
  EXPECT_FALSE(HasModel(first, "SW_d2f0_2"));
  EXPECT_TRUE(HasModel(second, "SW_d2f0_2"));
  EXPECT_TRUE(HasModel(third, "SW_d2f0_2"));
  for (const char* word : {"", "SW", "SW_d2f", "SW_d2f0_", "SW_d2f0_3", "d2f0", "HCA_d2f0"}) {
    for (const IBNode* node : {&first, &second}) EXPECT_FALSE(HasModel(*node, word)) << word;
  }
}

TEST_F(NodeMatchersTest, ModelsByDeviceId) {
  const IBNode& first = Make("S1", IB_SW_NODE, 0xd2f0, 1);
  const IBNode& second = Make("S2", IB_SW_NODE, 0xd2f0, 2);
  const IBNode& other = Make("S3", IB_SW_NODE, 0x10);
  const IBNode& bare = fabscan_.discovered_fabric.makeNode("bare", 9, IB_SW_NODE, 1);
  for (const char* word : {"0xd2f0", "0XD2F0", "0x0000d2f0"}) {
    EXPECT_TRUE(HasModel(first, word)) << word;
    EXPECT_TRUE(HasModel(second, word)) << word;
    EXPECT_FALSE(HasModel(other, word)) << word;
    EXPECT_FALSE(HasModel(bare, word)) << word;
  }
  for (const char* word : {"0x", "0x1d2f0", "0xd2f0 ", "0x-1", "0xg"}) {
    EXPECT_FALSE(HasModel(first, word)) << word;
  }
}

}  // namespace
}  // namespace fabscan
