#include <gtest/gtest.h>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

constexpr capability_mask_t kAllSet = {{0xffffffff, 0xffffffff, 0xffffffff, 0xffffffff}};

TEST(SMPCapability, NamesEverySupportedBitInOrder) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.fabscan.capability_module.put(node, false, kAllSet);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSMPCapabilityMask, node),
            R"(    // ---------- SMP Caps ----------
    // IsPrivateLinearForwardingSupported
    // IsAdaptiveRoutingSupported
    // IsAdaptiveRoutingRev1Supported
    // IsRemotePortMirroringSupported
    // IsTemperatureSensingSupported
    // IsConfigSpaceAccessSupported
    // IsCableInfoSupported
    // IsSMPEyeOpenSupported
    // IsLossyVLConfigSupported
    // IsExtendedPortInfoSupported
    // IsAccessRegisterSupported
    // IsInterProcessCommunicationSupported
    // IsPortSLToPrivateLFTMapSupported
    // IsExtendedNodeInfoSupported
    // IsSlaveVirtualSwitch
    // IsVirtualizationSupported
    // IsAdvancedRetransAndFECModesSupported
    // IsSemaphoreLockSupported
    // IsTallyAggrNodeSupported
    // IsCableInfoPasswordSupported
    // IsVL2VLPerSWIDSupported
    // IsSpecialPortsMarkingSupported
    // IsVPortGUIDInfoSupported
    // IsForcePLFTSubgroup0Supported
    // IsQoSConfigSLRateLimitSupported
    // IsQoSConfigSLVPortRateLimitSupported
    // IsQoSConfigSLAllocBWSupported
    // IsQoSConfigSLVPortAllocBWSupported
    // IsEnhancedTrap128Supported
    // IsDevInfoSupported
    // IsGlobalOOOSupported
    // IsMADAddlStatusSupported
    // IsQoSConfigSLRateLimitPortSupported
    // IsQoSConfigSLRateLimitVPortSupported
    // IsQoSConfigSLAllocBWPortSupported
    // IsQoSConfigSLAllocBWVPortSupported
    // IsQoSConfigHighPriorityVLGroupRateLimitSupported
    // IsQoSConfigHighPriorityVLGroupAllocBWSupported
    // IsQoSConfigLowPriorityVLGroupRateLimitSupported
    // IsQoSConfigLowPriorityVLGroupAllocBWSupported
    // IsQoSConfigVLRateLimitSupported
    // IsQoSConfigVLAllocBWSupported
    // IsCableInfoBankNumberSupported
    // IsDCQCNSupported
    // IsAdaptiveTimeoutSupported
    // IsClassEnableSupported
    // IsExtendedAddressModeSupported
    // IsRouterLIDSupported
    // IsLinearForwardingTableSplitSupported
    // IsDataTypetoSLMappingSupported
    // IsQoSConfigVLSupported
    // IsFastRecoverySupported
    // IsCreditWatchdogSupported
    // IsWrenFabricManagementSupported
    // IsWrenReductionManagementSupported
    // IsRailFilterSupported
    // IsWrenHBFConfigSupported
    // IsDataTypetoVLMappingSupported
    // IsContainAndDrainSupported
    // IsProfilesConfigSupported
    // IsBERConfigSupported
    // IsGlobalOOOV2Supported
    // IsVLBufferWeightSupported
    // IsEndPortPlaneFilterConfigSupported
    // IsEntryPlaneFilterSupported
    // IsBWUtiliztionSupported
    // IsExtendedSwitchInfoSupported
    // IsFabricManagerInfoSupported
    // IsExtPortInfoUnhealthyReasonSupported
    // IsMulticastPrivateLinearForwardingSupported
    // IsPortSLToMulticastPrivateLFTMapSupported
    // IsChassisInfoSupported
    // IsPLRTriggerSupported
    // IsFwISSUSupported
    // IsSkeinFecModeSupported
    // IsPortRecoveryPolicyConfigSupported
    // IsHelmAdminstateSupported
    // IsMultiplaneAsymmetrySupported
    // IsUtcTimestampSupported
    // IsCpoIndicationSupported
    // IsLinkAutoRetrainSupported
    // IsRTUEnabled
    // IsHybridTopology
    // IsDcPortStateChangeTrapSupported
    // IsCrossPortHandlingSupported
    // IsHybridPortInfoSupported
    // IsSLToVLEgressGroupsSupported
    // IsVSNodeInfoSupported
    // IsLinkHealthFiltersSupported

    GeneralInfoCapabilityMask mad_buffer = {0};
    GeneralInfoCapabilityMask_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));

    mad_buffer.capability0 = 0xffffffff;
    mad_buffer.capability1 = 0xffffffff;
    mad_buffer.capability2 = 0xffffffff;
    mad_buffer.capability3 = 0xffffffff;

    GeneralInfoCapabilityMask_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));)");
}

