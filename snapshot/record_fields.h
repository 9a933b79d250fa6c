#ifndef FABSCAN_SNAPSHOT_RECORD_FIELDS_H
#define FABSCAN_SNAPSHOT_RECORD_FIELDS_H

#include <infiniband/fabscan/fabscan_tessel_extended_info.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "snapshot/node_record_fields.h"
#include "snapshot/port_record_fields.h"

namespace fabscan {

/// Finds an owner's record of one kind: null where it has none.
template <class Owner>
using FindRecord = const void* (*)(const TesselExtendedInfo& store, const Owner& owner);

/// One kind of record that a node or a port can have, for code that walks all kinds: its table and
/// its place in the store.
template <class Owner>
struct RecordKind {
  const RecordTable* table;
  FindRecord<Owner> find;
  /// The owner's record, made zeroed when there is none yet.
  void* (*put)(TesselExtendedInfo& store, const Owner& owner);
};

template <class Record, class Owner>
constexpr RecordKind<Owner> MakeKind() {
  return {&TableOf<Record>::value,
          [](const TesselExtendedInfo& store, const Owner& owner) -> const void* {
            return store.find<Record>(owner);
          },
          [](TesselExtendedInfo& store, const Owner& owner) -> void* {
            return &store.put<Record>(owner);
          }};
}

/// The records of nodes, in the order in which snapshots hold them.
inline constexpr std::array<RecordKind<IBNode>, 12> kNodeRecords = {
    MakeKind<SMP_NodeInfo, IBNode>(),
    MakeKind<SMP_SwitchInfo, IBNode>(),
    MakeKind<SMP_RouterInfo, IBNode>(),
    MakeKind<SMP_ExtendedSwitchInfo, IBNode>(),
    MakeKind<ib_extended_node_info, IBNode>(),
    MakeKind<ib_private_lft_info, IBNode>(),
    MakeKind<adaptive_routing_info, IBNode>(),
    MakeKind<VendorSpec_GeneralInfo, IBNode>(),
    MakeKind<CC_EnhancedCongestionInfo, IBNode>(),
    MakeKind<CC_CongestionSwitchGeneralSettings, IBNode>(),
    MakeKind<IB_ClassPortInfo, IBNode>(),
    MakeKind<WrenReductionInfo, IBNode>(),
};

/// The records that a port has once. Its counter sets and monitors follow them in snapshots.
inline constexpr std::array<RecordKind<IBPort>, 5> kPortRecords = {
    MakeKind<SMP_PortInfo, IBPort>(),
    MakeKind<SMP_PortInfoExtended, IBPort>(),
    MakeKind<SMP_TarnExtPortInfo, IBPort>(),
    MakeKind<WrenReductionPortInfo, IBPort>(),
    MakeKind<WrenPushReductionCounters, IBPort>(),
};

/// A port's counter sets, by index, and its monitors, by selector.
inline constexpr const RecordTable& kCountersTable = TableOf<WrenReductionCounters>::value;
inline constexpr const RecordTable& kMonitorsTable =
    TableOf<WrenReductionConfigureMLIDMonitors>::value;

/// The row of the field with this name, or null.
const FieldRow* FindField(const RecordTable& table, std::string_view name);

/// What finds a node's record of this name, or a port's: any of those that it has. Null where it
/// cannot have one.
FindRecord<IBNode> FindNodeRecord(std::string_view name);
FindRecord<IBPort> FindPortRecord(std::string_view name);

/// `APPLY(type)` for every type that has a table, those within other records included.
// clang-format off
#define FABSCAN_EACH_RECORD(APPLY) \
  APPLY(SMP_NodeInfo) \
  APPLY(SMP_SwitchInfo) \
  APPLY(SMP_RouterInfo) \
  APPLY(SMP_ExtendedSwitchInfo) \
  APPLY(ib_extended_node_info) \
  APPLY(ib_description_mode) \
  APPLY(ib_private_lft_info) \
  APPLY(adaptive_routing_info) \
  APPLY(HWInfo_Block_Element) \
  APPLY(PSID_Block_Element) \
  APPLY(FWInfo_Block_Element) \
  APPLY(SWInfo_Block_Element) \
  APPLY(GeneralInfoCapabilityMask) \
  APPLY(VendorSpec_GeneralInfo) \
  APPLY(CC_EnhancedCongestionInfo) \
  APPLY(CC_CongestionSwitchGeneralSettings) \
  APPLY(IB_ClassPortInfo) \
  APPLY(WrenReductionInfo) \
  APPLY(SMP_PortInfo) \
  APPLY(SMP_PortInfoExtended) \
  APPLY(SMP_TarnExtPortInfo) \
  APPLY(WrenReductionPortInfo) \
  APPLY(WrenReductionCounters) \
  APPLY(WrenReductionConfigureMLIDMonitors) \
  APPLY(WrenPushReductionCounters)
// clang-format on

/// Calls `visit(kind.table, record)` for every record of these kinds that the owner has. Spelt out
/// kind by kind, so that the compiler knows each one's place in the store.
template <const auto& kKinds, class Owner, class Visit, std::size_t... I>
void VisitEach(const TesselExtendedInfo& store, const Owner& owner, Visit& visit,
               std::index_sequence<I...>) {
  const auto visit_one = [&](const RecordTable& table, const void* record) {
    if (record != nullptr) visit(table, record);
  };
  (visit_one(*kKinds[I].table, kKinds[I].find(store, owner)), ...);
}

template <const auto& kKinds, class Owner, class Visit>
void VisitKinds(const TesselExtendedInfo& store, const Owner& owner, Visit&& visit) {
  VisitEach<kKinds>(store, owner, visit, std::make_index_sequence<kKinds.size()>());
}

/// Calls `visit(kind.table, record)` for every record that the node has.
template <class Visit>
void ForEachRecord(const TesselExtendedInfo& store, const IBNode& node, Visit&& visit) {
  VisitKinds<kNodeRecords>(store, node, visit);
}

/// What tells a port's records of one kind apart: the index of a counter set, the selector of a
/// monitor.
inline constexpr int kOnlyOne = -1;

/// Calls `visit(table, index, record)` for every record that the port has; `index` is `kOnlyOne`
/// for the kinds that a port has once.
template <class Visit>
void ForEachRecord(const TesselExtendedInfo& store, const IBPort& port, Visit&& visit) {
  VisitKinds<kPortRecords>(store, port, [&](const RecordTable& table, const void* record) {
    visit(table, kOnlyOne, record);
  });
  if (!store.hasCountersOrMonitors()) return;
  for (u_int32_t index = 0; index < TesselExtendedInfo::kCounterSets; ++index) {
    const void* record = store.getWrenReductionCounters(port.createIndex, index);
    if (record != nullptr) visit(kCountersTable, static_cast<int>(index), record);
  }
  for (u_int8_t selector = 0; selector < TesselExtendedInfo::kMonitorSelectors; ++selector) {
    const void* record = store.getWrenReductionConfigureMLIDMonitors(port.createIndex, selector);
    if (record != nullptr) visit(kMonitorsTable, int{selector}, record);
  }
}

/// Calls `visit(path, row, value)` for every number of the record, in declared order: `path` as a
/// C++ expression within the record (`FWInfo.PSID.PSID[3]`), `row` the field that holds the number.
template <class Visit>
void ForEachNumber(const RecordTable& table, const void* record, Visit&& visit,
                   const std::string& prefix = {}) {
  for (const FieldRow& row : table) {
    for (std::size_t i = 0; i < row.count; ++i) {
      std::string path = prefix + std::string(row.name);
      if (row.is_array) path += '[' + std::to_string(i) + ']';
      const void* element = row.element(record, i);
      if (row.nested == nullptr) {
        visit(static_cast<const std::string&>(path), row, LoadNumber(element, row.size));
      } else {
        ForEachNumber(*row.nested, element, visit, path + '.');
      }
    }
  }
}

template <class Record, class Visit>
void ForEachNumber(const Record& record, Visit&& visit) {
  ForEachNumber(TableOf<Record>::value, &record, visit);
}

}  // namespace fabscan

#endif
