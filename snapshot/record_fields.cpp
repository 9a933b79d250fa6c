#include "record_fields.h"

#include <algorithm>

namespace fabscan {

namespace {

/// The kind with this name, or null.
template <class Kinds>
const auto* FindKind(const Kinds& kinds, std::string_view name) {
  const auto found = std::find_if(kinds.begin(), kinds.end(),
                                  [&](const auto& kind) { return kind.table->name == name; });
  return found == kinds.end() ? nullptr : &*found;
}

}  // namespace

const FieldRow* FindField(const RecordTable& table, std::string_view name) {
  const FieldRow* row =
      std::find_if(table.begin(), table.end(), [&](const FieldRow& r) { return r.name == name; });
  return row == table.end() ? nullptr : row;
}

bool IsNodeRecord(std::string_view name) { return FindKind(kNodeRecords, name) != nullptr; }

bool IsPortRecord(std::string_view name) {
  return name == kCountersTable.name || name == kMonitorsTable.name ||
         FindKind(kPortRecords, name) != nullptr;
}

bool Lacks(const TesselExtendedInfo& store, const IBNode& node, std::string_view name) {
  const RecordKind<IBNode>* kind = FindKind(kNodeRecords, name);
  return kind != nullptr && kind->find(store, node) == nullptr;
}

bool Lacks(const TesselExtendedInfo& store, const IBPort& port, std::string_view name) {
  if (const RecordKind<IBPort>* kind = FindKind(kPortRecords, name)) {
    return kind->find(store, port) == nullptr;
  }
  bool has = false;
  ForEachRecord(store, port,
                [&](const RecordTable& table, int, const void*) { has |= table.name == name; });
  return IsPortRecord(name) && !has;
}

}  // namespace fabscan
