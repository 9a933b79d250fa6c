#include "cli/check/check_result.h"

#include <algorithm>

#include "fabrics/natural_order.h"

namespace fabscan {

void CheckResult::Add(const IBNode& node, const GeneratedNode& generated) {
  CheckedNode& checked = nodes_.emplace_back();
  checked.node = &node;
  checked.class_word = generated.class_word;
  for (const FunctionBody& body : generated.functions) {
    const std::size_t place = checked.functions.size();
    if (place == function_names_.size()) {
      function_names_.emplace_back(body.function->name);
      counts_.emplace_back();
    }
    ++counts_[place][static_cast<std::size_t>(body.mark)];
    CheckedFunction& entry = checked.functions.emplace_back();
    entry.mark = body.mark;
    entry.reason = NumberOf(WithoutName(body.reason, node.name));
    std::optional<Cause> cause = CauseOf(fabric_, node, body);
    if (cause) entry.cause = NumberOf(std::move(*cause));
  }
}

void CheckResult::SortNodes() {
  std::sort(nodes_.begin(), nodes_.end(), [](const CheckedNode& one, const CheckedNode& other) {
    return NaturallyBefore(*one.node, *other.node);
  });
}

u_int32_t CheckResult::NumberOf(std::string reason) {
  if (reason.empty()) return 0;
  const auto [found, is_new] =
      reason_numbers_.emplace(reason, static_cast<u_int32_t>(reasons_.size()));
  if (is_new) reasons_.push_back(std::move(reason));
  return found->second;
}

u_int32_t CheckResult::NumberOf(Cause cause) {
  const auto next = static_cast<u_int32_t>(causes_.size() + 1);
  const auto [found, is_new] = cause_numbers_.emplace(std::move(cause), next);
  if (is_new) causes_.push_back(&found->first);
  return found->second;
}

std::size_t CheckResult::count(Mark mark, std::size_t function) const {
  return counts_[function][static_cast<std::size_t>(mark)];
}

std::size_t CheckResult::count(Mark mark) const {
  std::size_t sum = 0;
  for (std::size_t i = 0; i < counts_.size(); ++i) sum += count(mark, i);
  return sum;
}

std::map<std::string, std::vector<const IBNode*>> CheckResult::SharedClasses() const {
  std::map<std::string, std::vector<const IBNode*>> shared;
  for (const CheckedNode& checked : nodes_) shared[checked.class_word].push_back(checked.node);
  for (auto entry = shared.begin(); entry != shared.end();) {
    entry = entry->second.size() > 1 ? std::next(entry) : shared.erase(entry);
  }
  return shared;
}

bool CheckResult::Builds() const {
  return count(Mark::kError) == 0 && count(Mark::kHand) == 0 && SharedClasses().empty();
}

}  // namespace fabscan
