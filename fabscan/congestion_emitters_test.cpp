#include <gtest/gtest.h>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

TEST(EnhancedCongestionInfo, SwitchWithTheCapabilityHasItsBlock) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {44});
  auto& record = fabric.Put<CC_EnhancedCongestionInfo>(node);
  record.ver1 = 0x81;
  record.ver0 = 0x82;
  record.CC_Capability_Mask = 0xfedcba9876543221;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateEnhancedCongestionInfo, node),
            R"(    CC_EnhancedCongestionInfo mad_buffer = {0};
    CC_EnhancedCongestionInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->enhancedCongestionInfo));

    mad_buffer.ver1 = 0x81;
    mad_buffer.ver0 = 0x82;
    mad_buffer.CC_Capability_Mask = 0xfedcba9876543221;

    CC_EnhancedCongestionInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->enhancedCongestionInfo));)");
}

TEST(EnhancedCongestionInfo, AdapterWithTheCapabilityHasItsBlock) {
  FabricBuilder fabric;
  IBNode& node = fabric.Adapter("H1");
  fabric.Support(node, {44});
  auto& record = fabric.Put<CC_EnhancedCongestionInfo>(node);
  record.ver1 = 0x81;
  record.ver0 = 0x82;
  record.CC_Capability_Mask = 0xfedcba9876543221;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateEnhancedCongestionInfo, node),
            R"(    CC_EnhancedCongestionInfo mad_buffer = {0};
    CC_EnhancedCongestionInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->enhancedCongestionInfo));

    mad_buffer.ver1 = 0x81;
    mad_buffer.ver0 = 0x82;
    mad_buffer.CC_Capability_Mask = 0xfedcba9876543221;

    CC_EnhancedCongestionInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->enhancedCongestionInfo));)");
}

TEST(EnhancedCongestionInfo, RouterWithTheCapabilityHasItsBlock) {
  FabricBuilder fabric;
  IBNode& node = fabric.Router("R1");
  fabric.Support(node, {44});
  auto& record = fabric.Put<CC_EnhancedCongestionInfo>(node);
  record.ver1 = 0x81;
  record.ver0 = 0x82;
  record.CC_Capability_Mask = 0xfedcba9876543221;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateEnhancedCongestionInfo, node),
            R"(    CC_EnhancedCongestionInfo mad_buffer = {0};
    CC_EnhancedCongestionInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->enhancedCongestionInfo));

    mad_buffer.ver1 = 0x81;
    mad_buffer.ver0 = 0x82;
    mad_buffer.CC_Capability_Mask = 0xfedcba9876543221;

    CC_EnhancedCongestionInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->enhancedCongestionInfo));)");
}

TEST(EnhancedCongestionInfo, WritesZeroAndOneAsNumbers) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {44});
  auto& record = fabric.Put<CC_EnhancedCongestionInfo>(node);
  record.ver1 = 0x1;
  record.ver0 = 0x0;
  record.CC_Capability_Mask = 0x0;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateEnhancedCongestionInfo, node),
            R"(    CC_EnhancedCongestionInfo mad_buffer = {0};
    CC_EnhancedCongestionInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->enhancedCongestionInfo));

    mad_buffer.ver1 = 0x1;
    mad_buffer.ver0 = 0x0;
    mad_buffer.CC_Capability_Mask = 0x0;

    CC_EnhancedCongestionInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->enhancedCongestionInfo));)");
}

TEST(EnhancedCongestionInfo, SpecialNodeHasNoneWhateverElseItLacks) {
  FabricBuilder fabric;
  IBNode& node = fabric.Special("A1", IB_SPECIAL_PORT_ROUTER);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateEnhancedCongestionInfo, node),
            R"(// The node=A1 is special and it should not support Enhanced Congestion Control)");
}

TEST(EnhancedCongestionInfo, SpecialSwitchHasNoneEither) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  node.setSpecialNodeType(IB_SPECIAL_PORT_AN);
  fabric.Support(node, {44});
  fabric.Put<CC_EnhancedCongestionInfo>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateEnhancedCongestionInfo, node),
            R"(// The node=S1 is special and it should not support Enhanced Congestion Control)");
}

TEST(EnhancedCongestionInfo, NeedsItsCapability) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {43, 45});
  fabric.Put<CC_EnhancedCongestionInfo>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateEnhancedCongestionInfo, node),
            R"(#error "The node=S1 does not support Enhanced Congestion Control")");
}

TEST(EnhancedCongestionInfo, StopsTheBuildWithAnOpenQuoteWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {44});
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateEnhancedCongestionInfo, node),
            R"(#error "Failed to get CC_EnhancedCongestionInfo mad for the node=S1)");
}

TEST(CongestionSwitchGeneralSettings, AssignsTheTwoCapabilitiesWithoutAskingForBitsOrSpecialNodes) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  node.setSpecialNodeType(IB_SPECIAL_PORT_AN);
  fabric.Put<CC_EnhancedCongestionInfo>(node).ver0 = 1;
  auto& record = fabric.Put<CC_CongestionSwitchGeneralSettings>(node);
  record.cap_total_buffer_size = 0xf0000001;
  record.cap_cc_profile_step_size = 0x82;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings, node),
            R"(    CC_CongestionSwitchGeneralSettings mad_buffer = {0};
    CC_CongestionSwitchGeneralSettings_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->congSWGeneralInfo));

    mad_buffer.cap_total_buffer_size = 0xf0000001;
    mad_buffer.cap_cc_profile_step_size = 0x82;

    CC_CongestionSwitchGeneralSettings_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->congSWGeneralInfo));)");
}

TEST(CongestionSwitchGeneralSettings, LeavesSettingsToTheSimulatedNode) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Put<CC_EnhancedCongestionInfo>(node).ver0 = 0x80;
  auto& record = fabric.Put<CC_CongestionSwitchGeneralSettings>(node);
  record.aqs_time = record.aqs_weight = record.en = 0xff;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings, node),
            R"(    CC_CongestionSwitchGeneralSettings mad_buffer = {0};
    CC_CongestionSwitchGeneralSettings_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->congSWGeneralInfo));

    mad_buffer.cap_total_buffer_size = 0x0;
    mad_buffer.cap_cc_profile_step_size = 0x0;

    CC_CongestionSwitchGeneralSettings_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->congSWGeneralInfo));)");
}

TEST(CongestionSwitchGeneralSettings, NeedsTheEnhancedCongestionInfo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Put<CC_CongestionSwitchGeneralSettings>(node);
  EXPECT_EQ(
      fabric.Body(&SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings, node),
      R"(#error "Failed to get CC_EnhancedCongestionInfo mad for the node=S1. Cannot check supported version of Congestion Control attributes)");
}

TEST(CongestionSwitchGeneralSettings, NeedsVersionZeroWhateverVersionOneSays) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Put<CC_EnhancedCongestionInfo>(node).ver1 = 1;
  fabric.Put<CC_CongestionSwitchGeneralSettings>(node);
  EXPECT_EQ(
      fabric.Body(&SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings, node),
      R"(#error "The node=S1 does not support any version of Congestion Control attributes")");
}

TEST(CongestionSwitchGeneralSettings, StopsTheBuildWithAnOpenQuoteWithoutSettings) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Put<CC_EnhancedCongestionInfo>(node).ver0 = 1;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings, node),
            R"(#error "Failed to get CC_CongestionSwitchGeneralSettings mad for the node=S1)");
}

}  // namespace
}  // namespace fabscan
