#include "verify_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "counted.h"
#include "guid_options.h"

namespace fabscan {

namespace {

/// Differences of one function that are written out before the rest is only counted.
constexpr std::size_t kMaxDifferences = 5;

const GeneratedLine* RefusalOf(const NodeReport& report, const std::string& function) {
  for (const GeneratedLine& line : report.refusals) {
    if (line.function == function) return &line;
  }
  return nullptr;
}

std::string FunctionText(const NodeReport& report, const FunctionResult& function) {
  constexpr char kRow[] = "  {:<34}  {}\n";
  std::string text;
  if (const GeneratedLine* refusal = RefusalOf(report, function.name)) {
    text = fmt::format(kRow, function.name, "refused: " + refusal->text);
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

std::string Trimmed(const std::string& line) {
  const std::size_t begin = line.find_first_not_of(' ');
  return begin == std::string::npos ? std::string() : line.substr(begin);
}

}  // namespace

void VerifyTotals::Add(const VerifiedNode& node) {
  records += node.report.records();
  fields += node.report.fields();
  differences += node.report.differences();
  ++nodes;
  if (!node.report.refusals.empty()) ++refused;
  if (!node.report.hand_places.empty()) ++hand_places;
  if (!node.failure.empty()) ++failed;
}

std::string VerifyTotals::text() const {
  std::string text = fmt::format("{}: {}, {}, {} differ\n", Counted(nodes, "node"),
                                 Counted(records, "record"), Counted(fields, "field"), differences);
  const auto add = [&text](const char* what, std::size_t count) {
    if (count != 0) text += fmt::format("{}: {}\n", what, Counted(count, "node"));
  };
  add("refused to compile", refused);
  add("to be changed by hand before compiling", hand_places);
  add("not verified", failed);
  return text;
}

std::string ReportText(const VerifiedNode& node, const Terminal& terminal) {
  std::string text = fmt::format("{} ({})\n", node.node->name, GuidText(node.node->guid));
  if (!node.failure.empty()) {
    text += fmt::format("  not verified: {}\n", node.failure);
    for (const std::string& line : node.failure_details) text += fmt::format("    {}\n", line);
    return text;
  }
  std::string idle;
  for (const FunctionResult& function : node.report.functions) {
    if (function.fields != 0 || !function.differences.empty() ||
        RefusalOf(node.report, function.name) != nullptr) {
      text += FunctionText(node.report, function);
    } else {
      idle += (idle.empty() ? "" : ", ") + function.name;
    }
  }
  if (!idle.empty()) text += Beside("  nothing to assign: ", idle, terminal.width);
  if (!node.report.hand_places.empty()) {
    text += Beside(
        "  ", "to be changed by hand before it compiles; verified in a copy with these changes",
        terminal.width);
  }
  for (const HandPlace& place : node.report.hand_places) {
    text += Beside("    ", fmt::format("{}, {}", place.line.function, place.what), terminal.width);
    text += fmt::format("      {}\n", Trimmed(place.line.text));
  }
  return text;
}

}  // namespace fabscan
