#include <gtest/gtest.h>
#include <infiniband/fabscan/fabscan_tessel_extended_info.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

class AttributeStoreTest : public testing::Test {
 protected:
  IBFabric fabric_;
  IBNode& node_ = fabric_.makeNode("S", 1, IB_SW_NODE, 4);
  IBNode& other_ = fabric_.makeNode("T", 2, IB_SW_NODE, 4);
  // Port indices 0 and 1 are also node indices.
  IBPort& port_ = fabric_.makePort(node_, 2);
  IBPort& other_port_ = fabric_.makePort(other_, 2);
  TesselExtendedInfo store_;
};

TEST_F(AttributeStoreTest, ReturnsNullForUncollectedRecords) {
  EXPECT_EQ(store_.getSMPNodeInfo(0), nullptr);
  EXPECT_EQ(store_.getSMPNodeInfo(0xFFFFFFFF), nullptr);
  EXPECT_EQ(store_.getSMPPortInfo(0xFFFFFFFF), nullptr);
  EXPECT_EQ(store_.getWrenReductionCounters(0xFFFFFFFF, 7), nullptr);
  EXPECT_EQ(store_.getWrenReductionConfigureMLIDMonitors(0xFFFFFFFF, 1), nullptr);
}

/// Stores a record for `owner` and expects that `getter` finds it only at the owner's index.
template <class Record, class Owner>
void ExpectOwnSlot(TesselExtendedInfo& store, const Owner& owner, const Owner& other,
                   const Record* (TesselExtendedInfo::*getter)(u_int32_t) const) {
  ASSERT_EQ((store.*getter)(owner.createIndex), nullptr);
  Record& record = store.put<Record>(owner);
  EXPECT_EQ((store.*getter)(owner.createIndex), &record);
  EXPECT_EQ((store.*getter)(other.createIndex), nullptr);
  EXPECT_EQ(store.find<Record>(owner), &record);
  EXPECT_EQ(store.find<Record>(other), nullptr);
  EXPECT_EQ(&store.put<Record>(owner), &record);
}

TEST_F(AttributeStoreTest, EveryNodeRecordHasItsOwnSlot) {
  using Store = TesselExtendedInfo;
  ExpectOwnSlot(store_, node_, other_, &Store::getSMPNodeInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getSMPSwitchInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getSMPRouterInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getSMP_ExtendedSwitchInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getSMPExtNodeInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getPLFTInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getARInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getVSGeneralInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getCCEnhancedCongestionInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getCCSwitchGeneralSettings);
  ExpectOwnSlot(store_, node_, other_, &Store::getWrenClassPortInfo);
  ExpectOwnSlot(store_, node_, other_, &Store::getWrenReductionInfo);
}

TEST_F(AttributeStoreTest, EveryPortRecordHasItsOwnSlot) {
  using Store = TesselExtendedInfo;
  ExpectOwnSlot(store_, port_, other_port_, &Store::getSMPPortInfo);
  ExpectOwnSlot(store_, port_, other_port_, &Store::getSMPPortInfoExtended);
  ExpectOwnSlot(store_, port_, other_port_, &Store::getSMPTarnExtPortInfo);
  ExpectOwnSlot(store_, port_, other_port_, &Store::getWrenReductionPortInfo);
  ExpectOwnSlot(store_, port_, other_port_, &Store::getWrenPushReductionCounters);
}

TEST_F(AttributeStoreTest, PortsWithTheSameNumberHaveTheirOwnRecords) {
  store_.put<SMP_PortInfo>(port_).LID = 7;
  store_.put<SMP_PortInfo>(other_port_).LID = 8;
  EXPECT_EQ(store_.getSMPPortInfo(port_.createIndex)->LID, 7);
  EXPECT_EQ(store_.getSMPPortInfo(other_port_.createIndex)->LID, 8);
}

TEST_F(AttributeStoreTest, RecordsAreZeroUntilSet) {
  EXPECT_EQ(store_.put<SMP_NodeInfo>(node_).PortGUID, 0U);
  SMP_NodeInfo record{};
  record.PortGUID = 5;
  store_.put(node_, record);
  EXPECT_EQ(store_.getSMPNodeInfo(node_.createIndex)->PortGUID, 5U);
}

TEST_F(AttributeStoreTest, CounterSetsAndMonitorsAreSeparate) {
  for (u_int32_t index = 0; index < TesselExtendedInfo::kCounterSets; ++index) {
    store_.putCounters(port_, index).mlid = static_cast<u_int16_t>(index + 1);
  }
  for (u_int32_t index = 0; index < TesselExtendedInfo::kCounterSets; ++index) {
    const WrenReductionCounters* counters =
        store_.getWrenReductionCounters(port_.createIndex, index);
    ASSERT_NE(counters, nullptr);
    EXPECT_EQ(counters->mlid, index + 1);
    EXPECT_EQ(store_.getWrenReductionCounters(other_port_.createIndex, index), nullptr);
  }
  // An index beyond the last must not reach into the next port's sets.
  store_.putCounters(other_port_, 0);
  EXPECT_EQ(store_.getWrenReductionCounters(port_.createIndex, 8), nullptr);
  EXPECT_THROW(store_.putCounters(port_, 8), std::out_of_range);

  store_.putMonitors(port_, 1);
  EXPECT_EQ(store_.getWrenReductionConfigureMLIDMonitors(port_.createIndex, 0), nullptr);
  ASSERT_NE(store_.getWrenReductionConfigureMLIDMonitors(port_.createIndex, 1), nullptr);
  EXPECT_EQ(store_.getWrenReductionConfigureMLIDMonitors(port_.createIndex, 1)->selector, 1);
  store_.putMonitors(other_port_, 0);
  EXPECT_EQ(store_.getWrenReductionConfigureMLIDMonitors(port_.createIndex, 2), nullptr);
  EXPECT_THROW(store_.putMonitors(port_, 2), std::out_of_range);
}

