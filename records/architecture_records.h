#ifndef FABSCAN_RECORDS_ARCHITECTURE_RECORDS_H
#define FABSCAN_RECORDS_ARCHITECTURE_RECORDS_H

#include "records/record_table.h"

// Attributes that the InfiniBand architecture lays out: field, first bit, bits, in the order of the
// structure. Bits count from the most significant bit of the first byte. Bits without a row are
// reserved, or the M_Key at the start of PortInfo, which must never be stored.
//
// DUMPED: the generator writes the field, so a snapshot must have it. KEPT: a snapshot can
// have it; if missing, it is 0.
//
// libibmad 44 swaps the halves of the words that hold the HDR and NDR modes of PortInfoExtended;
// its HDR mode overlaps its EDR mode. They alternate, as in the rows below.
//
// libibmad knows the second set of extended speeds of PortInfo from rdma-core 49 on.

namespace fabscan {

// clang-format off
#define SMP(type) FABSCAN_RECORD_ROWS(type, kSmpDataBytes)
#define GMP(type) FABSCAN_RECORD_ROWS(type, kGmpDataBytes)
#define DUMPED(member, first_bit, ...) FABSCAN_ROW(member, true,  first_bit, __VA_ARGS__)
#define KEPT(member, first_bit, ...)   FABSCAN_ROW(member, false, first_bit, __VA_ARGS__)

SMP(SMP_NodeInfo) = {
    KEPT(  NumPorts,         24,  8),
    KEPT(  NodeType,         16,  8),
    DUMPED(ClassVersion,      8,  8),
    DUMPED(BaseVersion,       0,  8),
    KEPT(  SystemImageGUID,  32, 64, Identity::kGuid),
    KEPT(  NodeGUID,         96, 64, Identity::kGuid),
    KEPT(  PortGUID,        160, 64, Identity::kGuid),
    DUMPED(DeviceID,        240, 16),
    DUMPED(PartitionCap,    224, 16),
    DUMPED(revision,        256, 32),
    DUMPED(VendorID,        296, 24),
    KEPT(  LocalPortNum,    288,  8),
};};

SMP(SMP_SwitchInfo) = {
    DUMPED(RandomFDBCap,          16, 16),
    DUMPED(LinearFDBCap,           0, 16),
    KEPT(  LinearFDBTop,          48, 16),
    DUMPED(MCastFDBCap,           32, 16),
    DUMPED(OptimizedSLVLMapping,  94,  2),
    KEPT(  PortStateChange,       93,  1),
    KEPT(  LifeTimeValue,         88,  5),
    KEPT(  DefMCastNotPriPort,    80,  8),
    KEPT(  DefMCastPriPort,       72,  8),
    KEPT(  DefPort,               64,  8),
    DUMPED(PartEnfCap,           112, 16),
    DUMPED(LidsPerPort,           96, 16),
    KEPT(  MCastFDBTop,          144, 16),
    DUMPED(ENP0,                 132,  1),
    DUMPED(FilterRawOutbCap,     131,  1),
    DUMPED(FilterRawInbCap,      130,  1),
    DUMPED(OutbEnfCap,           129,  1),
    DUMPED(InbEnfCap,            128,  1),
};};

