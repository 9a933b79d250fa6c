#ifndef FABSCAN_SNAPSHOT_ABSENT_RECORDS_H
#define FABSCAN_SNAPSHOT_ABSENT_RECORDS_H

#include <infiniband/fabscan/absent_table.h>

#include <string_view>
#include <type_traits>
#include <vector>

#include "records/record_kinds.h"
#include "snapshot/json_writer.h"

namespace fabscan {

/// Why an owner may lack a record, ready to be written.
template <class Owner>
struct AbsentRecord {
  FindRecord<Owner> find;
  std::string_view name;
  std::string_view reason;
  bool plain;  // the reason is a word
};

/// Looks up the records of one owner's reasons after the other's. Owners share their sets of
/// reasons, and mostly the next one has the same set: it is looked up once.
template <class Owner>
class AbsentRecords {
 public:
  /// Of the names that an owner can have. The reasons stay where they are, and as they are.
  const std::vector<AbsentRecord<Owner>>& Of(const AbsentReasons& reasons) {
    if (&reasons != reasons_) LookUp(reasons);
    return records_;
  }

 private:
  void LookUp(const AbsentReasons& reasons) {
    reasons_ = &reasons;
    records_.clear();
    for (const auto& [name, reason] : reasons) {
      const FindRecord<Owner> find = Find(name);
      if (find != nullptr) records_.push_back({find, name, reason, JsonWriter::IsWord(reason)});
    }
  }

  static FindRecord<Owner> Find(std::string_view name) {
    if constexpr (std::is_same_v<Owner, IBNode>) {
      return FindNodeRecord(name);
    } else {
      return FindPortRecord(name);
    }
  }

  const AbsentReasons* reasons_ = nullptr;
  std::vector<AbsentRecord<Owner>> records_;
};

}  // namespace fabscan

#endif