TEST_F(AttributeStoreTest, AddingRecordsDoesNotMoveOthers) {
  SMP_NodeInfo& record = store_.put<SMP_NodeInfo>(node_);
  record.revision = 77;
  std::vector<const SMP_NodeInfo*> others;
  for (u_int64_t guid = 10; guid < 1010; ++guid) {
    IBNode& added = fabric_.makeNode("n" + std::to_string(guid), guid, IB_CA_NODE, 1);
    store_.put<SMP_NodeInfo>(added).revision = static_cast<u_int32_t>(guid);
  }
  EXPECT_EQ(store_.getSMPNodeInfo(node_.createIndex), &record);
  EXPECT_EQ(record.revision, 77U);
  EXPECT_EQ(store_.getSMPNodeInfo(other_.createIndex), nullptr);
  for (u_int32_t index = 2; index < 1002; ++index) {
    ASSERT_NE(store_.getSMPNodeInfo(index), nullptr);
    EXPECT_EQ(store_.getSMPNodeInfo(index)->revision, index + 8);
  }
}

TEST_F(AttributeStoreTest, StoresWhyARecordIsAbsent) {
  EXPECT_TRUE(store_.absentReasons(node_).empty());
  store_.setAbsent(node_, "SMP_NodeInfo", "timed out");
  store_.setAbsent(node_, "SMP_NodeInfo", "status 0x000c");
  store_.setAbsent(port_, "SMP_PortInfo", "timed out");
  EXPECT_EQ(store_.absentReasons(node_).at("SMP_NodeInfo"), "status 0x000c");
  EXPECT_EQ(store_.absentReasons(node_).size(), 1U);
  EXPECT_EQ(store_.absentReasons(port_).at("SMP_PortInfo"), "timed out");
  EXPECT_TRUE(store_.absentReasons(other_).empty());
  EXPECT_TRUE(store_.absentReasons(other_port_).empty());
  store_.clearAbsent(node_);
  EXPECT_TRUE(store_.absentReasons(node_).empty());
  EXPECT_EQ(store_.absentReasons(port_).size(), 1U);
}

TEST_F(AttributeStoreTest, CopiesTheReasonsOfAnotherPort) {
  store_.setAbsent(port_, "SMP_PortInfo", "timed out");
  store_.shareAbsent(other_port_, port_);
  EXPECT_EQ(&store_.absentReasons(other_port_), &store_.absentReasons(port_));
  EXPECT_TRUE(store_.absentReasons(node_).empty());
}

TEST_F(AttributeStoreTest, ClearForgetsEverything) {
  store_.put<SMP_NodeInfo>(node_).VendorID = 0x5a1e0c;
  store_.put<SMP_PortInfo>(port_).LID = 7;
  store_.putCounters(port_, 1);
  store_.putMonitors(port_, 1);
  store_.setAbsent(node_, "SMP_SwitchInfo", "timed out");
  store_.setAbsent(port_, "SMP_PortInfoExtended", "timed out");
  EXPECT_TRUE(store_.hasCountersOrMonitors());
  store_.clear();
  EXPECT_EQ(store_.find<SMP_NodeInfo>(node_), nullptr);
  EXPECT_EQ(store_.find<SMP_PortInfo>(port_), nullptr);
  EXPECT_EQ(store_.getWrenReductionCounters(port_.createIndex, 1), nullptr);
  EXPECT_EQ(store_.getWrenReductionConfigureMLIDMonitors(port_.createIndex, 1), nullptr);
  EXPECT_FALSE(store_.hasCountersOrMonitors());
  EXPECT_TRUE(store_.absentReasons(node_).empty());
  EXPECT_TRUE(store_.absentReasons(port_).empty());
  EXPECT_EQ(store_.put<SMP_NodeInfo>(node_).VendorID, 0U) << "a record of before shows through";
  EXPECT_EQ(store_.put<SMP_PortInfo>(other_port_).LID, 0U);
}

TEST_F(AttributeStoreTest, CountersOrMonitorsCountAsCollected) {
  store_.putMonitors(port_, 0);
  EXPECT_TRUE(store_.hasCountersOrMonitors());
  store_.clear();
  store_.putCounters(port_, 0);
  EXPECT_TRUE(store_.hasCountersOrMonitors());
}

}  // namespace
