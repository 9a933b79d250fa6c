#include <gtest/gtest.h>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

TEST(FWInfo, AssignsItsBlockOfGeneralInfo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Router("R1");
  auto& record = fabric.Put<VendorSpec_GeneralInfo>(node).FWInfo;
  record.Major = 0x81;
  record.Minor = 0x82;
  record.SubMinor = 0x83;
  record.BuildID = 0xf0000031;
  record.PSID.PSID[0] = 0x85;
  record.PSID.PSID[1] = 0x86;
  record.PSID.PSID[2] = 0x87;
  record.PSID.PSID[3] = 0x88;
  record.PSID.PSID[4] = 0x89;
  record.PSID.PSID[5] = 0x8a;
  record.PSID.PSID[6] = 0x8b;
  record.PSID.PSID[7] = 0x8c;
  record.PSID.PSID[8] = 0x8d;
  record.PSID.PSID[9] = 0x8e;
  record.PSID.PSID[10] = 0x8f;
  record.PSID.PSID[11] = 0x90;
  record.PSID.PSID[12] = 0x91;
  record.PSID.PSID[13] = 0x92;
  record.PSID.PSID[14] = 0x93;
  record.PSID.PSID[15] = 0x94;
  record.INI_File_Version = 0xf0000141;
  record.Extended_Major = 0xf0000151;
  record.Extended_Minor = 0xf0000161;
  record.Extended_SubMinor = 0xf0000171;
  record.isfu_major = 0x9919;
  record.sec_boot = 0x9a;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateFWInfo, node),
            R"(    FWInfo_Block_Element mad_buffer = {0};
    FWInfo_Block_Element_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->fwInfo));

    mad_buffer.Major = 0x81;
    mad_buffer.Minor = 0x82;
    mad_buffer.SubMinor = 0x83;
    mad_buffer.BuildID = 0xf0000031;
    mad_buffer.PSID.PSID[0] = 0x85;
    mad_buffer.PSID.PSID[1] = 0x86;
    mad_buffer.PSID.PSID[2] = 0x87;
    mad_buffer.PSID.PSID[3] = 0x88;
    mad_buffer.PSID.PSID[4] = 0x89;
    mad_buffer.PSID.PSID[5] = 0x8a;
    mad_buffer.PSID.PSID[6] = 0x8b;
    mad_buffer.PSID.PSID[7] = 0x8c;
    mad_buffer.PSID.PSID[8] = 0x8d;
    mad_buffer.PSID.PSID[9] = 0x8e;
    mad_buffer.PSID.PSID[10] = 0x8f;
    mad_buffer.PSID.PSID[11] = 0x90;
    mad_buffer.PSID.PSID[12] = 0x91;
    mad_buffer.PSID.PSID[13] = 0x92;
    mad_buffer.PSID.PSID[14] = 0x93;
    mad_buffer.PSID.PSID[15] = 0x94;
    mad_buffer.INI_File_Version = 0xf0000141;
    mad_buffer.Extended_Major = 0xf0000151;
    mad_buffer.Extended_Minor = 0xf0000161;
    mad_buffer.Extended_SubMinor = 0xf0000171;
    mad_buffer.isfu_major = 0x9919;
    mad_buffer.sec_boot = 0x9a;

    FWInfo_Block_Element_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->fwInfo));)");
}

TEST(FWInfo, SpecialNodeHasNone) {
  FabricBuilder fabric;
  IBNode& node = fabric.Special("A1", IB_SPECIAL_PORT_AN);
  fabric.Put<VendorSpec_GeneralInfo>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateFWInfo, node),
            R"(// The node=A1 is special and it should not support VS General Info mad.)");
}

TEST(FWInfo, IsPassedOverWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateFWInfo, node),
            R"(// Failed to get VS GeneralInfo mad for the node=S1)");
}

TEST(HWInfo, AssignsItsBlockOfGeneralInfo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Router("R1");
  auto& record = fabric.Put<VendorSpec_GeneralInfo>(node).HWInfo;
  record.DeviceHWRevision = 0x8101;
  record.DeviceID = 0x8202;
  record.num_ports = 0x83;
  record.technology = 0x84;
  record.pvs = 0x85;
  record.hw_dev_id = 0x8606;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateHWInfo, node),
            R"(    HWInfo_Block_Element mad_buffer = {0};
    HWInfo_Block_Element_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->hwInfo));

    mad_buffer.DeviceHWRevision = 0x8101;
    mad_buffer.DeviceID = 0x8202;
    mad_buffer.num_ports = 0x83;
    mad_buffer.technology = 0x84;
    mad_buffer.pvs = 0x85;
    mad_buffer.hw_dev_id = 0x8606;

    HWInfo_Block_Element_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->hwInfo));)");
}

