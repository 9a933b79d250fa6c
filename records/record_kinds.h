#ifndef FABSCAN_RECORDS_RECORD_KINDS_H
#define FABSCAN_RECORDS_RECORD_KINDS_H

#include <infiniband/fabscan/fabscan_tessel_extended_info.h>

#include <array>
#include <string_view>
#include <utility>

#include "records/all_records.h"

namespace fabscan {

/// Finds an owner's record of one type; null if it has none.
template <class Owner>
using FindRecord = const void* (*)(const TesselExtendedInfo& store, const Owner& owner);

/// One kind of record that a node or a port can have, for code that walks all kinds: its table and
/// its place in the store.
template <class Owner>
struct RecordKind {
  const RecordTable* table;
  FindRecord<Owner> find;
  /// The owner's record, created with zeros if missing.
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

template <class Owner, class... Records>
constexpr std::array<RecordKind<Owner>, sizeof...(Records)> MakeKinds(RecordList<Records...>) {
  return {MakeKind<Records, Owner>()...};
}

/// The records of nodes, in the order in which snapshots hold them.
inline constexpr auto kNodeRecords = MakeKinds<IBNode>(NodeRecords{});

/// The records that a port has once. Its counter sets and monitors follow them in snapshots.
inline constexpr auto kPortRecords = MakeKinds<IBPort>(PortRecords{});

/// A port's counter sets, by index, and its monitors, by selector.
inline constexpr const RecordTable& kCountersTable = TableOf<WrenReductionCounters>::value;
inline constexpr const RecordTable& kMonitorsTable =
    TableOf<WrenReductionConfigureMLIDMonitors>::value;

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

/// What finds a record of this name among the kinds, or null.
template <class Owner, std::size_t kCount>
FindRecord<Owner> FindAmong(const std::array<RecordKind<Owner>, kCount>& kinds,
                            std::string_view name) {
  for (const RecordKind<Owner>& kind : kinds) {
    if (kind.table->name == name) return kind.find;
  }
  return nullptr;
}

/// The port's record with the lowest index or selector, or null.
template <const RecordTable& kTable>
const void* FindFirst(const TesselExtendedInfo& store, const IBPort& port) {
  const void* first = nullptr;
  ForEachRecord(store, port, [&](const RecordTable& table, int, const void* record) {
    if (first == nullptr && &table == &kTable) first = record;
  });
  return first;
}

/// What finds a node's record of this name, or a port's: any of those that it has. Null where it
/// cannot have one.
inline FindRecord<IBNode> FindNodeRecord(std::string_view name) {
  return FindAmong(kNodeRecords, name);
}
inline FindRecord<IBPort> FindPortRecord(std::string_view name) {
  if (name == kCountersTable.name) return FindFirst<kCountersTable>;
  if (name == kMonitorsTable.name) return FindFirst<kMonitorsTable>;
  return FindAmong(kPortRecords, name);
}

}  // namespace fabscan

#endif
