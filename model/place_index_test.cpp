#include <gtest/gtest.h>
#include <infiniband/tessel/place_index.h>

namespace fabscan {
namespace {

TEST(PlaceIndex, FindsEveryEntryOfAnyNumber) {
  PlaceIndex<u_int64_t> index;
  constexpr u_int32_t kEntries = 5000;
  for (u_int32_t place = 0; place < kEntries; ++place) {
    EXPECT_EQ(index.Find(3 * place), index.kNone);
    ASSERT_TRUE(index.Insert(3 * place, place));
  }
  for (u_int32_t place = 0; place < kEntries; ++place) {
    ASSERT_EQ(index.Find(3 * place), place);
    ASSERT_EQ(index.Find(3 * place + 1), index.kNone);
  }
}

TEST(PlaceIndex, KeepsTheFirstEntryOfAKey) {
  PlaceIndex<std::string_view> index(2);
  EXPECT_TRUE(index.Insert("spine", 0));
  EXPECT_TRUE(index.Insert("", 1));
  EXPECT_FALSE(index.Insert("spine", 2));
  EXPECT_EQ(index.Find("spine"), 0U);
  EXPECT_EQ(index.Find(""), 1U);
  EXPECT_EQ(index.Find("spin"), index.kNone);
}

/// Keys that all hash to the same slot.
struct Crowded {
  u_int32_t number;
  bool operator==(const Crowded& other) const { return number == other.number; }
};
u_int64_t HashOf(const Crowded&) { return ~u_int64_t{0}; }

TEST(PlaceIndex, DistinguishesKeysWithEqualHashes) {
  PlaceIndex<Crowded> index;
  for (u_int32_t place = 0; place < 100; ++place) ASSERT_TRUE(index.Insert({place}, place));
  for (u_int32_t place = 0; place < 100; ++place) {
    ASSERT_EQ(index.Find({place}), place);
    ASSERT_FALSE(index.Insert({place}, 0));
  }
  EXPECT_EQ(index.Find({100}), index.kNone);
}

TEST(PlaceIndex, ForgetsClearedEntries) {
  PlaceIndex<u_int64_t> index;
  ASSERT_TRUE(index.Insert(1, 0));
  index.Clear();
  EXPECT_EQ(index.Find(1), index.kNone);
  EXPECT_TRUE(index.Insert(1, 7));
  EXPECT_EQ(index.Find(1), 7U);
}

}  // namespace
}  // namespace fabscan
