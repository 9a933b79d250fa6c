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
  std::string command;  // for a shell; SNAPSHOT stands for standard input
};

/// `snapshot` as on the command line, `selection` as NodeSelection::Words.
std::vector<NextStep> NextSteps(const CheckResult& result, const std::vector<CauseGroup>& groups,
                                const std::string& snapshot, const std::string& selection);

std::string NextText(const std::vector<NextStep>& steps, const Terminal& terminal);

}  // namespace fabscan

#endif
