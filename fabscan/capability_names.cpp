#include "capability_names.h"

#include <iterator>

#include "fabscan_sim_info_dump.h"

namespace fabscan::generator {
namespace {

// One name a bit, in the order of the bits.
// clang-format off

constexpr std::string_view kSMPCapMaskBits[] = {
    "IsPrivateLinearForwardingSupported",
    "IsAdaptiveRoutingSupported",
    "IsAdaptiveRoutingRev1Supported",
    "IsRemotePortMirroringSupported",
    "IsTemperatureSensingSupported",
    "IsConfigSpaceAccessSupported",
    "IsCableInfoSupported",
    "IsSMPEyeOpenSupported",
    "IsLossyVLConfigSupported",
    "IsExtendedPortInfoSupported",
    "IsAccessRegisterSupported",
    "IsInterProcessCommunicationSupported",
    "IsPortSLToPrivateLFTMapSupported",
    "IsExtendedNodeInfoSupported",
    "IsSlaveVirtualSwitch",
    "IsVirtualizationSupported",
    "IsAdvancedRetransAndFECModesSupported",
    "IsSemaphoreLockSupported",
    "IsTallyAggrNodeSupported",
    "IsCableInfoPasswordSupported",
    "IsVL2VLPerSWIDSupported",
    "IsSpecialPortsMarkingSupported",
    "IsVPortGUIDInfoSupported",
    "IsForcePLFTSubgroup0Supported",
    "IsQoSConfigSLRateLimitSupported",
    "IsQoSConfigSLVPortRateLimitSupported",
    "IsQoSConfigSLAllocBWSupported",
    "IsQoSConfigSLVPortAllocBWSupported",
    "IsEnhancedTrap128Supported",
    "IsDevInfoSupported",
    "IsGlobalOOOSupported",
    "IsMADAddlStatusSupported",
    "IsQoSConfigSLRateLimitPortSupported",
    "IsQoSConfigSLRateLimitVPortSupported",
    "IsQoSConfigSLAllocBWPortSupported",
    "IsQoSConfigSLAllocBWVPortSupported",
    "IsQoSConfigHighPriorityVLGroupRateLimitSupported",
    "IsQoSConfigHighPriorityVLGroupAllocBWSupported",
    "IsQoSConfigLowPriorityVLGroupRateLimitSupported",
    "IsQoSConfigLowPriorityVLGroupAllocBWSupported",
    "IsQoSConfigVLRateLimitSupported",
    "IsQoSConfigVLAllocBWSupported",
    {},
    "IsCableInfoBankNumberSupported",
    "IsDCQCNSupported",
    "IsAdaptiveTimeoutSupported",
    "IsClassEnableSupported",
    "IsExtendedAddressModeSupported",
    "IsRouterLIDSupported",
    "IsLinearForwardingTableSplitSupported",
    "IsDataTypetoSLMappingSupported",
    "IsQoSConfigVLSupported",
    "IsFastRecoverySupported",
    "IsCreditWatchdogSupported",
    "IsWrenFabricManagementSupported",
    "IsWrenReductionManagementSupported",
    "IsRailFilterSupported",
    "IsWrenHBFConfigSupported",
    "IsDataTypetoVLMappingSupported",
    "IsContainAndDrainSupported",
    "IsProfilesConfigSupported",
    "IsBERConfigSupported",
    "IsGlobalOOOV2Supported",
    "IsVLBufferWeightSupported",
    "IsEndPortPlaneFilterConfigSupported",
    "IsEntryPlaneFilterSupported",
    "IsBWUtiliztionSupported",
    "IsExtendedSwitchInfoSupported",
    "IsFabricManagerInfoSupported",
    "IsExtPortInfoUnhealthyReasonSupported",
    "IsMulticastPrivateLinearForwardingSupported",
    "IsPortSLToMulticastPrivateLFTMapSupported",
    "IsChassisInfoSupported",
    "IsPLRTriggerSupported",
    "IsFwISSUSupported",
    "IsSkeinFecModeSupported",
    "IsPortRecoveryPolicyConfigSupported",
    "IsHelmAdminstateSupported",
    "IsMultiplaneAsymmetrySupported",
    "IsUtcTimestampSupported",
    "IsCpoIndicationSupported",
    "IsLinkAutoRetrainSupported",
    "IsRTUEnabled",
    "IsHybridTopology",
    "IsDcPortStateChangeTrapSupported",
    "IsCrossPortHandlingSupported",
    "IsHybridPortInfoSupported",
    "IsSLToVLEgressGroupsSupported",
    "IsVSNodeInfoSupported",
    "IsLinkHealthFiltersSupported",
};

constexpr std::string_view kGMPCapMaskBits[] = {
    "IsPortPowerStateSupported",
    "IsDeviceSoftResetSupported",
    "IsExtGPIOPortAccessSupported",
    "IsPhyConfigSupported",
    "IsVendSpecLedControlSupported",
    "IsConfigSpaceAccessSupported",
    "IsPerVLCountersSupported",
    "IsPerVLExtendedSupported",
    "IsPortLLRStatisticsSupported",
    "IsCounterGroupsSupported",
    "IsEnhancedConfigSpaceAccessSupported",
    "IsFlowMonitoringSupported",
    "IsCongestionNotificationSupported",
    "IsVirtualSwitchSupported",
    "IsPortXmitQLengthSupported",
    "IsMulticastForwardingTableSupported",
    "IsPortXmitWaitVLExtendedSupported",
    "IsExtI2CPortAccessSupported",
    "IsDiagnosticDataSupported",
    "IsMaxRetransmissionRateSupported",
    "IsAccessRegisterGMPSupported",
    "IsPortHistogramsSupported",
    "IsPoolHistogramsSupported",
    "IsVPortCountersSupported",
    "IsDiagnosticDataIdentificationSupported",
    "IsEnhPort0DeviceResetSupported",
    "IsDevInfoSupported",
    "IsMADAddlStatusSupported",
    "IsCableBurnSupported",
    "IsMirroringEventsSupported",
    "IsBERMonitoringSupported",
    "IsBERMonitoringEventsSupported",
    "IsDCQCNSupported",
    "IsPLRMaxRetransmissionRateSupported",
    "IsEffectiveCounterSupported",
    "IsRawBerPerLaneSupported",
    "IsAccessRegisterSupported",
    "IsMirroringInfoSupported",
    "IsExtendedAddressModeSupported",
    "IsSwitchNetworkInfoSupported",
    "CreditWatchdogTimeoutCounters",
    "FastRecoveryCountersSupported",
    "IsGeneralResetSupported",
    "IsBufferHistogramSupported",
    "IsPortsHistogramSupported",
    "IsPacketBufferAllocControlSupported",
    "IsPortGeneralCountersSupported",
    "IsPortRecoveryPolicyCountersSupported",
    "IsDualVSKeySupported",
};

constexpr std::string_view kPortInfoCapMaskBits[] = {
    {},
    "IsSM",
    "IsNoticeSupported",
    "IsTrapSupported",
    "IsOptionalIPDSupported",
    "IsAutomaticMigrationSupported",
    "IsSLMappingSupported",
    "IsMKeyNVRAM",
    "IsPKeyNVRAM",
    "IsLEDInfoSupported",
    "IsSMdisabled",
    "IsSystemImageGUIDSupported",
    "IsPKeySwitchExternalPortTrapSupported",
    "IsCableInfoSupported",
    "IsExtendedSpeedsSupported",
    "IsCapabilityMask2Supported",
    "IsCommunicationManagementSupported",
    "IsSNMPTunnelingSupported",
    "IsReinitSupported",
    "IsDeviceManagementSupported",
    "IsVendorClassSupported",
    "IsDRNoticeSupported",
    "IsCapabilityMaskNoticeSupported",
    "IsBootManagementSupported",
    "IsLinkRoundTripLatencySupported",
    "IsClientReregistrationSupported",
    "IsOtherLocalChangesNoticeSupported",
    "IsLinkSpeedWidthPairsTableSupported",
    "IsVendorSpecificMadsTableSupported",
    "IsMulticastPKeyTrapSuppressionSupported",
    "IsMulticastFDBTopSupported",
    "IsHierarchyInfoSupported",
};

constexpr std::string_view kPortInfoCapMask2Bits[] = {
    "IsSetNodeDescriptionSupported",
    "IsPortInfoExtendedSupported",
    "IsVirtualizationSupported",
    "IsSwitchPortStateTableSupported",
    "IsLinkWidth2xSupported",
    "IsLinkSpeedHDRSupported",
    "IsMKeyProtectBitsExtSupported",
    "IsEnhancedTrap128Supported",
    "IsPartitionTopSupported",
    "IsEnhancedQoSArbiterSupported",
    "IsLinkSpeedNDRSupported",
    "IsExtendedSpeeds2Supported",
    "IsLinkSpeedXDRSupported",
    {},
    {},
    {},
};

// clang-format on

template <std::size_t kCount>
constexpr BitNames Names(const std::string_view (&names)[kCount]) {
  for (const std::string_view name : names) {
    if (name.size() > BitName::kMostBytes) throw "a name that is too long";  // does not compile
  }
  return {names, kCount};
}

std::vector<const char*> Strings(const BitNames& names) {
  std::vector<const char*> strings;
  for (std::size_t bit = 0; bit < names.count; ++bit) strings.push_back(names.names[bit].data());
  return strings;
}

}  // namespace

constexpr BitNames kSMPCapMaskNames = Names(kSMPCapMaskBits);
constexpr BitNames kGMPCapMaskNames = Names(kGMPCapMaskBits);
constexpr BitNames kPortInfoCapMaskNames = Names(kPortInfoCapMaskBits);
constexpr BitNames kPortInfoCapMask2Names = Names(kPortInfoCapMask2Bits);

}  // namespace fabscan::generator

namespace SimInfoData {

using namespace fabscan::generator;

const std::vector<const char*> SMPCapMaskBits = Strings(kSMPCapMaskNames);
const std::vector<const char*> GMPCapMaskBits = Strings(kGMPCapMaskNames);
const std::vector<const char*> PortInfoCapMaskBits = Strings(kPortInfoCapMaskNames);
const std::vector<const char*> PortInfoCapMask2Bits = Strings(kPortInfoCapMask2Names);

}  // namespace SimInfoData
