#include "examples/capability_values.h"

#include "fabscan/fabscan_sim_info_dump.h"

namespace fabscan {

namespace {

// clang-format off

const FieldTable kSwitchSmp = {
    //                                                 EDR HDR NDR XDR
    {"IsPrivateLinearForwardingSupported",            {1,  1,  1,  1}},
    {"IsAdaptiveRoutingRev1Supported",                {1,  1,  1,  1}},
    {"IsTemperatureSensingSupported",                 {1,  1,  1,  1}},
    {"IsCableInfoSupported",                          {1,  1,  1,  1}},
    {"IsExtendedPortInfoSupported",                   {1,  1,  1,  1}},
    {"IsAccessRegisterSupported",                     {1,  1,  1,  1}},
    {"IsPortSLToPrivateLFTMapSupported",              {1,  1,  1,  1}},
    {"IsExtendedNodeInfoSupported",                   {1,  1,  1,  1}},
    {"IsAdvancedRetransAndFECModesSupported",         {1,  1,  1,  0}},
    {"IsTallyAggrNodeSupported",                      {0,  1,  1,  1}},
    {"IsVL2VLPerSWIDSupported",                       {1,  0,  0,  0}},
    {"IsSpecialPortsMarkingSupported",                {0,  1,  1,  1}},
    {"IsDCQCNSupported",                              {1,  1,  1,  1}},
    {"IsLinearForwardingTableSplitSupported",         {0,  0,  1,  1}},
    {"IsFastRecoverySupported",                       {0,  1,  1,  1}},
    {"IsWrenFabricManagementSupported",               {0,  0,  0,  1}},
    {"IsWrenReductionManagementSupported",            {0,  0,  0,  1}},
    {"IsExtendedSwitchInfoSupported",                 {1,  1,  1,  1}},
    {"IsUtcTimestampSupported",                       {0,  0,  0,  1}},
};

const FieldTable kAdapterSmp = {
    //                                                 EDR HDR NDR XDR
    {"IsExtendedPortInfoSupported",                   {0,  1,  1,  1}},
    {"IsAccessRegisterSupported",                     {1,  1,  1,  1}},
    {"IsExtendedNodeInfoSupported",                   {0,  0,  1,  1}},
    {"IsVirtualizationSupported",                     {0,  1,  1,  1}},
    {"IsDCQCNSupported",                              {1,  1,  1,  1}},
    {"IsChassisInfoSupported",                        {0,  0,  1,  1}},
};

const FieldTable kRouterSmp = {
    {"IsExtendedPortInfoSupported",                   {1,  1,  1,  1}},
    {"IsExtendedNodeInfoSupported",                   {1,  1,  1,  1}},
    {"IsDCQCNSupported",                              {1,  1,  1,  1}},
    {"IsRouterLIDSupported",                          {1,  1,  1,  1}},
};

const FieldTable kBasicSmp = {
    {"IsExtendedPortInfoSupported",                   {1,  1,  1,  1}},
    {"IsExtendedNodeInfoSupported",                   {1,  1,  1,  1}},
};

const FieldTable kGmp = {
    //                                                 EDR HDR NDR XDR
    {"IsDeviceSoftResetSupported",                    {1,  1,  1,  1}},
    {"IsConfigSpaceAccessSupported",                  {1,  1,  1,  0}},
    {"IsCounterGroupsSupported",                      {1,  1,  1,  1}},
    {"IsDiagnosticDataSupported",                     {1,  1,  1,  1}},
    {"IsAccessRegisterGMPSupported",                  {0,  1,  1,  1}},
    {"IsDevInfoSupported",                            {1,  1,  1,  1}},
    {"IsBERMonitoringSupported",                      {0,  0,  1,  1}},
    {"IsDCQCNSupported",                              {1,  1,  1,  1}},
    {"IsAccessRegisterSupported",                     {1,  1,  1,  1}},
    {"CreditWatchdogTimeoutCounters",                 {0,  1,  1,  1}},
    {"FastRecoveryCountersSupported",                 {0,  0,  1,  1}},
    {"IsPortGeneralCountersSupported",                {0,  1,  1,  1}},
};

const FieldTable kPortCapabilities = {
    //                                                 switch  switch  adapter router
    //                                                 port 0  port    port    port
    {"IsNoticeSupported",                             {0,      0,      1,      1}},
    {"IsTrapSupported",                               {1,      0,      1,      1}},
    {"IsAutomaticMigrationSupported",                 {0,      0,      1,      0}},
    {"IsSLMappingSupported",                          {1,      1,      1,      1}},
    {"IsLEDInfoSupported",                            {0,      0,      1,      0}},
    {"IsSystemImageGUIDSupported",                    {1,      0,      1,      1}},
    {"IsExtendedSpeedsSupported",                     {1,      1,      1,      1}},
    {"IsCapabilityMask2Supported",                    {1,      1,      1,      1}},
    {"IsCommunicationManagementSupported",            {0,      0,      1,      1}},
    {"IsVendorClassSupported",                        {1,      0,      1,      1}},
    {"IsCapabilityMaskNoticeSupported",               {1,      0,      1,      0}},
    {"IsClientReregistrationSupported",               {0,      0,      1,      1}},
    {"IsOtherLocalChangesNoticeSupported",            {1,      0,      0,      0}},
    {"IsLinkRoundTripLatencySupported",               {0,      1,      0,      0}},
    {"IsMulticastPKeyTrapSuppressionSupported",       {1,      0,      0,      0}},
    {"IsMulticastFDBTopSupported",                    {1,      0,      0,      0}},
};

const FieldTable kPortCapabilities2 = {
    //                                                 EDR HDR NDR XDR
    {"IsSetNodeDescriptionSupported",                 {1,  1,  1,  1}},
    {"IsPortInfoExtendedSupported",                   {1,  1,  1,  1}},
    {"IsLinkWidth2xSupported",                        {0,  1,  1,  1}},
    {"IsLinkSpeedHDRSupported",                       {0,  1,  1,  1}},
    {"IsLinkSpeedNDRSupported",                       {0,  0,  1,  1}},
    {"IsExtendedSpeeds2Supported",                    {0,  0,  0,  1}},
    {"IsLinkSpeedXDRSupported",                       {0,  0,  0,  1}},
};

const FieldTable kPortCapabilities2OfRole = {
    //                                                 switch  switch  adapter router
    //                                                 port 0  port    port    port
    {"IsVirtualizationSupported",                     {0,      0,      1,      0}},
    {"IsSwitchPortStateTableSupported",               {1,      1,      0,      0}},
};

// clang-format on

}  // namespace

capability_mask_t SwitchSmpMask(Generation generation) {
  return MakeMask(SimInfoData::SMPCapMaskBits, kSwitchSmp, generation);
}

capability_mask_t RouterSmpMask() {
  return MakeMask(SimInfoData::SMPCapMaskBits, kRouterSmp, kNdr);
}

capability_mask_t AdapterSmpMask(Generation generation) {
  return MakeMask(SimInfoData::SMPCapMaskBits, kAdapterSmp, generation);
}

capability_mask_t BasicSmpMask() { return MakeMask(SimInfoData::SMPCapMaskBits, kBasicSmp, kNdr); }

capability_mask_t GmpMask(Generation generation) {
  return MakeMask(SimInfoData::GMPCapMaskBits, kGmp, generation);
}

u_int32_t PortCapMask(PortRole role) {
  const auto column = static_cast<std::size_t>(role);
  return MakeMask(SimInfoData::PortInfoCapMaskBits, kPortCapabilities, column).mask[0];
}

u_int16_t PortCapMask2(PortRole role, Generation generation) {
  const auto& names = SimInfoData::PortInfoCapMask2Bits;
  const auto column = static_cast<std::size_t>(role);
  const u_int32_t of_role = MakeMask(names, kPortCapabilities2OfRole, column).mask[0];
  const u_int32_t of_generation = MakeMask(names, kPortCapabilities2, generation).mask[0];
  return static_cast<u_int16_t>(of_role | of_generation);
}

}  // namespace fabscan
