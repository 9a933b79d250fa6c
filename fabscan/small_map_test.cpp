#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "port_walk.h"

namespace fabscan::generator {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Map : public SmallMap<u_int8_t, char, 256> {
 public:
  void SetAll(const std::vector<u_int8_t>& numbers) {
    for (const u_int8_t number : numbers) Set(number, 'a');
  }
};

std::vector<std::string> Entries(const Map& map) {
  std::vector<std::string> entries;
  for (const auto& [number, value] : map) entries.push_back(std::to_string(number) + value);
  return entries;
}

TEST(SmallMap, IsOrderedByNumber) {
  Map map;
  EXPECT_TRUE(map.empty());
  EXPECT_THAT(Entries(map), IsEmpty());
  map.SetAll({7, 255, 0, 8});
  EXPECT_FALSE(map.empty());
  EXPECT_THAT(Entries(map), ElementsAre("0a", "7a", "8a", "255a"));
}

TEST(SmallMap, ALaterValueReplacesTheEarlierOne) {
  Map map;
  map.SetAll({7, 9, 8});
  map.Set(9, 'b');
  map.Set(7, 'c');
  EXPECT_THAT(Entries(map), ElementsAre("7c", "8a", "9b"));
}

TEST(SmallMap, HoldsEveryNumber) {
  Map map;
  for (unsigned number = 256; number-- > 0;) map.Set(static_cast<u_int8_t>(number), 'a');
  ASSERT_EQ(Entries(map).size(), 256U);
  EXPECT_EQ(Entries(map)[100], "100a");
}

TEST(SmallMap, IsCopied) {
  Map map;
  map.Set(3, 'a');
  Map copy = map;
  map.Set(1, 'b');
  EXPECT_THAT(Entries(copy), ElementsAre("3a"));
  copy = map;
  EXPECT_THAT(Entries(copy), ElementsAre("1b", "3a"));
}

}  // namespace
}  // namespace fabscan::generator
