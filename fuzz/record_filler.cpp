#include "fuzz/record_filler.h"

#include "records/record_kinds.h"

namespace fabscan {

namespace {

/// Zeros, the largest numbers, or any numbers: this saves input bytes for other decisions.
enum class Fill { kZero, kLargest, kAny };

Fill TakeFill(Bytes& bytes) { return static_cast<Fill>(bytes.OneOf(3)); }

void FillRecord(Bytes& bytes, const RecordTable& table, void* record, Fill fill) {
  for (const FieldRow& row : table) {
    for (std::size_t i = 0; i < row.count; ++i) {
      void* element = row.element(record, i);
      if (row.nested != nullptr) {
        FillRecord(bytes, *row.nested, element, fill);
      } else if (fill != Fill::kZero) {
        StoreNumber(element, row.size,
                    fill == Fill::kLargest ? row.largest() : bytes.Number(row.size));
      }
    }
  }
}

void FillMask(Bytes& bytes, Fabscan& fabscan, const IBNode& node, bool is_gmp) {
  if (!bytes.Flag()) return;
  capability_mask_t mask{};
  const Fill fill = TakeFill(bytes);
  for (u_int32_t& word : mask.mask) {
    if (fill == Fill::kLargest) word = ~u_int32_t{0};
    if (fill == Fill::kAny) word = static_cast<u_int32_t>(bytes.Number(sizeof word));
  }
  fabscan.capability_module.put(node, is_gmp, mask);
}

/// Every type of record once: present, absent with a reason, or neither.
template <class Kinds, class Owner>
void FillKinds(Bytes& bytes, const Kinds& kinds, TesselExtendedInfo& store, const Owner& owner) {
  for (const auto& kind : kinds) {
    switch (bytes.OneOf(4)) {
      case 1:
      case 2:
        FillRecord(bytes, *kind.table, kind.put(store, owner), TakeFill(bytes));
        break;
      case 3:
        store.setAbsent(owner, kind.table->name, bytes.Text(20));
        break;
      default:
        break;
    }
  }
}

}  // namespace

void FillRecords(Bytes& bytes, Fabscan& fabscan, const IBNode& node) {
  FillMask(bytes, fabscan, node, false);
  FillMask(bytes, fabscan, node, true);
  FillKinds(bytes, kNodeRecords, fabscan.fabric_extended_info, node);
}

void FillRecords(Bytes& bytes, Fabscan& fabscan, const IBPort& port) {
  TesselExtendedInfo& store = fabscan.fabric_extended_info;
  FillKinds(bytes, kPortRecords, store, port);
  const u_int8_t sets = bytes.Byte();
  for (u_int32_t index = 0; index < TesselExtendedInfo::kCounterSets; ++index) {
    if (((sets >> index) & 1U) == 0) continue;
    FillRecord(bytes, kCountersTable, &store.putCounters(port, index), TakeFill(bytes));
  }
  const u_int8_t selectors = bytes.Byte();
  for (u_int8_t selector = 0; selector < TesselExtendedInfo::kMonitorSelectors; ++selector) {
    if (((selectors >> selector) & 1U) != 0) store.putMonitors(port, selector);
  }
}

void FillMarks(Bytes& bytes, IBPort& port) {
  const u_int8_t marks = bytes.Byte();
  port.setInSubFabric((marks & 1U) == 0);
  port.setFNMPort((marks & 2U) != 0);
  port.setFNM1Port((marks & 4U) != 0);
  port.setSpecialPort((marks & 8U) != 0);
  constexpr unsigned kStates = IB_PORT_STATE_ACTIVE + 1;
  port.port_state = static_cast<IBPortState>((marks >> 4U) % kStates);
}

}  // namespace fabscan
