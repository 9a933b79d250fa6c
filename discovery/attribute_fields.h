#ifndef FABSCAN_DISCOVERY_ATTRIBUTE_FIELDS_H
#define FABSCAN_DISCOVERY_ATTRIBUTE_FIELDS_H

#include <infiniband/fabscan/fabscan_types.h>

#include "discovery/payload.h"

namespace fabscan {

/// Where one field of a record lies in the attribute's payload.
template <class Record>
struct WireField {
  const char* name;
  unsigned first_bit;
  unsigned bits;
  void (*set)(Record& record, u_int64_t value);
};

template <class Record>
void Decode(const Payload& payload, const WireField<Record>& field, Record& record) {
  field.set(record, ReadBits(payload, field.first_bit, field.bits));
}

#define FABSCAN_WIRE_FIELD(record, field, first_bit, bits)                             \
  WireField<record> {                                                                  \
#field, (first_bit), (bits), [](auto& to, u_int64_t value) {                         \
      static_assert((bits) <= 8 * sizeof(to.field), "field too narrow: " #field);    \
      to.field = static_cast<decltype(to.field)>(value);                             \
    } \
  }

// clang-format off

#define NODE(field, first_bit, bits) FABSCAN_WIRE_FIELD(SMP_NodeInfo, field, first_bit, bits)
inline constexpr WireField<SMP_NodeInfo> kNodeInfoFields[] = {
    NODE(BaseVersion,       0,  8),
    NODE(ClassVersion,      8,  8),
    NODE(NodeType,         16,  8),
    NODE(NumPorts,         24,  8),
    NODE(SystemImageGUID,  32, 64),
    NODE(NodeGUID,         96, 64),
    NODE(PortGUID,        160, 64),
    NODE(PartitionCap,    224, 16),
    NODE(DeviceID,        240, 16),
    NODE(revision,        256, 32),
    NODE(LocalPortNum,    288,  8),
    NODE(VendorID,        296, 24),
};
#undef NODE

#define SWITCH(field, first_bit, bits) FABSCAN_WIRE_FIELD(SMP_SwitchInfo, field, first_bit, bits)
inline constexpr WireField<SMP_SwitchInfo> kSwitchInfoFields[] = {
    SWITCH(LinearFDBCap,           0, 16),
    SWITCH(RandomFDBCap,          16, 16),
    SWITCH(MCastFDBCap,           32, 16),
    SWITCH(LinearFDBTop,          48, 16),
    SWITCH(DefPort,               64,  8),
    SWITCH(DefMCastPriPort,       72,  8),
    SWITCH(DefMCastNotPriPort,    80,  8),
    SWITCH(LifeTimeValue,         88,  5),
    SWITCH(PortStateChange,       93,  1),
    SWITCH(OptimizedSLVLMapping,  94,  2),
    SWITCH(LidsPerPort,           96, 16),
    SWITCH(PartEnfCap,           112, 16),
    SWITCH(InbEnfCap,            128,  1),
    SWITCH(OutbEnfCap,           129,  1),
    SWITCH(FilterRawInbCap,      130,  1),
    SWITCH(FilterRawOutbCap,     131,  1),
    SWITCH(ENP0,                 132,  1),
    SWITCH(MCastFDBTop,          144, 16),
};
#undef SWITCH

#define PORT(field, first_bit, bits) FABSCAN_WIRE_FIELD(SMP_PortInfo, field, first_bit, bits)
inline constexpr WireField<SMP_PortInfo> kPortInfoFields[] = {
    // bits 0 to 63 are the management key, which is nobody's to keep
    PORT(GIDPrefix,                            64, 64),
    PORT(LID,                                 128, 16),
    PORT(MasterSMLID,                         144, 16),
    PORT(CapMsk,                              160, 32),
    PORT(DiagCode,                            192, 16),
    PORT(MKeyLeasePeriod,                     208, 16),
    PORT(LocalPortNum,                        224,  8),
    PORT(LinkWidthEnabled,                    232,  8),
    PORT(LinkWidthSup,                        240,  8),
    PORT(LinkWidthActive,                     248,  8),
    PORT(LinkSpeedSup,                        256,  4),
    PORT(PortState,                           260,  4),
    PORT(PortPhysicalState,                   264,  4),
    PORT(LinkDownDefaultState,                268,  4),
    PORT(MKeyProtectBits,                     272,  2),
    PORT(LMC,                                 277,  3),
    PORT(LinkSpeedActive,                     280,  4),
    PORT(LinkSpeedEnabled,                    284,  4),
    PORT(NeighborMTU,                         288,  4),
    PORT(MasterSMSL,                          292,  4),
    PORT(VLCap,                               296,  4),
    PORT(InitType,                            300,  4),
    PORT(VLHighLimit,                         304,  8),
    PORT(VLArbitrationHighCap,                312,  8),
    PORT(VLArbitrationLowCap,                 320,  8),
    PORT(InitTypeReply,                       328,  4),
    PORT(MTUCap,                              332,  4),
    PORT(VLStallCount,                        336,  3),
    PORT(HOQLife,                             339,  5),
    PORT(OperationalVLs,                      344,  4),
    PORT(PartitionEnforcementInbound,         348,  1),
    PORT(PartitionEnforcementOutbound,        349,  1),
    PORT(FilterRawInbound,                    350,  1),
    PORT(FilterRawOutbound,                   351,  1),
    PORT(MKeyViolations,                      352, 16),
    PORT(PKeyViolations,                      368, 16),
    PORT(QKeyViolations,                      384, 16),
    PORT(GUIDCap,                             400,  8),
    PORT(ClientReregister,                    408,  1),
    PORT(MulticastPKeyTrapSuppressionEnabled, 409,  2),
    PORT(SubnetTimeOut,                       411,  5),
    PORT(RespTimeValue,                       419,  5),
    PORT(LocalPhyErrors,                      424,  4),
    PORT(OverrunErrors,                       428,  4),
    PORT(MaxCreditHint,                       432, 16),
    PORT(LinkRoundTripLatency,                456, 24),
    PORT(CapMsk2,                             480, 16),
    PORT(LinkSpeedExtActive,                  496,  4),
    PORT(LinkSpeedExtSup,                     500,  4),
    PORT(LinkSpeedExtEnabled,                 507,  5),
};
#undef PORT

// Ten numbers of 16 bits, one after the other. libibmad 44 places the four of HDR and NDR in the
// other half of their words, where HDRFECModeSupported would lie on top of EDRFECModeEnabled.
#define EXTENDED(field, first_bit, bits) \
  FABSCAN_WIRE_FIELD(SMP_PortInfoExtended, field, first_bit, bits)
inline constexpr WireField<SMP_PortInfoExtended> kPortInfoExtendedFields[] = {
    EXTENDED(CapMsk,                0, 32),
    EXTENDED(FECModeActive,        32, 16),
    EXTENDED(FDRFECModeSupported,  48, 16),
    EXTENDED(FDRFECModeEnabled,    64, 16),
    EXTENDED(EDRFECModeSupported,  80, 16),
    EXTENDED(EDRFECModeEnabled,    96, 16),
    EXTENDED(HDRFECModeSupported, 112, 16),
    EXTENDED(HDRFECModeEnabled,   128, 16),
    EXTENDED(NDRFECModeSupported, 144, 16),
    EXTENDED(NDRFECModeEnabled,   160, 16),
    EXTENDED(PartitionTop,        176, 16),
};
#undef EXTENDED

// clang-format on

#undef FABSCAN_WIRE_FIELD

}  // namespace fabscan

#endif
