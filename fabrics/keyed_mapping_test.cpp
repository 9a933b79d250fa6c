#include "fabrics/keyed_mapping.h"

#include <gtest/gtest.h>

#include <set>

namespace fabscan {
namespace {

TEST(KeyedMappingTest, TheSameKeyGivesTheSameReplacements) {
  const KeyedMapping one("secret");
  const KeyedMapping other("secret");
  EXPECT_EQ(one.Guid(0x5a1e0c0300001234), other.Guid(0x5a1e0c0300001234));
  EXPECT_EQ(one.Name("S1"), other.Name("S1"));
  EXPECT_EQ(one.MacAddress(0x5a1e0c001234), other.MacAddress(0x5a1e0c001234));
  EXPECT_EQ(one.QueueKey(0x1234), other.QueueKey(0x1234));
}

TEST(KeyedMappingTest, AnotherKeyGivesOther) {
  const KeyedMapping one("secret");
  const KeyedMapping other("secreu");
  const KeyedMapping unknown;
  const KeyedMapping unknown_too;
  std::set<u_int64_t> guids;
  std::set<std::string> names;
  for (const KeyedMapping* mapping : {&one, &other, &unknown, &unknown_too}) {
    guids.insert(mapping->Guid(1));
    names.insert(mapping->Name("S1"));
  }
  EXPECT_EQ(guids.size(), 4U);
  EXPECT_EQ(names.size(), 4U);
  EXPECT_EQ(guids.count(1), 0U);
}

TEST(KeyedMappingTest, DistinctStaysDistinct) {
  const KeyedMapping mapping;
  std::set<u_int64_t> guids;
  for (u_int64_t guid = 1; guid <= 10000; ++guid) guids.insert(mapping.Guid(guid));
  EXPECT_EQ(guids.size(), 10000U);
}

TEST(KeyedMappingTest, WhatSaysNothingStays) {
  const KeyedMapping mapping;
  EXPECT_EQ(mapping.Guid(0), 0U);
  EXPECT_EQ(mapping.GidHalf(0), 0U);
  EXPECT_EQ(mapping.GidHalf(0xfe80000000000000), 0xfe80000000000000U);
  EXPECT_NE(mapping.GidHalf(0xfe80000000000001), 0xfe80000000000001U);
  EXPECT_NE(mapping.Guid(0xfe80000000000000), 0xfe80000000000000U);
  EXPECT_EQ(mapping.MacAddress(0), 0U);
  EXPECT_EQ(mapping.QueueKey(0), 0U);
  EXPECT_EQ(mapping.QueueKey(0x80010000), 0x80010000U);
  EXPECT_EQ(mapping.Name(""), "");
}

TEST(KeyedMappingTest, Forms) {
  const KeyedMapping mapping;
  EXPECT_EQ(mapping.GidHalf(5), mapping.Guid(5)) << "a GUID in a GID is the node's";
  EXPECT_LT(mapping.MacAddress(1), u_int64_t{1} << 48U);
  EXPECT_EQ(mapping.Name("S1").size(), 21U);
  EXPECT_EQ(mapping.Name("S1").rfind("node-", 0), 0U);
}

}  // namespace
}  // namespace fabscan