TEST(SMPCapability, WithoutAnyBitHasTheHeaderAndFourZeroWords) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.fabscan.capability_module.put(node, false, {});
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSMPCapabilityMask, node),
            R"(    // ---------- SMP Caps ----------

    GeneralInfoCapabilityMask mad_buffer = {0};
    GeneralInfoCapabilityMask_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));

    mad_buffer.capability0 = 0x0;
    mad_buffer.capability1 = 0x0;
    mad_buffer.capability2 = 0x0;
    mad_buffer.capability3 = 0x0;

    GeneralInfoCapabilityMask_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));)");
}

TEST(SMPCapability, WritesBitsWithoutANameInTheirWordsAlone) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.fabscan.capability_module.put(node, false, {{0x0, 0x400, 0xfc000000, 0xffffffff}});
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSMPCapabilityMask, node),
            R"(    // ---------- SMP Caps ----------

    GeneralInfoCapabilityMask mad_buffer = {0};
    GeneralInfoCapabilityMask_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));

    mad_buffer.capability0 = 0x0;
    mad_buffer.capability1 = 0x400;
    mad_buffer.capability2 = 0xfc000000;
    mad_buffer.capability3 = 0xffffffff;

    GeneralInfoCapabilityMask_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));)");
}

TEST(SMPCapability, StopsTheBuildWithTheStatusWhereTheMaskIsUnknown) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSMPCapabilityMask, node),
            R"(#error "Failed to get SMP capabilites for the node=S1 with rc=1")");
}

TEST(GMPCapability, NamesEverySupportedBitInOrder) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.fabscan.capability_module.put(node, true, kAllSet);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateGMPCapabilityMask, node),
            R"(    // ---------- GMP Caps ----------
    // IsPortPowerStateSupported
    // IsDeviceSoftResetSupported
    // IsExtGPIOPortAccessSupported
    // IsPhyConfigSupported
    // IsVendSpecLedControlSupported
    // IsConfigSpaceAccessSupported
    // IsPerVLCountersSupported
    // IsPerVLExtendedSupported
    // IsPortLLRStatisticsSupported
    // IsCounterGroupsSupported
    // IsEnhancedConfigSpaceAccessSupported
    // IsFlowMonitoringSupported
    // IsCongestionNotificationSupported
    // IsVirtualSwitchSupported
    // IsPortXmitQLengthSupported
    // IsMulticastForwardingTableSupported
    // IsPortXmitWaitVLExtendedSupported
    // IsExtI2CPortAccessSupported
    // IsDiagnosticDataSupported
    // IsMaxRetransmissionRateSupported
    // IsAccessRegisterGMPSupported
    // IsPortHistogramsSupported
    // IsPoolHistogramsSupported
    // IsVPortCountersSupported
    // IsDiagnosticDataIdentificationSupported
    // IsEnhPort0DeviceResetSupported
    // IsDevInfoSupported
    // IsMADAddlStatusSupported
    // IsCableBurnSupported
    // IsMirroringEventsSupported
    // IsBERMonitoringSupported
    // IsBERMonitoringEventsSupported
    // IsDCQCNSupported
    // IsPLRMaxRetransmissionRateSupported
    // IsEffectiveCounterSupported
    // IsRawBerPerLaneSupported
    // IsAccessRegisterSupported
    // IsMirroringInfoSupported
    // IsExtendedAddressModeSupported
    // IsSwitchNetworkInfoSupported
    // CreditWatchdogTimeoutCounters
    // FastRecoveryCountersSupported
    // IsGeneralResetSupported
    // IsBufferHistogramSupported
    // IsPortsHistogramSupported
    // IsPacketBufferAllocControlSupported
    // IsPortGeneralCountersSupported
    // IsPortRecoveryPolicyCountersSupported
    // IsDualVSKeySupported

    GeneralInfoCapabilityMask mad_buffer = {0};
    GeneralInfoCapabilityMask_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskGMP));

    mad_buffer.capability0 = 0xffffffff;
    mad_buffer.capability1 = 0xffffffff;
    mad_buffer.capability2 = 0xffffffff;
    mad_buffer.capability3 = 0xffffffff;

    GeneralInfoCapabilityMask_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskGMP));)");
}

