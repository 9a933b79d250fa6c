#ifndef FABSCAN_CLI_CHECK_REPORT_H
#define FABSCAN_CLI_CHECK_REPORT_H

#include <string>
#include <utility>
#include <vector>

#include "cli/check/cause_groups.h"
#include "cli/check/check_result.h"
#include "cli/check/next_steps.h"
#include "cli/terminal/terminal.h"

namespace fabscan {

/// The result of a check, with its consequences.
struct CheckReport {
  CheckReport(const CheckResult& checked_result, std::string path,
              const std::string& selection = "")
      : result(checked_result),
        snapshot(std::move(path)),
        groups(GroupCauses(result)),
        next(NextSteps(result, groups, snapshot, selection)) {}

  const CheckResult& result;
  std::string snapshot;  // as on the command line
  std::vector<CauseGroup> groups;
  std::vector<NextStep> next;
};

enum class CheckDetail { kSummary, kNodes };

/// For people: the matrix of nodes and functions, its legend, the text of generated lines, and the
/// summary.
std::string CheckText(const CheckReport& report, const Terminal& terminal);

/// The causes and the totals.
std::string SummaryText(const CheckReport& report, const Terminal& terminal);

/// The counts, the verdict and the next steps.
std::string TotalsText(const CheckReport& report, const Terminal& terminal);

/// One JSON object on standard output.
void PrintCheckJson(const CheckReport& report, CheckDetail detail);

/// `does not build: 2 functions with #error`, or `builds`.
std::string Verdict(const CheckResult& result);

}  // namespace fabscan

#endif
