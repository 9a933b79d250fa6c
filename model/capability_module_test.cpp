#include <gtest/gtest.h>
#include <infiniband/fabscan/fabscan_capability_module.h>

#include <algorithm>
#include <iterator>

namespace {

class CapabilityModuleTest : public testing::Test {
 protected:
  IBFabric fabric_;
  IBNode& node_ = fabric_.makeNode("S", 1, IB_SW_NODE, 1);
  IBNode& other_ = fabric_.makeNode("T", 2, IB_SW_NODE, 1);
  CapabilityModule module_;
};

TEST_F(CapabilityModuleTest, BitsAreInTheWordOfTheirNumber) {
  for (const unsigned bit : {0U, 1U, 31U, 32U, 63U, 64U, 95U, 96U, 127U}) {
    capability_mask_t mask = {};
    mask.mask[bit / 32] = 1U << (bit % 32);
    module_.put(node_, false, mask);
    module_.put(node_, true, mask);
    for (unsigned asked = 0; asked < 256; ++asked) {
      const auto number = static_cast<u_int8_t>(asked);
      EXPECT_EQ(module_.IsSupportedSMPCapability(&node_, number), asked == bit) << asked;
      EXPECT_EQ(module_.IsSupportedGMPCapability(&node_, number), asked == bit) << asked;
    }
  }
}

TEST_F(CapabilityModuleTest, BitsBeyondTheMaskAreNotSupported) {
  capability_mask_t all = {};
  std::fill(std::begin(all.mask), std::end(all.mask), 0xFFFFFFFFU);
  module_.put(node_, false, all);
  EXPECT_TRUE(module_.IsSupportedSMPCapability(&node_, 127));
  EXPECT_FALSE(module_.IsSupportedSMPCapability(&node_, 128));
  EXPECT_FALSE(module_.IsSupportedSMPCapability(&node_, 255));
}

TEST_F(CapabilityModuleTest, SMPAndGMPMasksAreSeparateAndPerNode) {
  capability_mask_t mask = {{1, 0, 0, 0}};
  module_.put(node_, false, mask);
  EXPECT_TRUE(module_.IsSupportedSMPCapability(&node_, 0));
  EXPECT_FALSE(module_.IsSupportedGMPCapability(&node_, 0));
  EXPECT_FALSE(module_.IsSupportedSMPCapability(&other_, 0));
  EXPECT_NE(module_.find(node_, false), nullptr);
  EXPECT_EQ(module_.find(node_, true), nullptr);
}

TEST_F(CapabilityModuleTest, GetCapabilityFillsTheWholeMask) {
  module_.put(node_, true, capability_mask_t{{1, 2, 3, 0x80000000U}});
  capability_mask_t mask = {};
  ASSERT_EQ(module_.GetCapability(&node_, true, mask), 0);
  EXPECT_EQ(mask.mask[0], 1U);
  EXPECT_EQ(mask.mask[1], 2U);
  EXPECT_EQ(mask.mask[2], 3U);
  EXPECT_EQ(mask.mask[3], 0x80000000U);
}

TEST_F(CapabilityModuleTest, AnUncollectedMaskIsAnErrorAndKeepsTheCallersMask) {
  module_.put(node_, false, capability_mask_t{{1, 0, 0, 0}});
  capability_mask_t mask = {{4, 5, 6, 7}};
  EXPECT_EQ(module_.GetCapability(&node_, true, mask), CapabilityModule::kNotCollected);
  EXPECT_EQ(module_.GetCapability(&other_, false, mask), CapabilityModule::kNotCollected);
  static_assert(CapabilityModule::kNotCollected != 0);
  for (unsigned word = 0; word < 4; ++word) EXPECT_EQ(mask.mask[word], word + 4);
  // A collected mask of zeros counts as collected.
  module_.put(other_, false, capability_mask_t{});
  EXPECT_EQ(module_.GetCapability(&other_, false, mask), 0);
  EXPECT_EQ(mask.mask[0], 0U);
}

}  // namespace