SMP(SMP_PortInfo) = {
    KEPT(  GIDPrefix,                            64, 64, Identity::kGidHalf),
    KEPT(  LID,                                 128, 16),
    KEPT(  MasterSMLID,                         144, 16),
    DUMPED(CapMsk,                              160, 32),
    KEPT(  DiagCode,                            192, 16),
    KEPT(  MKeyLeasePeriod,                     208, 16),
    KEPT(  LocalPortNum,                        224,  8),
    KEPT(  LinkWidthEnabled,                    232,  8),
    DUMPED(LinkWidthSup,                        240,  8),
    KEPT(  LinkWidthActive,                     248,  8),
    DUMPED(LinkSpeedSup,                        256,  4),
    KEPT(  PortState,                           260,  4),
    KEPT(  PortPhysicalState,                   264,  4),
    KEPT(  LinkDownDefaultState,                268,  4),
    KEPT(  MKeyProtectBits,                     272,  2),
    KEPT(  LMC,                                 277,  3),
    KEPT(  LinkSpeedActive,                     280,  4),
    KEPT(  LinkSpeedEnabled,                    284,  4),
    KEPT(  NeighborMTU,                         288,  4),
    KEPT(  MasterSMSL,                          292,  4),
    KEPT(  VLCap,                               296,  4),
    KEPT(  InitType,                            300,  4),
    KEPT(  VLHighLimit,                         304,  8),
    KEPT(  VLArbitrationHighCap,                312,  8),
    KEPT(  VLArbitrationLowCap,                 320,  8),
    KEPT(  InitTypeReply,                       328,  4),
    DUMPED(MTUCap,                              332,  4),
    KEPT(  VLStallCount,                        336,  3),
    KEPT(  HOQLife,                             339,  5),
    KEPT(  OperationalVLs,                      344,  4),
    KEPT(  PartitionEnforcementInbound,         348,  1),
    KEPT(  PartitionEnforcementOutbound,        349,  1),
    KEPT(  FilterRawInbound,                    350,  1),
    KEPT(  FilterRawOutbound,                   351,  1),
    KEPT(  MKeyViolations,                      352, 16),
    KEPT(  PKeyViolations,                      368, 16),
    KEPT(  QKeyViolations,                      384, 16),
    KEPT(  GUIDCap,                             400,  8),
    KEPT(  ClientReregister,                    408,  1),
    KEPT(  MulticastPKeyTrapSuppressionEnabled, 409,  2),
    KEPT(  SubnetTimeOut,                       411,  5),
    KEPT(  RespTimeValue,                       419,  5),
    KEPT(  LocalPhyErrors,                      424,  4),
    KEPT(  OverrunErrors,                       428,  4),
    KEPT(  MaxCreditHint,                       432, 16),
    KEPT(  LinkRoundTripLatency,                456, 24),
    KEPT(  LinkSpeedExtActive2,                 449,  2),
    DUMPED(LinkSpeedExtSup2,                    451,  2),
    KEPT(  LinkSpeedExtEnabled2,                453,  3),
    KEPT(  LinkSpeedExtActive,                  496,  4),
    DUMPED(LinkSpeedExtSup,                     500,  4),
    KEPT(  LinkSpeedExtEnabled,                 507,  5),
    DUMPED(CapMsk2,                             480, 16),
};};

SMP(SMP_PortInfoExtended) = {
    DUMPED(CapMsk,                0, 32),
    DUMPED(FDRFECModeSupported,  48, 16),
    DUMPED(FECModeActive,        32, 16),
    DUMPED(EDRFECModeSupported,  80, 16),
    KEPT(  FDRFECModeEnabled,    64, 16),
    DUMPED(HDRFECModeSupported, 112, 16),
    KEPT(  EDRFECModeEnabled,    96, 16),
    DUMPED(NDRFECModeSupported, 144, 16),
    KEPT(  HDRFECModeEnabled,   128, 16),
    KEPT(  PartitionTop,        176, 16),
    KEPT(  NDRFECModeEnabled,   160, 16),
};};

GMP(IB_ClassPortInfo) = {
    DUMPED(CapMsk,         16, 16),
    DUMPED(ClassVersion,    8,  8),
    DUMPED(BaseVersion,     0,  8),
    DUMPED(RespTimeValue,  59,  5),
    DUMPED(CapMsk2,        32, 27),
    DUMPED(RedirectGID,    64, 64, Identity::kGidHalf),
    DUMPED(RedirectFL,    204, 20),
    DUMPED(RedirectSL,    200,  4),
    DUMPED(RedirectTC,    192,  8),
    DUMPED(RedirectPKey,  240, 16),
    DUMPED(RedirectLID,   224, 16),
    DUMPED(RedirectQP,    264, 24),
    DUMPED(RedirectQKey,  288, 32, Identity::kQueueKey),
    KEPT(  TrapGID,       320, 32, Identity::kGidHalf),
    KEPT(  TrapFL,        460, 20),
    KEPT(  TrapSL,        456,  4),
    KEPT(  TrapTC,        448,  8),
    KEPT(  TrapPKey,      496, 16),
    KEPT(  TrapLID,       480, 16),
    KEPT(  TrapQP,        520, 24),
    KEPT(  TrapHL,        512,  8),
    KEPT(  TrapQKey,      544, 32, Identity::kQueueKey),
};};

#undef KEPT
#undef DUMPED
#undef GMP
#undef SMP
// clang-format on

}  // namespace fabscan

#endif
