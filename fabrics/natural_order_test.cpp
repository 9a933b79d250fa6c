#include "fabrics/natural_order.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>

namespace fabscan {
namespace {

/// Each comes before all that follow it.
const std::vector<std::string> kOrdered = {
    "",
    "-",
    "0",
    "00",
    "1",
    "01",
    "2",
    "9",
    "10",
    "099",
    "18446744073709551615",
    "18446744073709551616",
    "100000000000000000000000000000000000000000",
    "A2",
    "a",
    "a-1",
    "a1",
    "a1-",
    "a1b1",
    "a1b01",
    "a01b1",
    "a01b01",
    "a1b2",
    "a2",
    "a10",
    "aa",
    "leaf",
    "leaf 2",
    "leaf2",
    "leaf2/U1",
    "leaf2/U10",
    "leaf10",
    "\xc3\xa4",
    "\xff",
};

TEST(NaturalOrder, ComparesNumbersByValueAndTheRestByBytes) {
  for (std::size_t i = 0; i < kOrdered.size(); ++i) {
    for (std::size_t j = 0; j < kOrdered.size(); ++j) {
      EXPECT_EQ(NaturallyBefore(kOrdered[i], kOrdered[j]), i < j)
          << '"' << kOrdered[i] << "\" and \"" << kOrdered[j] << '"';
    }
  }
}

TEST(NaturalOrder, IsTotal) {
  std::vector<std::string> texts = {""};
  const std::string alphabet = "01/9:a";
  for (std::size_t begin = 0, length = 0; length < 4; ++length) {
    const std::size_t end = texts.size();
    for (std::size_t i = begin; i < end; ++i) {
      for (const char c : alphabet) texts.push_back(texts[i] + c);
    }
    begin = end;
  }
  std::vector<std::string> sorted = texts;
  std::sort(sorted.begin(), sorted.end(), [](const std::string& one, const std::string& other) {
    return NaturallyBefore(one, other);
  });
  for (std::size_t i = 0; i < sorted.size(); i += 7) {
    for (std::size_t j = 0; j < sorted.size(); ++j) {
      ASSERT_EQ(NaturallyBefore(sorted[i], sorted[j]), i < j) << sorted[i] << ' ' << sorted[j];
    }
  }
}

TEST(NaturalOrder, SortsNodes) {
  IBFabric fabric;
  const IBNode& ten = fabric.makeNode("leaf10", 1, IB_SW_NODE, 1);
  const IBNode& two = fabric.makeNode("leaf2", 2, IB_SW_NODE, 1);
  const IBNode& spine = fabric.makeNode("spine", 3, IB_SW_NODE, 1);
  EXPECT_THAT(NodesInNaturalOrder(fabric), testing::ElementsAre(&two, &ten, &spine));

  IBFabric second;
  const IBNode& same_name = second.makeNode("leaf10", 0, IB_SW_NODE, 1);
  std::vector<const IBNode*> nodes = {&ten, &spine, &same_name, &two};
  SortNaturally(nodes);
  EXPECT_THAT(nodes, testing::ElementsAre(&two, &same_name, &ten, &spine));
}

}  // namespace
}  // namespace fabscan
