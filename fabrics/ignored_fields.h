#ifndef FABSCAN_FABRICS_IGNORED_FIELDS_H
#define FABSCAN_FABRICS_IGNORED_FIELDS_H

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "records/record_table.h"

namespace fabscan {

/// What a comparison ignores: keys of nodes and ports (`name`, `state`), records
/// (`SMP_PortInfo`), fields of any record (`UpTime`, `FWInfo.Minor`), and fields of one
/// (`SMP_PortInfo.LID`).
class IgnoredFields {
 public:
  IgnoredFields() = default;
  /// Throws std::invalid_argument for an unknown word; its text suggests another.
  explicit IgnoredFields(const std::vector<std::string>& words);

  /// A key of a node or a port, or a record.
  bool Has(std::string_view name) const { return words_.count(name) != 0; }
  /// The field `path` of the record, whose last part is the row's name.
  bool Has(std::string_view record, const std::string& path, const FieldRow& row) const;

 private:
  std::set<std::string, std::less<>> words_;
};

}  // namespace fabscan

#endif
