#include "record_fields.h"

#include <algorithm>

namespace fabscan {

const FieldRow* FindField(const RecordTable& table, std::string_view name) {
  const FieldRow* row =
      std::find_if(table.begin(), table.end(), [&](const FieldRow& r) { return r.name == name; });
  return row == table.end() ? nullptr : row;
}

bool IsNodeRecord(std::string_view name) {
  return std::any_of(kNodeRecords.begin(), kNodeRecords.end(),
                     [&](const auto& kind) { return kind.table->name == name; });
}

bool IsPortRecord(std::string_view name) {
  return name == kCountersTable.name || name == kMonitorsTable.name ||
         std::any_of(kPortRecords.begin(), kPortRecords.end(),
                     [&](const auto& kind) { return kind.table->name == name; });
}

}  // namespace fabscan
