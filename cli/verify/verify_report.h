#ifndef FABSCAN_CLI_VERIFY_REPORT_H
#define FABSCAN_CLI_VERIFY_REPORT_H

#include <cstddef>
#include <string>
#include <vector>

#include "cli/terminal/terminal.h"
#include "simulator/verification/verification.h"

namespace fabscan {

/// A node, and the result of its verification or the reason why it could not be verified.
struct VerifiedNode {
  const IBNode* node = nullptr;
  NodeReport report;
  std::string failure;  // empty if it was verified
  std::vector<std::string> failure_details;
};

/// Totals of a run.
struct VerifyTotals {
  std::size_t records = 0;
  std::size_t fields = 0;
  std::size_t differences = 0;
  std::size_t nodes = 0;
  std::size_t with_error_lines = 0;  // nodes
  std::size_t edited = 0;            // nodes with other lines that do not compile
  std::size_t failed = 0;            // nodes that could not be verified

  void Add(const VerifiedNode& node);
  /// "N records, M fields, D differ", and the numbers of nodes that do not compile.
  std::string text() const;
};

/// The node's lines of the report: each function, with its first differences.
std::string ReportText(const VerifiedNode& node, const Terminal& terminal);

}  // namespace fabscan

#endif
