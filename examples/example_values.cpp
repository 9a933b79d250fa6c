#include "example_values.h"

namespace fabscan {

namespace {

/// A field that is narrower on the wire than the number that holds it.
struct Narrow {
  std::string_view record;
  std::string_view field;
  unsigned bits;
};

// clang-format off
constexpr Narrow kNarrow[] = {
    {"SMP_NodeInfo", "VendorID", 24},

    {"SMP_SwitchInfo", "OptimizedSLVLMapping", 2}, {"SMP_SwitchInfo", "PortStateChange", 1},
    {"SMP_SwitchInfo", "LifeTimeValue", 5},        {"SMP_SwitchInfo", "ENP0", 1},
    {"SMP_SwitchInfo", "FilterRawOutbCap", 1},     {"SMP_SwitchInfo", "FilterRawInbCap", 1},
    {"SMP_SwitchInfo", "OutbEnfCap", 1},           {"SMP_SwitchInfo", "InbEnfCap", 1},

    {"SMP_PortInfo", "LinkSpeedSup", 4},         {"SMP_PortInfo", "PortState", 4},
    {"SMP_PortInfo", "PortPhysicalState", 4},    {"SMP_PortInfo", "LinkDownDefaultState", 4},
    {"SMP_PortInfo", "MKeyProtectBits", 2},      {"SMP_PortInfo", "LMC", 3},
    {"SMP_PortInfo", "LinkSpeedActive", 4},      {"SMP_PortInfo", "LinkSpeedEnabled", 4},
    {"SMP_PortInfo", "NeighborMTU", 4},          {"SMP_PortInfo", "MasterSMSL", 4},
    {"SMP_PortInfo", "VLCap", 4},                {"SMP_PortInfo", "InitType", 4},
    {"SMP_PortInfo", "InitTypeReply", 4},        {"SMP_PortInfo", "MTUCap", 4},
    {"SMP_PortInfo", "VLStallCount", 3},         {"SMP_PortInfo", "HOQLife", 5},
    {"SMP_PortInfo", "OperationalVLs", 4},       {"SMP_PortInfo", "PartitionEnforcementInbound", 1},
    {"SMP_PortInfo", "FilterRawInbound", 1},     {"SMP_PortInfo", "PartitionEnforcementOutbound", 1},
    {"SMP_PortInfo", "FilterRawOutbound", 1},    {"SMP_PortInfo", "ClientReregister", 1},
    {"SMP_PortInfo", "SubnetTimeOut", 5},        {"SMP_PortInfo", "MulticastPKeyTrapSuppressionEnabled", 2},
    {"SMP_PortInfo", "RespTimeValue", 5},        {"SMP_PortInfo", "LocalPhyErrors", 4},
    {"SMP_PortInfo", "OverrunErrors", 4},        {"SMP_PortInfo", "LinkRoundTripLatency", 24},
    {"SMP_PortInfo", "LinkSpeedExtActive2", 3},  {"SMP_PortInfo", "LinkSpeedExtSup2", 3},
    {"SMP_PortInfo", "LinkSpeedExtEnabled2", 3}, {"SMP_PortInfo", "LinkSpeedExtActive", 4},
    {"SMP_PortInfo", "LinkSpeedExtSup", 4},      {"SMP_PortInfo", "LinkSpeedExtEnabled", 4},

    {"IB_ClassPortInfo", "RespTimeValue", 5}, {"IB_ClassPortInfo", "CapMsk2", 27},
    {"IB_ClassPortInfo", "RedirectFL", 20},   {"IB_ClassPortInfo", "RedirectSL", 4},
    {"IB_ClassPortInfo", "RedirectQP", 24},   {"IB_ClassPortInfo", "TrapFL", 20},
    {"IB_ClassPortInfo", "TrapSL", 4},        {"IB_ClassPortInfo", "TrapQP", 24},
};
// clang-format on

unsigned WireBits(const RecordTable& table, const FieldRow& row) {
  for (const Narrow& narrow : kNarrow) {
    if (narrow.record == table.name && narrow.field == row.name) return narrow.bits;
  }
  return row.bits();
}

/// The value of the record's number `index`: no two bytes of one record are alike, and wider
/// numbers use their highest bits too.
u_int64_t Value(unsigned bits, unsigned index, unsigned seed) {
  const u_int64_t mixed = u_int64_t{7} * index + u_int64_t{101} * seed;
  if (bits == 1) return mixed & 1U;
  const u_int64_t byte = 1 + mixed % ((u_int64_t{1} << (bits < 8 ? bits : 8)) - 1);
  if (bits <= 8) return byte;
  return (byte << (bits - 8)) + (u_int64_t{index} + 1) * (bits > 32 ? 0x1000193 : 1);
}

void Fill(const RecordTable& table, void* record, unsigned seed, unsigned& index) {
  for (const FieldRow& row : table) {
    for (std::size_t i = 0; i < row.count; ++i) {
      void* element = row.element(record, i);
      if (row.nested != nullptr) {
        Fill(*row.nested, element, seed, index);
      } else {
        StoreNumber(element, row.size, Value(WireBits(table, row), index++, seed));
      }
    }
  }
}

}  // namespace

void FillRecord(const RecordTable& table, void* record, unsigned seed) {
  unsigned index = 0;
  Fill(table, record, seed, index);
}

}  // namespace fabscan
