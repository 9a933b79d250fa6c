#include "discovery/port_index.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace fabscan {
namespace {

constexpr u_int64_t kLeaf = 0x5a1e0c0300a00000;
constexpr u_int64_t kSpine = 0x5a1e0c0300a00001;

void AddAll(PortIndex& index, u_int64_t guid, std::initializer_list<int> numbers) {
  for (const int number : numbers) {
    ASSERT_TRUE(index.Add({guid, static_cast<u_int8_t>(number)})) << number;
  }
}

TEST(PortIndex, FindsPortsInAscendingOrDescendingOrder) {
  PortIndex index(2);
  AddAll(index, kLeaf, {0, 1, 2, 3});
  AddAll(index, kSpine, {9, 8, 7});
  EXPECT_EQ(index.Find({kLeaf, 0}), 0U);
  EXPECT_EQ(index.Find({kLeaf, 3}), 3U);
  EXPECT_EQ(index.Find({kSpine, 9}), 4U);
  EXPECT_EQ(index.Find({kSpine, 7}), 6U);
}

TEST(PortIndex, FindsNoOtherPort) {
  PortIndex index(2);
  EXPECT_EQ(index.Find({kLeaf, 0}), PortIndex::kNone);
  AddAll(index, kLeaf, {1, 2, 3});
  AddAll(index, kSpine, {9, 8, 7});
  EXPECT_EQ(index.Find({kLeaf, 0}), PortIndex::kNone);
  EXPECT_EQ(index.Find({kLeaf, 4}), PortIndex::kNone);
  EXPECT_EQ(index.Find({kSpine, 10}), PortIndex::kNone);
  EXPECT_EQ(index.Find({kSpine, 6}), PortIndex::kNone);
  EXPECT_EQ(index.Find({kSpine + 1, 7}), PortIndex::kNone);
}

TEST(PortIndex, FindsPortsInAnyOrder) {
  PortIndex index(2);
  AddAll(index, kLeaf, {5, 6, 2, 9, 8, 1});
  AddAll(index, kSpine, {4});
  AddAll(index, kLeaf, {7, 4, 3, 255, 0});
  const u_int32_t places[] = {11, 5, 2, 9, 8, 0, 1, 7, 4, 3};
  for (u_int8_t number = 0; number < 10; ++number) {
    EXPECT_EQ(index.Find({kLeaf, number}), places[number]) << int{number};
  }
  EXPECT_EQ(index.Find({kLeaf, 255}), 10U);
  EXPECT_EQ(index.Find({kLeaf, 10}), PortIndex::kNone);
  EXPECT_EQ(index.Find({kSpine, 4}), 6U);
}

TEST(PortIndex, FindsInterleavedPortsOfSwitches) {
  PortIndex index(2);
  for (u_int8_t number = 0; number < 64; ++number) {
    ASSERT_TRUE(index.Add({kLeaf, number}));
    ASSERT_TRUE(index.Add({kSpine, number}));
  }
  for (u_int8_t number = 0; number < 64; ++number) {
    ASSERT_EQ(index.Find({kLeaf, number}), 2U * number);
    ASSERT_EQ(index.Find({kSpine, number}), 2U * number + 1);
    ASSERT_FALSE(index.Add({kLeaf, number}));
  }
  EXPECT_EQ(index.Find({kLeaf, 64}), PortIndex::kNone);
}

TEST(PortIndex, HoldsAllNumbersOfAGuid) {
  PortIndex index(1);
  for (int number = 255; number >= 0; --number) {
    ASSERT_TRUE(index.Add({kLeaf, static_cast<u_int8_t>(number)}));
  }
  for (int number = 0; number <= 255; ++number) {
    ASSERT_EQ(index.Find({kLeaf, static_cast<u_int8_t>(number)}),
              static_cast<u_int32_t>(255 - number));
    ASSERT_FALSE(index.Add({kLeaf, static_cast<u_int8_t>(number)}));
  }
}

TEST(PortIndex, AcceptsAGuidOfZero) {
  PortIndex index(1);
  AddAll(index, 0, {1, 2});
  EXPECT_FALSE(index.Add({0, 1}));
  EXPECT_EQ(index.Find({0, 2}), 1U);
}

TEST(PortIndex, RefusesDuplicateKeys) {
  PortIndex index(2);
  AddAll(index, kLeaf, {1, 2, 3, 7});
  EXPECT_FALSE(index.Add({kLeaf, 7}));
  EXPECT_FALSE(index.Add({kLeaf, 2}));
  AddAll(index, kSpine, {4});
  EXPECT_FALSE(index.Add({kLeaf, 1}));
  AddAll(index, kLeaf, {5});
  AddAll(index, kSpine, {5});
  EXPECT_EQ(index.Find({kLeaf, 5}), 5U);
  EXPECT_EQ(index.Find({kSpine, 5}), 6U);
}

}  // namespace
}  // namespace fabscan
