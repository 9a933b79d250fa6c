#ifndef FABSCAN_CLI_CAUSE_GROUPS_H
#define FABSCAN_CLI_CAUSE_GROUPS_H

#include <cstddef>
#include <vector>

#include "cli/check/check_result.h"

namespace fabscan {

/// One cause with all its effects.
struct CauseGroup {
  Cause cause;
  /// The mark of the group: the first of `kMarkRows` that one of its functions has.
  Mark mark = Mark::kBlock;
  std::size_t number = 0;              // of CheckResult::cause; 0 for a class that nodes share
  std::vector<std::size_t> functions;  // numbers; those that stop the build come first
  std::vector<const IBNode*> nodes;

  bool StopsBuild() const;
};

/// Groups that stop the build come first, then those that affect most nodes.
std::vector<CauseGroup> GroupCauses(const CheckResult& result);

/// The names of the group's functions: `setArInfo, setPrivateLftInfo`.
std::string FunctionNames(const CheckResult& result, const CauseGroup& group);

}  // namespace fabscan

#endif
