#include "examples/port_values.h"

namespace fabscan {

namespace {

// Bits of link widths and speeds, and codes of maximum transfer units.
constexpr u_int64_t k1x = 1, k4x = 2, k2x = 16;
constexpr u_int64_t kSdr = 1, kDdr = 2, kQdr = 4;
constexpr u_int64_t kExtFdr = 1, kExtEdr = 2, kExtHdr = 4, kExtNdr = 8;
constexpr u_int64_t kExt2Xdr = 1;
constexpr u_int64_t k2048 = 4, k4096 = 5;

constexpr u_int64_t kLegacy = kSdr | kDdr | kQdr;
constexpr u_int64_t kToEdr = kExtFdr | kExtEdr, kToHdr = kToEdr | kExtHdr,
                    kToNdr = kToHdr | kExtNdr;
constexpr u_int64_t kAllWidths = k1x | k2x | k4x;

// clang-format off

const FieldTable kLink = {
    //                              EDR        HDR         NDR         XDR
    {"LinkWidthSup",              {k1x | k4x, kAllWidths, kAllWidths, kAllWidths}},
    {"LinkWidthEnabled",          {k1x | k4x, kAllWidths, k1x | k4x,  k4x}},
    {"LinkWidthActive",           {k4x,       k4x,        k4x,        k4x}},
    {"LinkSpeedSup",              {kLegacy,   kLegacy,    kLegacy,    kSdr}},
    {"LinkSpeedEnabled",          {kLegacy,   kLegacy,    kSdr,       kSdr}},
    {"LinkSpeedActive",           {kQdr,      kQdr,       kSdr,       kSdr}},
    {"LinkSpeedExtSup",           {kToEdr,    kToHdr,     kToNdr,     kToNdr}},
    {"LinkSpeedExtEnabled",       {kToEdr,    kToHdr,     kToNdr,     kToNdr}},
    {"LinkSpeedExtActive",        {kExtEdr,   kExtHdr,    kExtNdr,    0}},
    {"LinkSpeedExtSup2",          {0,         0,          0,          kExt2Xdr}},
    {"LinkSpeedExtEnabled2",      {0,         0,          0,          kExt2Xdr}},
    {"LinkSpeedExtActive2",       {0,         0,          0,          kExt2Xdr}},
    {"MTUCap",                    {k4096,     k4096,      k4096,      k4096}},
    {"NeighborMTU",               {k4096,     k4096,      k4096,      k4096}},
    {"LocalPhyErrors",            {8,         8,          8,          8}},
    {"OverrunErrors",             {8,         8,          8,          8}},
    {"LinkRoundTripLatency",      {61,        57,         52,         49}},
    {"MaxCreditHint",             {0,         40,         56,         64}},
    {"RespTimeValue",             {18,        18,         16,         16}},  // 1 s, 0.3 s
};

const FieldTable kByRole = {
    //                                       switch switch adapter router
    //                                       port 0 port   port    port
    {"VLCap",                              {1,     4,     3,      4}},  // 1, 8, 4 and 8 data lanes
    {"OperationalVLs",                     {1,     3,     3,      3}},
    {"VLHighLimit",                        {0,     4,     4,      2}},
    {"VLArbitrationHighCap",               {0,     8,     8,      16}},
    {"VLArbitrationLowCap",                {0,     8,     8,      16}},
    {"VLStallCount",                       {0,     7,     0,      7}},
    {"HOQLife",                            {0,     18,    0,      19}},
    {"PartitionEnforcementInbound",        {0,     1,     0,      1}},
    {"PartitionEnforcementOutbound",       {0,     1,     0,      1}},
    {"LinkDownDefaultState",               {0,     2,     2,      2}},  // polling
    {"SubnetTimeOut",                      {18,    0,     18,     18}},
    {"GUIDCap",                            {1,     0,     128,    8}},
    {"PKeyViolations",                     {0,     0,     2,      0}},
};

// Ports to a management unit have one lane, ports to an aggregation node four.
const FieldTable kSpecialLink = {
    //                              special    FNM        FNM1       split
    {"LinkWidthSup",              {k4x,       k1x,       k1x | k2x, k1x | k2x}},
    {"LinkWidthEnabled",          {k4x,       k1x,       k2x,       k1x | k2x}},
    {"LinkWidthActive",           {k4x,       k1x,       k2x,       k2x}},
    {"LinkSpeedSup",              {kSdr,      kLegacy,   kLegacy,   kLegacy}},
    {"LinkSpeedEnabled",          {kSdr,      kLegacy,   kLegacy,   kLegacy}},
    {"LinkSpeedActive",           {kSdr,      kQdr,      kQdr,      kQdr}},
    {"LinkSpeedExtSup",           {kToHdr,    kExtEdr,   kToEdr,    kToEdr}},
    {"LinkSpeedExtEnabled",       {kToHdr,    kExtEdr,   kToEdr,    kToEdr}},
    {"LinkSpeedExtActive",        {kExtHdr,   kExtEdr,   kExtEdr,   kExtEdr}},
    {"LinkSpeedExtSup2",          {0,         0,         0,         0}},
    {"LinkSpeedExtEnabled2",      {0,         0,         0,         0}},
    {"LinkSpeedExtActive2",       {0,         0,         0,         0}},
    {"MTUCap",                    {k4096,     k2048,     k2048,     k4096}},
    {"NeighborMTU",               {k4096,     k2048,     k2048,     k4096}},
};

// A port without a link has its initial values.
const FieldTable kDown = {
    {"LinkWidthActive",           {k1x,       k1x,       k1x,       k1x}},
    {"LinkSpeedActive",           {kSdr,      kSdr,      kSdr,      kSdr}},
    {"LinkSpeedExtActive",        {0,         0,         0,         0}},
    {"LinkSpeedExtActive2",       {0,         0,         0,         0}},
    {"LinkRoundTripLatency",      {0xFFFFFF,  0xFFFFFF,  0xFFFFFF,  0xFFFFFF}},  // unknown
};

// Bits of modes: no correction, fire code, and Reed-Solomon codes of falling latency.
const FieldTable kPortInfoExtended = {
    //                              EDR        HDR         NDR         XDR
    {"CapMsk",                    {0x1,       0x3,        0x7,        0xF}},
    {"FECModeActive",             {1,         2,          3,          3}},
    {"FDRFECModeSupported",       {0x3,       0x3,        0x3,        0x2}},
    {"FDRFECModeEnabled",         {0x2,       0x2,        0x2,        0x2}},
    {"EDRFECModeSupported",       {0x7,       0x7,        0x7,        0x5}},
    {"EDRFECModeEnabled",         {0x4,       0x4,        0x4,        0x4}},
    {"HDRFECModeSupported",       {0,         0xC,        0xC,        0x8}},
    {"HDRFECModeEnabled",         {0,         0x8,        0x8,        0x8}},
    {"NDRFECModeSupported",       {0,         0,          0x1C,       0x18}},
    {"NDRFECModeEnabled",         {0,         0,          0x10,       0x10}},
    {"PartitionTop",              {2,         2,          3,          3}},
};

const FieldTable kExtendedPortInfo = {
    //                              EDR        HDR         NDR         XDR
    {"LinkSpeedSupported",        {0x3,       0x3,        0x1,        0x1}},
    {"CapabilityMask",            {0x17,      0x57,       0xD7,       0x1D7}},
    {"FECModeActive",             {1,         2,          3,          3}},
    {"RetransMode",               {2,         1,          1,          1}},
    {"FDR10FECModeSupported",     {0xB,       0xB,        0xB,        0xA}},
    {"FDRFECModeSupported",       {0x3,       0x3,        0x3,        0x2}},
    {"EDR20FECModeSupported",     {0x9,       0x9,        0x9,        0x9}},
    {"EDRFECModeSupported",       {0x7,       0x7,        0x7,        0x5}},
    {"FDR10RetranSupported",      {0x4,       0x4,        0,          0}},
    {"FDRRetranSupported",        {0x6,       0x6,        0x2,        0}},
    {"EDR20RetranSupported",      {0x5,       0x5,        0x4,        0}},
    {"EDRRetranSupported",        {0xE,       0xE,        0x6,        0x4}},
    {"HDRFECModeSupported",       {0,         0xC,        0xC,        0x8}},
    {"NDRFECModeSupported",       {0,         0,          0x1C,       0x18}},
    {"XDRFECModeSupported",       {0,         0,          0,          0x30}},
};

// clang-format on

/// The column of `kSpecialLink`.
std::size_t SpecialColumn(PortKind kind) {
  switch (kind) {
    case PortKind::kSpecial:
      return 0;
    case PortKind::kFnm:
      return 1;
    case PortKind::kFnm1:
      return 2;
    default:
      return 3;
  }
}

constexpr u_int8_t kPolling = 2, kLinkUp = 5;

}  // namespace

SMP_PortInfo MakePortInfo(const PortModel& port) {
  auto info = MakeRecord<SMP_PortInfo>(kLink, port.generation);
  SetFields(info, kByRole, static_cast<std::size_t>(port.role));
  if (port.kind != PortKind::kRegular) SetFields(info, kSpecialLink, SpecialColumn(port.kind));
  const bool is_down = port.state == IB_PORT_STATE_DOWN;
  if (is_down) SetFields(info, kDown, port.generation);
  info.GIDPrefix = 0xFE80000000000000;
  info.PortState = port.state;
  info.PortPhysicalState = is_down ? kPolling : kLinkUp;
  info.CapMsk = PortCapMask(port.role);
  info.CapMsk2 = PortCapMask2(port.role, port.generation);
  return info;
}

SMP_PortInfoExtended MakePortInfoExtended(const PortModel& port) {
  auto info = MakeRecord<SMP_PortInfoExtended>(kPortInfoExtended, port.generation);
  if (port.state == IB_PORT_STATE_DOWN) info.FECModeActive = 0;
  return info;
}

SMP_TarnExtPortInfo MakeExtendedPortInfo(const PortModel& port, u_int8_t special_type) {
  auto info = MakeRecord<SMP_TarnExtPortInfo>(kExtendedPortInfo, port.generation);
  if (port.state == IB_PORT_STATE_DOWN) info.FECModeActive = 0;
  if (port.kind == PortKind::kSpecial) {
    info.IsSpecialPort = 1;
    info.SpecialPortType = special_type;
    info.SpecialPortCapabilityMask = 0x6;
  }
  info.is_fnm_port = port.kind == PortKind::kFnm || port.kind == PortKind::kFnm1;
  return info;
}

}  // namespace fabscan
