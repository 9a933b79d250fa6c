#include "discovery/node_names.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace fabscan {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> NamesOf(const std::vector<NodeDescription>& nodes) {
  const NodeNames names(nodes);
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < nodes.size(); ++i) texts.emplace_back(names[i]);
  return texts;
}

TEST(NodeNames, UniqueDescriptionsAreNames) {
  EXPECT_THAT(NamesOf({{1, "spine"}, {2, "leaf"}}), ElementsAre("spine", "leaf"));
}

TEST(NodeNames, SharedDescriptionsGetTheGuid) {
  EXPECT_THAT(NamesOf({{0x5a1e0c0300a1b2c3, "spine"}, {2, "leaf"}, {3, "spine"}}),
              ElementsAre("spine [0x5a1e0c0300a1b2c3]", "leaf", "spine [0x0000000000000003]"));
}

TEST(NodeNames, EmptyDescriptionsBecomeTheGuid) {
  EXPECT_THAT(NamesOf({{1, ""}, {2, ""}, {3, "x"}}),
              ElementsAre("[0x0000000000000001]", "[0x0000000000000002]", "x"));
}

TEST(NodeNames, DescriptionsThatLookLikeGeneratedNamesStayDistinct) {
  EXPECT_THAT(NamesOf({{1, "x"},
                       {2, "x"},
                       {3, "x [0x0000000000000001]"},
                       {4, "x [0x0000000000000001] [0x0000000000000003]"}}),
              ElementsAre("x [0x0000000000000001]", "x [0x0000000000000002]",
                          "x [0x0000000000000001] [0x0000000000000003]",
                          "x [0x0000000000000001] [0x0000000000000003] [0x0000000000000004]"));
}

TEST(NodeNames, DoNotDependOnTheOrderOfTheNodes) {
  std::vector<NodeDescription> nodes = {
      {1, "x"}, {2, "x"}, {3, "x [0x0000000000000001]"}, {4, ""}, {5, "y"}};
  const std::vector<std::string> names = NamesOf(nodes);
  std::vector<std::size_t> order = {0, 1, 2, 3, 4};
  do {
    std::vector<NodeDescription> shuffled;
    for (const std::size_t i : order) shuffled.push_back(nodes[i]);
    const std::vector<std::string> again = NamesOf(shuffled);
    for (std::size_t i = 0; i < order.size(); ++i) EXPECT_EQ(again[i], names[order[i]]);
  } while (std::next_permutation(order.begin(), order.end()));
}

}  // namespace
}  // namespace fabscan
