#include "snapshot/record_fields.h"

#include <algorithm>

namespace fabscan {

namespace {

/// What finds a record of this name among the kinds, or null.
template <class Owner, std::size_t kCount>
FindRecord<Owner> FindAmong(const std::array<RecordKind<Owner>, kCount>& kinds,
                            std::string_view name) {
  const auto found = std::find_if(kinds.begin(), kinds.end(),
                                  [&](const auto& kind) { return kind.table->name == name; });
  return found == kinds.end() ? nullptr : found->find;
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

}  // namespace

const FieldRow* FindField(const RecordTable& table, std::string_view name) {
  const FieldRow* row =
      std::find_if(table.begin(), table.end(), [&](const FieldRow& r) { return r.name == name; });
  return row == table.end() ? nullptr : row;
}

FindRecord<IBNode> FindNodeRecord(std::string_view name) { return FindAmong(kNodeRecords, name); }

FindRecord<IBPort> FindPortRecord(std::string_view name) {
  if (name == kCountersTable.name) return FindFirst<kCountersTable>;
  if (name == kMonitorsTable.name) return FindFirst<kMonitorsTable>;
  return FindAmong(kPortRecords, name);
}

}  // namespace fabscan
