#include <infiniband/fabscan/absent_table.h>

namespace fabscan {

void AbsentTable::Set(std::size_t index, std::string_view record, std::string_view reason) {
  Reserve(index);
  by_index_[index] = Noted(by_index_[index], record, reason);
}

const AbsentReasons* AbsentTable::Noted(const AbsentReasons* from, std::string_view record,
                                        std::string_view reason) {
  if (last_.to == nullptr || last_.from != from || last_.record != record ||
      last_.reason != reason) {
    AbsentReasons reasons = from == nullptr ? AbsentReasons() : *from;
    reasons.insert_or_assign(std::string(record), std::string(reason));
    Change change{from, std::string(record), std::string(reason), nullptr};
    change.to = &*sets_.insert(std::move(reasons)).first;
    last_ = std::move(change);
  }
  return last_.to;
}

}  // namespace fabscan