TEST(GMPCapability, WithoutAnyBitHasTheHeaderAndFourZeroWords) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.fabscan.capability_module.put(node, true, {});
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateGMPCapabilityMask, node),
            R"(    // ---------- GMP Caps ----------

    GeneralInfoCapabilityMask mad_buffer = {0};
    GeneralInfoCapabilityMask_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskGMP));

    mad_buffer.capability0 = 0x0;
    mad_buffer.capability1 = 0x0;
    mad_buffer.capability2 = 0x0;
    mad_buffer.capability3 = 0x0;

    GeneralInfoCapabilityMask_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskGMP));)");
}

TEST(GMPCapability, WritesBitsWithoutANameInTheirWordsAlone) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.fabscan.capability_module.put(node, true, {{0x0, 0xfffe0000, 0xffffffff, 0xffffffff}});
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateGMPCapabilityMask, node),
            R"(    // ---------- GMP Caps ----------

    GeneralInfoCapabilityMask mad_buffer = {0};
    GeneralInfoCapabilityMask_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskGMP));

    mad_buffer.capability0 = 0x0;
    mad_buffer.capability1 = 0xfffe0000;
    mad_buffer.capability2 = 0xffffffff;
    mad_buffer.capability3 = 0xffffffff;

    GeneralInfoCapabilityMask_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskGMP));)");
}

TEST(GMPCapability, StopsTheBuildWithTheStatusWhereTheMaskIsUnknown) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateGMPCapabilityMask, node),
            R"(#error "Failed to get GMP capabilites for the node=S1 with rc=1")");
}

TEST(SMPCapability, SpecialNodeKeepsItsMask) {
  FabricBuilder fabric;
  IBNode& node = fabric.Special("A1", IB_SPECIAL_PORT_AN);
  fabric.Support(node, {13});
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSMPCapabilityMask, node),
            R"(    // ---------- SMP Caps ----------
    // IsExtendedNodeInfoSupported

    GeneralInfoCapabilityMask mad_buffer = {0};
    GeneralInfoCapabilityMask_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));

    mad_buffer.capability0 = 0x2000;
    mad_buffer.capability1 = 0x0;
    mad_buffer.capability2 = 0x0;
    mad_buffer.capability3 = 0x0;

    GeneralInfoCapabilityMask_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));)");
}

TEST(GMPCapability, SpecialNodeHasNone) {
  FabricBuilder fabric;
  IBNode& node = fabric.Special("A1", IB_SPECIAL_PORT_AN);
  fabric.fabscan.capability_module.put(node, true, kAllSet);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateGMPCapabilityMask, node),
            R"(// The node=A1 is special and it should not support GMP capabilities.)");
}

TEST(CapabilityNames, HaveOneSlotForEachBit) {
  EXPECT_EQ(SimInfoData::SMPCapMaskBits.size(), 90U);
  EXPECT_EQ(SimInfoData::SMPCapMaskBits[42], nullptr);
  EXPECT_STREQ(SimInfoData::SMPCapMaskBits[41], "IsQoSConfigVLAllocBWSupported");
  EXPECT_STREQ(SimInfoData::SMPCapMaskBits[43], "IsCableInfoBankNumberSupported");
  EXPECT_EQ(SimInfoData::GMPCapMaskBits.size(), 49U);
  EXPECT_STREQ(SimInfoData::GMPCapMaskBits[40], "CreditWatchdogTimeoutCounters");
  EXPECT_STREQ(SimInfoData::GMPCapMaskBits[41], "FastRecoveryCountersSupported");
  EXPECT_EQ(SimInfoData::PortInfoCapMaskBits.size(), 32U);
  EXPECT_EQ(SimInfoData::PortInfoCapMask2Bits.size(), 16U);
}

}  // namespace
}  // namespace fabscan
