#ifndef FABSCAN_CLI_CHECK_REPORT_H
#define FABSCAN_CLI_CHECK_REPORT_H

#include <string>

#include "check_result.h"
#include "terminal.h"

namespace fabscan {

/// For people: the matrix of nodes and functions, what its letters stand for, the reasons, the
/// classes that several nodes define, and the verdict.
std::string CheckText(const CheckResult& result, const std::string& snapshot,
                      const Terminal& terminal);

/// The last lines of it: the counts and the verdict.
std::string TotalsText(const CheckResult& result, const std::string& snapshot,
                       const Terminal& terminal);

/// One JSON object on standard output.
void PrintCheckJson(const CheckResult& result, const std::string& snapshot);

/// `does not build: 2 functions with #error`, or `builds`.
std::string Verdict(const CheckResult& result);

}  // namespace fabscan

#endif
