#ifndef FABSCAN_CLI_NEXT_STEPS_H
#define FABSCAN_CLI_NEXT_STEPS_H

#include <string>
#include <vector>

#include "cli/check/cause_groups.h"
#include "cli/terminal/terminal.h"

namespace fabscan {

/// A recommended step after a check.
struct NextStep {
  std::string text;
  std::string command;  // for a shell; empty if it would need a file name
};

/// Whether a selection restricts the nodes that were checked.
enum class CheckedNodes { kAll, kSelected };

/// `snapshot` as on the command line; standard input cannot be read again, so no command names it.
std::vector<NextStep> NextSteps(const CheckResult& result, const std::vector<CauseGroup>& groups,
                                const std::string& snapshot, CheckedNodes checked);

std::string NextText(const std::vector<NextStep>& steps, const Terminal& terminal);

}  // namespace fabscan

#endif
