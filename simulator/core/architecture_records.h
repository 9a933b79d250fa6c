#ifndef SIMULATOR_CORE_ARCHITECTURE_RECORDS_H
#define SIMULATOR_CORE_ARCHITECTURE_RECORDS_H

#include <infiniband/fabscan/fabscan_types.h>

#include "fields.h"

/// Attributes of the InfiniBand architecture, field by field where it places them: first bit,
/// width, field. Bits that no row names (reserved ones, and the M_Key at the start of PortInfo,
/// which no record holds) keep their value when a record is packed.
///
/// Some fields are narrower here than in the record. A value that does not fit is cut to its low
/// bits when it is packed.

namespace fabscan {
namespace simulator {

#define FIELD(member) #member, record.member
// clang-format off

template <class Visit>
constexpr void WalkFields(SMP_NodeInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  field(  0,  8, FIELD(BaseVersion));
  field(  8,  8, FIELD(ClassVersion));
  field( 16,  8, FIELD(NodeType));
  field( 24,  8, FIELD(NumPorts));
  field( 32, 64, FIELD(SystemImageGUID));
  field( 96, 64, FIELD(NodeGUID));
  field(160, 64, FIELD(PortGUID));
  field(224, 16, FIELD(PartitionCap));
  field(240, 16, FIELD(DeviceID));
  field(256, 32, FIELD(revision));
  field(288,  8, FIELD(LocalPortNum));
  field(296, 24, FIELD(VendorID));
}

template <class Visit>
constexpr void WalkFields(SMP_SwitchInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  field(  0, 16, FIELD(LinearFDBCap));
  field( 16, 16, FIELD(RandomFDBCap));
  field( 32, 16, FIELD(MCastFDBCap));
  field( 48, 16, FIELD(LinearFDBTop));
  field( 64,  8, FIELD(DefPort));
  field( 72,  8, FIELD(DefMCastPriPort));
  field( 80,  8, FIELD(DefMCastNotPriPort));
  field( 88,  5, FIELD(LifeTimeValue));
  field( 93,  1, FIELD(PortStateChange));
  field( 94,  2, FIELD(OptimizedSLVLMapping));
  field( 96, 16, FIELD(LidsPerPort));
  field(112, 16, FIELD(PartEnfCap));
  field(128,  1, FIELD(InbEnfCap));
  field(129,  1, FIELD(OutbEnfCap));
  field(130,  1, FIELD(FilterRawInbCap));
  field(131,  1, FIELD(FilterRawOutbCap));
  field(132,  1, FIELD(ENP0));
  field(144, 16, FIELD(MCastFDBTop));
}

template <class Visit>
constexpr void WalkFields(SMP_PortInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  field( 64, 64, FIELD(GIDPrefix));
  field(128, 16, FIELD(LID));
  field(144, 16, FIELD(MasterSMLID));
  field(160, 32, FIELD(CapMsk));
  field(192, 16, FIELD(DiagCode));
  field(208, 16, FIELD(MKeyLeasePeriod));
  field(224,  8, FIELD(LocalPortNum));
  field(232,  8, FIELD(LinkWidthEnabled));
  field(240,  8, FIELD(LinkWidthSup));
  field(248,  8, FIELD(LinkWidthActive));
  field(256,  4, FIELD(LinkSpeedSup));
  field(260,  4, FIELD(PortState));
  field(264,  4, FIELD(PortPhysicalState));
  field(268,  4, FIELD(LinkDownDefaultState));
  field(272,  2, FIELD(MKeyProtectBits));
  field(277,  3, FIELD(LMC));
  field(280,  4, FIELD(LinkSpeedActive));
  field(284,  4, FIELD(LinkSpeedEnabled));
  field(288,  4, FIELD(NeighborMTU));
  field(292,  4, FIELD(MasterSMSL));
  field(296,  4, FIELD(VLCap));
  field(300,  4, FIELD(InitType));
  field(304,  8, FIELD(VLHighLimit));
  field(312,  8, FIELD(VLArbitrationHighCap));
  field(320,  8, FIELD(VLArbitrationLowCap));
  field(328,  4, FIELD(InitTypeReply));
  field(332,  4, FIELD(MTUCap));
  field(336,  3, FIELD(VLStallCount));
  field(339,  5, FIELD(HOQLife));
  field(344,  4, FIELD(OperationalVLs));
  field(348,  1, FIELD(PartitionEnforcementInbound));
  field(349,  1, FIELD(PartitionEnforcementOutbound));
  field(350,  1, FIELD(FilterRawInbound));
  field(351,  1, FIELD(FilterRawOutbound));
  field(352, 16, FIELD(MKeyViolations));
  field(368, 16, FIELD(PKeyViolations));
  field(384, 16, FIELD(QKeyViolations));
  field(400,  8, FIELD(GUIDCap));
  field(408,  1, FIELD(ClientReregister));
  field(409,  2, FIELD(MulticastPKeyTrapSuppressionEnabled));
  field(411,  5, FIELD(SubnetTimeOut));
  field(419,  5, FIELD(RespTimeValue));
  field(424,  4, FIELD(LocalPhyErrors));
  field(428,  4, FIELD(OverrunErrors));
  field(432, 16, FIELD(MaxCreditHint));
  field(456, 24, FIELD(LinkRoundTripLatency));
  field(480, 16, FIELD(CapMsk2));
  field(496,  4, FIELD(LinkSpeedExtActive));
  field(500,  4, FIELD(LinkSpeedExtSup));
  field(507,  5, FIELD(LinkSpeedExtEnabled));
  // The second set of extended speeds stands in room that was reserved when the rows above were
  // laid down; a simulator that speaks to real tools takes the places that those know. The whole
  // byte goes to the field that generated files assign.
  field(448,  8, FIELD(LinkSpeedExtSup2));
  field(504,  3, FIELD(LinkSpeedExtActive2));
  field(416,  3, FIELD(LinkSpeedExtEnabled2));
}

template <class Visit>
constexpr void WalkFields(SMP_PortInfoExtended& record, Visit& visit) {
  Placer<Visit> field(visit);
  field(  0, 32, FIELD(CapMsk));
  field( 32, 16, FIELD(FECModeActive));
  field( 48, 16, FIELD(FDRFECModeSupported));
  field( 64, 16, FIELD(FDRFECModeEnabled));
  field( 80, 16, FIELD(EDRFECModeSupported));
  field( 96, 16, FIELD(EDRFECModeEnabled));
  field(112, 16, FIELD(HDRFECModeSupported));
  field(128, 16, FIELD(HDRFECModeEnabled));
  field(144, 16, FIELD(NDRFECModeSupported));
  field(160, 16, FIELD(NDRFECModeEnabled));
  field(176, 16, FIELD(PartitionTop));
}

template <class Visit>
constexpr void WalkFields(IB_ClassPortInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  field(  0,  8, FIELD(BaseVersion));
  field(  8,  8, FIELD(ClassVersion));
  field( 16, 16, FIELD(CapMsk));
  field( 32, 27, FIELD(CapMsk2));
  field( 59,  5, FIELD(RespTimeValue));
  field( 64, 64, FIELD(RedirectGID[0]));
  field(128, 64, FIELD(RedirectGID[1]));
  field(192,  8, FIELD(RedirectTC));
  field(200,  4, FIELD(RedirectSL));
  field(204, 20, FIELD(RedirectFL));
  field(224, 16, FIELD(RedirectLID));
  field(240, 16, FIELD(RedirectPKey));
  field(264, 24, FIELD(RedirectQP));
  field(288, 32, FIELD(RedirectQKey));
  field(320, 32, FIELD(TrapGID[0]));
  field(352, 32, FIELD(TrapGID[1]));
  field(384, 32, FIELD(TrapGID[2]));
  field(416, 32, FIELD(TrapGID[3]));
  field(448,  8, FIELD(TrapTC));
  field(456,  4, FIELD(TrapSL));
  field(460, 20, FIELD(TrapFL));
  field(480, 16, FIELD(TrapLID));
  field(496, 16, FIELD(TrapPKey));
  field(512,  8, FIELD(TrapHL));
  field(520, 24, FIELD(TrapQP));
  field(544, 32, FIELD(TrapQKey));
}

// clang-format on
#undef FIELD

}  // namespace simulator
}  // namespace fabscan

#endif
