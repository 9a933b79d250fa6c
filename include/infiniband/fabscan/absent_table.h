#ifndef INFINIBAND_FABSCAN_ABSENT_TABLE_H
#define INFINIBAND_FABSCAN_ABSENT_TABLE_H

#include <sys/types.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// Why records were not collected: record name -> reason.
using AbsentReasons = std::map<std::string, std::string, std::less<>>;

/// The reasons of each node, or of each port, by dense creation index. Most ports of a fabric lack
/// the same for the same reason, so each distinct set of reasons is stored once.
class AbsentTable {
 public:
  AbsentTable() = default;
  AbsentTable(const AbsentTable&) = delete;  // contains pointers into itself
  AbsentTable& operator=(const AbsentTable&) = delete;

  /// Empty if no reason was stored.
  const AbsentReasons& At(std::size_t index) const {
    const AbsentReasons* reasons = index < by_index_.size() ? by_index_[index] : nullptr;
    return reasons == nullptr ? none_ : *reasons;
  }
  void Set(std::size_t index, std::string_view record, std::string_view reason);
  void Share(std::size_t index, std::size_t other) {
    Reserve(std::max(index, other));
    by_index_[index] = by_index_[other];
  }
  /// Clears all reasons.
  void Clear() { by_index_.clear(); }
  void Clear(std::size_t index) {
    if (index < by_index_.size()) by_index_[index] = nullptr;
  }

 private:
  void Reserve(std::size_t index) {
    if (index >= by_index_.size()) by_index_.resize(index + 1 + index / 4);
  }

  /// The set that results from adding this reason to `from`.
  const AbsentReasons* Noted(const AbsentReasons* from, std::string_view record,
                             std::string_view reason);

  /// The last change, which is usually repeated next.
  struct Change {
    const AbsentReasons* from = nullptr;
    std::string record;
    std::string reason;
    const AbsentReasons* to = nullptr;
  };

  const AbsentReasons none_ = {};  // clang asks for the braces
  std::set<AbsentReasons> sets_;
  std::vector<const AbsentReasons*> by_index_;
  Change last_;
};

}  // namespace fabscan

#endif
