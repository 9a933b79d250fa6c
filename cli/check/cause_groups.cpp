#include "cli/check/cause_groups.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "cli/check/check_marks.h"

namespace fabscan {

namespace {

bool ComesFirst(Mark one, Mark other) { return &RowOf(one) < &RowOf(other); }

/// Sorts the groups: shared classes come after causes within a function.
auto PlaceOf(const CauseGroup& group) {
  const bool is_shared = group.cause.code == CauseCode::kSharedClass;
  return std::tuple(!group.StopsBuild(), is_shared, &RowOf(group.mark),
                    -static_cast<std::ptrdiff_t>(group.nodes.size()),
                    -static_cast<std::ptrdiff_t>(group.functions.size()), group.functions,
                    std::string_view(group.cause.text));
}

/// The functions of one cause, each with its mark.
using FunctionMarks = std::map<std::size_t, Mark>;

void SortFunctions(CauseGroup& group, const FunctionMarks& marks) {
  for (const auto& [function, mark] : marks) {
    group.functions.push_back(function);
    if (ComesFirst(mark, group.mark)) group.mark = mark;
  }
  std::stable_sort(group.functions.begin(), group.functions.end(),
                   [&marks](std::size_t one, std::size_t other) {
                     return ComesFirst(marks.at(one), marks.at(other));
                   });
}

}  // namespace

bool CauseGroup::StopsBuild() const {
  return cause.code == CauseCode::kSharedClass || mark == Mark::kError || mark == Mark::kHand;
}

std::vector<CauseGroup> GroupCauses(const CheckResult& result) {
  std::vector<CauseGroup> groups(result.CauseCount());
  std::vector<FunctionMarks> marks(groups.size());
  for (const CheckedNode& node : result.nodes()) {
    for (std::size_t i = 0; i < node.functions.size(); ++i) {
      const CheckedFunction& function = node.functions[i];
      if (function.cause == 0) continue;
      CauseGroup& group = groups[function.cause - 1];
      if (group.nodes.empty() || group.nodes.back() != node.node) group.nodes.push_back(node.node);
      const auto [found, is_new] = marks[function.cause - 1].emplace(i, function.mark);
      if (!is_new && ComesFirst(function.mark, found->second)) found->second = function.mark;
    }
  }
  for (std::size_t i = 0; i < groups.size(); ++i) {
    groups[i].cause = *result.cause(i + 1);
    groups[i].number = i + 1;
    SortFunctions(groups[i], marks[i]);
  }
  for (const auto& [class_word, nodes] : result.SharedClasses()) {
    CauseGroup& group = groups.emplace_back();
    group.cause = SharedClassCause(class_word);
    group.nodes = nodes;
  }
  std::sort(groups.begin(), groups.end(), [](const CauseGroup& one, const CauseGroup& other) {
    return PlaceOf(one) < PlaceOf(other);
  });
  return groups;
}

std::string FunctionNames(const CheckResult& result, const CauseGroup& group) {
  std::string names;
  for (const std::size_t function : group.functions) {
    names += (names.empty() ? "" : ", ") + result.functionNames()[function];
  }
  return names;
}

}  // namespace fabscan
