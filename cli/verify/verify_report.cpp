#include "cli/verify/verify_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "cli/output/counted.h"
#include "cli/selection/guid_options.h"

namespace fabscan {

namespace {

/// Differences per function that are listed; the others are only counted.
constexpr std::size_t kMaxDifferences = 5;

std::string FunctionText(const NodeReport& report, const FunctionResult& function) {
  constexpr char kRow[] = "  {:<34}  {}\n";
  std::string text;
  if (const SourceEdit* error_line = report.ErrorLineOf(function.name)) {
    text = fmt::format(kRow, function.name, "no values: " + error_line->text);
  } else {
    text = fmt::format(kRow, function.name,
                       fmt::format("{}, {}, {} differ", Counted(function.records, "record"),
                                   Counted(function.fields, "field"), function.differences.size()));
  }
  const std::size_t shown = std::min(function.differences.size(), kMaxDifferences);
  for (std::size_t i = 0; i < shown; ++i) {
    text += fmt::format("    {}\n", function.differences[i]);
  }
  if (shown < function.differences.size()) {
    text += fmt::format("    and {} more\n", function.differences.size() - shown);
  }
  return text;
}

}  // namespace

void VerifyTotals::Add(const VerifiedNode& node) {
  records += node.report.records();
  fields += node.report.fields();
  differences += node.report.differences();
  ++nodes;
  const std::size_t error_lines = node.report.ErrorLines();
  if (error_lines != 0) ++with_error_lines;
  if (error_lines < node.report.edits.size()) ++edited;
  if (!node.failure.empty()) ++failed;
}

std::string VerifyTotals::text() const {
  std::string text = fmt::format("{}: {}, {}, {} differ\n", Counted(nodes, "node"),
                                 Counted(records, "record"), Counted(fields, "field"), differences);
  const auto add = [&text](const char* what, std::size_t count) {
    if (count != 0) text += fmt::format("{}: {}\n", what, Counted(count, "node"));
  };
  add("with #error lines, verified without them", with_error_lines);
  add("with other lines that do not compile, verified with the edits above", edited);
  add("not verified", failed);
  return text;
}

std::string ReportText(const VerifiedNode& node, const Terminal& terminal) {
  std::string text = fmt::format("{} ({})\n", node.node->name, GuidText(node.node->guid));
  if (!node.failure.empty()) {
    text += fmt::format("  not verified: {}\n", WithoutControls(node.failure));
    for (const std::string& line : node.failure_details) {
      text += fmt::format("    {}\n", WithoutControls(line));
    }
    return text;
  }
  std::string idle;
  for (const FunctionResult& function : node.report.functions) {
    if (function.fields != 0 || !function.differences.empty() ||
        node.report.ErrorLineOf(function.name) != nullptr) {
      text += FunctionText(node.report, function);
    } else {
      idle += (idle.empty() ? "" : ", ") + function.name;
    }
  }
  if (!idle.empty()) text += Beside("  nothing to assign: ", idle, terminal.width);
  for (const SourceEdit& edit : node.report.edits) {
    if (edit.is_error_line) continue;
    text += Beside("  edited: ", fmt::format("{}, {}", edit.function, edit.change), terminal.width);
    text += fmt::format("    {}\n", edit.text);
  }
  return text;
}

}  // namespace fabscan
