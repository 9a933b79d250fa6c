#include "cli/check/check_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "cli/check/check_marks.h"
#include "cli/files/standard_streams.h"
#include "cli/output/counted.h"
#include "cli/output/node_text.h"
#include "cli/output/table.h"
#include "cli/selection/guid_options.h"
#include "cli/selection/selected_nodes.h"

namespace fabscan {

namespace {

/// The column's letter: a to v for the 22 functions.
char LetterOf(std::size_t function) { return static_cast<char>('a' + function); }

std::string MatrixText(const CheckResult& result, const Terminal& terminal) {
  std::string letters;
  for (std::size_t i = 0; i < result.functionNames().size(); ++i) letters += LetterOf(i);
  Table table({{"GUID"}, {"class"}, {letters}, {"node", false, Narrow::kCut}});
  for (const CheckedNode& node : result.nodes()) {
    Cell marks("");
    for (const CheckedFunction& function : node.functions) {
      const MarkRow& row = RowOf(function.mark);
      marks.Add(row.sign, row.style);
    }
    table.AddRow({GuidText(node.node->guid), node.class_word, marks, node.node->name});
  }
  return table.text(terminal);
}

std::string LegendText(const CheckResult& result, const Terminal& terminal) {
  std::string text;
  for (const MarkRow& row : kMarkRows) {
    text += fmt::format("  {}  {}\n", Painted(row.sign, row.style, terminal), row.meaning);
  }
  std::vector<Column> columns = {{""}, {"function"}};
  for (const MarkRow& row : kMarkRows) columns.push_back({row.sign, true});
  Table table(columns);
  for (std::size_t i = 0; i < result.functionNames().size(); ++i) {
    std::vector<Cell> cells = {std::string(1, LetterOf(i)), result.functionNames()[i]};
    for (const MarkRow& row : kMarkRows) {
      const std::size_t count = result.count(row.mark, i);
      cells.emplace_back(count == 0 ? "" : std::to_string(count), row.style);
    }
    table.AddRow(std::move(cells));
  }
  return text + '\n' + table.text(terminal);
}

using Nodes = std::vector<const IBNode*>;

/// The text of the generator.
std::string Quoted(std::string_view text) { return fmt::format("\"{}\"", text); }

/// The reasons of one function: mark row and reason to the affected nodes.
using FunctionReasons = std::map<std::pair<std::size_t, std::size_t>, Nodes>;

FunctionReasons ReasonsOf(const CheckResult& result, std::size_t function) {
  FunctionReasons reasons;
  for (const CheckedNode& node : result.nodes()) {
    const CheckedFunction& checked = node.functions[function];
    if (checked.reason == 0) continue;
    const auto row = static_cast<std::size_t>(&RowOf(checked.mark) - kMarkRows);
    reasons[{row, checked.reason}].push_back(node.node);
  }
  return reasons;
}

/// The generated text instead of blocks, with its functions; functions of the same nodes share a
/// row.
std::string GeneratedLinesText(const CheckResult& result, const Terminal& terminal) {
  struct Line {
    std::size_t row;
    std::size_t reason;
    Nodes nodes;
    std::string letters;
  };
  std::vector<Line> lines;
  for (std::size_t i = 0; i < result.functionNames().size(); ++i) {
    for (const auto& entry : ReasonsOf(result, i)) {
      const auto& place = entry.first;  // Clang lets no lambda capture a structured binding
      const auto& nodes = entry.second;
      const auto same = std::find_if(lines.begin(), lines.end(), [&](const Line& line) {
        return line.row == place.first && line.reason == place.second && line.nodes == nodes;
      });
      if (same != lines.end()) {
        same->letters += LetterOf(i);
      } else {
        lines.push_back({place.first, place.second, nodes, std::string(1, LetterOf(i))});
      }
    }
  }
  std::stable_sort(lines.begin(), lines.end(),
                   [](const Line& one, const Line& other) { return one.row < other.row; });
  Table table({{""}, {""}, {"nodes", true}, {"the generated line says", false, Narrow::kWrap}});
  for (const Line& line : lines) {
    const MarkRow& row = kMarkRows[line.row];
    table.AddRow({Cell(row.sign, row.style), line.letters, std::to_string(line.nodes.size()),
                  Quoted(result.reason(line.reason))});
  }
  return table.empty() ? std::string() : '\n' + table.text(terminal);
}

/// One row per cause, with its effects.
std::string CausesText(const CheckResult& result, const std::vector<CauseGroup>& groups,
                       const Terminal& terminal) {
  Table table({{""}, {"nodes", true}, {"cause", false, Narrow::kWrap}});
  for (const CauseGroup& group : groups) {
    const bool is_shared = group.cause.code == CauseCode::kSharedClass;
    const MarkRow& row = RowOf(group.mark);
    std::string text = group.cause.text;
    if (!is_shared) text += ": affects " + FunctionNames(result, group);
    if (group.StopsBuild()) text += fmt::format(" ({})", NamesOf(group.nodes));
    table.AddRow({is_shared ? Cell("") : Cell(row.sign, row.style),
                  std::to_string(group.nodes.size()), text});
  }
  return table.empty() ? std::string() : table.text(terminal) + '\n';
}

/// The counts and the verdict.
std::string CountsText(const CheckResult& result, const std::string& snapshot,
                       const Terminal& terminal) {
  const std::size_t nodes = result.nodes().size();
  const std::string counts = fmt::format(
      "{}: {}, {}: {} with a block, {} skipped, {} with #error, {} in need of an edit", snapshot,
      Counted(nodes, "node"), Counted(nodes * result.functionNames().size(), "function"),
      result.count(Mark::kBlock), result.count(Mark::kComment), result.count(Mark::kError),
      result.count(Mark::kHand));
  std::string text = Paragraph(counts, terminal) + LeftOutText(result.LeftOut());
  const Style style = result.Builds() ? Style::kGood : Style::kBad;
  for (const std::string& line : Wrapped(Verdict(result), terminal.width)) {
    text += Painted(line, style, terminal) + '\n';
  }
  return text;
}

}  // namespace

std::string Verdict(const CheckResult& result) {
  if (result.Builds()) return "builds";
  std::string causes;
  const auto add = [&causes](std::size_t count, const std::string& text) {
    if (count != 0) causes += (causes.empty() ? "" : ", ") + text;
  };
  const std::size_t errors = result.count(Mark::kError);
  const std::size_t hand = result.count(Mark::kHand);
  const std::size_t shared = result.SharedClasses().size();
  add(errors, Counted(errors, "function") + " with #error");
  add(hand, fmt::format("{} in need of an edit", hand));
  add(shared, Counted(shared, "class", "classes") + " that several nodes define");
  return "does not build: " + causes;
}

std::string TotalsText(const CheckReport& report, const Terminal& terminal) {
  return CountsText(report.result, InputName(report.snapshot), terminal) +
         NextText(report.next, terminal);
}

std::string SummaryText(const CheckReport& report, const Terminal& terminal) {
  return CausesText(report.result, report.groups, terminal) + TotalsText(report, terminal);
}

std::string CheckText(const CheckReport& report, const Terminal& terminal) {
  return MatrixText(report.result, terminal) + '\n' + LegendText(report.result, terminal) +
         GeneratedLinesText(report.result, terminal) + '\n' + SummaryText(report, terminal);
}

}  // namespace fabscan
