#include "fabrics/device_models.h"

#include <gtest/gtest.h>

#include <cstring>

namespace fabscan {
namespace {

class DeviceModelsTest : public ::testing::Test {
 protected:
  IBNode& Add(const std::string& name, u_int16_t device_id = 0xd2f0, IBNodeType type = IB_SW_NODE) {
    IBNode& node = fabscan_.discovered_fabric.makeNode(name, ++guid_, type, 4);
    SMP_NodeInfo info{};
    info.VendorID = 0x5a1e0c;
    info.DeviceID = device_id;
    info.revision = 0xa0;
    info.NodeGUID = guid_;  // tells nodes apart, not models
    fabscan_.fabric_extended_info.put(node, info);
    return node;
  }

  VendorSpec_GeneralInfo& General(const IBNode& node) {
    return fabscan_.fabric_extended_info.put<VendorSpec_GeneralInfo>(node);
  }
  SMP_NodeInfo& Info(const IBNode& node) {
    return fabscan_.fabric_extended_info.put<SMP_NodeInfo>(node);
  }
  std::size_t Models() const { return DeviceModelsOf(fabscan_).size(); }

  Fabscan fabscan_;
  u_int64_t guid_ = 0;
};

TEST_F(DeviceModelsTest, AreCountedWithTheFirstByName) {
  Add("S2");
  Add("S1");
  Add("H1", 0x1021, IB_CA_NODE);
  const std::vector<DeviceModel> models = DeviceModelsOf(fabscan_);
  ASSERT_EQ(models.size(), 2U);
  EXPECT_EQ(models[0].representative->name, "H1");
  EXPECT_EQ(models[0].nodes, 1U);
  EXPECT_EQ(models[1].representative->name, "S1");
  EXPECT_EQ(models[1].nodes, 2U);
  EXPECT_EQ(models[1].key.vendor_id, 0x5a1e0cU);
  EXPECT_EQ(models[1].key.device_id, 0xd2f0U);
}

TEST_F(DeviceModelsTest, EveryPartOfTheKeyCounts) {
  Add("A");
  Add("Same");
  EXPECT_EQ(Models(), 1U);
  Add("B", 0xd2f2);
  EXPECT_EQ(Models(), 2U);
  Add("C", 0xd2f0, IB_RTR_NODE);
  EXPECT_EQ(Models(), 3U);
  Add("D").setSpecialNodeType(IB_SPECIAL_PORT_AN);
  EXPECT_EQ(Models(), 4U);
  Info(Add("E")).VendorID = 0x5a1e0d;
  EXPECT_EQ(Models(), 5U);
  Info(Add("F")).revision = 0xa1;
  EXPECT_EQ(Models(), 6U);
  General(Add("G")).FWInfo.PSID.PSID[0] = 'X';
  EXPECT_EQ(Models(), 7U);
  General(Add("H")).FWInfo.Extended_SubMinor = 1;
  EXPECT_EQ(Models(), 8U);
  General(Add("I")).FWInfo.Minor = 1;
  EXPECT_EQ(Models(), 9U);
}

TEST_F(DeviceModelsTest, NodesOutsideTheSubFabricAreLeftOut) {
  Add("A").in_sub_fabric = false;
  Add("B");
  const std::vector<DeviceModel> models = DeviceModelsOf(fabscan_);
  ASSERT_EQ(models.size(), 1U);
  EXPECT_EQ(models[0].representative->name, "B");
  EXPECT_EQ(models[0].nodes, 1U);
}

TEST_F(DeviceModelsTest, TheRepresentativeHasTheMostRecords) {
  Add("S1");
  IBNode& second = Add("S2");
  Add("S3");
  fabscan_.fabric_extended_info.put(fabscan_.discovered_fabric.makePort(second, 1), SMP_PortInfo{});
  fabscan_.fabric_extended_info.put(fabscan_.discovered_fabric.makePort(second, 2), SMP_PortInfo{});
  const std::vector<DeviceModel> models = DeviceModelsOf(fabscan_);
  ASSERT_EQ(models.size(), 1U);
  EXPECT_EQ(models[0].representative->name, "S2");
  EXPECT_EQ(models[0].records, 3U);
  EXPECT_EQ(models[0].nodes, 3U);
}

TEST_F(DeviceModelsTest, RecordsOfANodeAndItsPortsAreCounted) {
  IBNode& node = Add("S1");
  EXPECT_EQ(RecordsOf(fabscan_, node), 1U);
  fabscan_.capability_module.put(node, false, {});
  EXPECT_EQ(RecordsOf(fabscan_, node), 2U);
  fabscan_.fabric_extended_info.putCounters(fabscan_.discovered_fabric.makePort(node, 3), 0);
  EXPECT_EQ(RecordsOf(fabscan_, node), 3U);
}

TEST_F(DeviceModelsTest, WhatWasNotCollectedCountsAsZero) {
  fabscan_.discovered_fabric.makeNode("A", 0x100, IB_SW_NODE, 4);
  Info(fabscan_.discovered_fabric.makeNode("B", 0x101, IB_SW_NODE, 4));
  EXPECT_EQ(Models(), 1U);
}

TEST_F(DeviceModelsTest, TextOfPsidAndFirmware) {
  const IBNode& node = Add("A");
  EXPECT_EQ(PsidText(DeviceModelOf(fabscan_, node)), "");
  EXPECT_EQ(FirmwareText(DeviceModelOf(fabscan_, node)), "");
  FWInfo_Block_Element& firmware = General(node).FWInfo;
  std::memcpy(firmware.PSID.PSID, "AB_0000\n12", 10);
  firmware.Major = 27;
  firmware.Minor = 200;
  EXPECT_EQ(PsidText(DeviceModelOf(fabscan_, node)), "AB_0000%0A12");
  EXPECT_EQ(FirmwareText(DeviceModelOf(fabscan_, node)), "27.200.0");
  firmware.Extended_Major = 27;
  firmware.Extended_Minor = 2008;
  firmware.Extended_SubMinor = 3000;
  EXPECT_EQ(FirmwareText(DeviceModelOf(fabscan_, node)), "27.2008.3000");
}

}  // namespace
}  // namespace fabscan