TEST(HWInfo, SpecialNodeHasNone) {
  FabricBuilder fabric;
  IBNode& node = fabric.Special("A1", IB_SPECIAL_PORT_AN);
  fabric.Put<VendorSpec_GeneralInfo>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateHWInfo, node),
            R"(// The node=A1 is special and it should not support VS General Info mad.)");
}

TEST(HWInfo, IsPassedOverWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateHWInfo, node),
            R"(// Failed to get VS GeneralInfo mad for the node=S1)");
}

TEST(SWInfo, AssignsItsBlockOfGeneralInfo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Router("R1");
  auto& record = fabric.Put<VendorSpec_GeneralInfo>(node).SWInfo;
  record.Major = 0x81;
  record.Minor = 0x82;
  record.SubMinor = 0x83;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSWInfo, node),
            R"(    SWInfo_Block_Element mad_buffer = {0};
    SWInfo_Block_Element_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->swInfo));

    mad_buffer.Major = 0x81;
    mad_buffer.Minor = 0x82;
    mad_buffer.SubMinor = 0x83;

    SWInfo_Block_Element_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->swInfo));)");
}

TEST(SWInfo, SpecialNodeHasNone) {
  FabricBuilder fabric;
  IBNode& node = fabric.Special("A1", IB_SPECIAL_PORT_AN);
  fabric.Put<VendorSpec_GeneralInfo>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSWInfo, node),
            R"(// The node=A1 is special and it should not support VS GeneralInfo mad.)");
}

TEST(SWInfo, IsPassedOverWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSWInfo, node),
            R"(// Failed to get VS GeneralInfo mad for the node=S1)");
}

TEST(FWInfo, WritesAllSixteenBytesOfAShortPSIDAndFullWords) {
  FabricBuilder fabric;
  IBNode& node = fabric.Adapter("H1");
  auto& record = fabric.Put<VendorSpec_GeneralInfo>(node).FWInfo;
  record.BuildID = record.Extended_Minor = 0xffffffff;
  record.PSID.PSID[0] = 'M';
  record.PSID.PSID[1] = 'T';
  record.PSID.PSID[2] = '_';
  record.PSID.PSID[3] = '9';
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateFWInfo, node),
            R"(    FWInfo_Block_Element mad_buffer = {0};
    FWInfo_Block_Element_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->fwInfo));

    mad_buffer.Major = 0x0;
    mad_buffer.Minor = 0x0;
    mad_buffer.SubMinor = 0x0;
    mad_buffer.BuildID = 0xffffffff;
    mad_buffer.PSID.PSID[0] = 0x4d;
    mad_buffer.PSID.PSID[1] = 0x54;
    mad_buffer.PSID.PSID[2] = 0x5f;
    mad_buffer.PSID.PSID[3] = 0x39;
    mad_buffer.PSID.PSID[4] = 0x0;
    mad_buffer.PSID.PSID[5] = 0x0;
    mad_buffer.PSID.PSID[6] = 0x0;
    mad_buffer.PSID.PSID[7] = 0x0;
    mad_buffer.PSID.PSID[8] = 0x0;
    mad_buffer.PSID.PSID[9] = 0x0;
    mad_buffer.PSID.PSID[10] = 0x0;
    mad_buffer.PSID.PSID[11] = 0x0;
    mad_buffer.PSID.PSID[12] = 0x0;
    mad_buffer.PSID.PSID[13] = 0x0;
    mad_buffer.PSID.PSID[14] = 0x0;
    mad_buffer.PSID.PSID[15] = 0x0;
    mad_buffer.INI_File_Version = 0x0;
    mad_buffer.Extended_Major = 0x0;
    mad_buffer.Extended_Minor = 0xffffffff;
    mad_buffer.Extended_SubMinor = 0x0;
    mad_buffer.isfu_major = 0x0;
    mad_buffer.sec_boot = 0x0;

    FWInfo_Block_Element_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->fwInfo));)");
}

}  // namespace
}  // namespace fabscan
