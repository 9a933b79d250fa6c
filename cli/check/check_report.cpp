#include "check_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "check_marks.h"
#include "counted.h"
#include "guid_options.h"
#include "json_result.h"
#include "node_text.h"
#include "selected_nodes.h"
#include "table.h"

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

/// The reasons of one function: mark row and reason to the nodes that it holds for.
using FunctionReasons = std::map<std::pair<std::size_t, std::size_t>, Nodes>;

FunctionReasons ReasonsOf(const CheckResult& result, std::size_t function) {
  FunctionReasons reasons;
  for (const CheckedNode& node : result.nodes()) {
    const CheckedFunction& checked = node.functions[function];
    if (checked.mark == Mark::kBlock) continue;
    const auto row = static_cast<std::size_t>(&RowOf(checked.mark) - kMarkRows);
    reasons[{row, checked.reason}].push_back(node.node);
  }
  return reasons;
}

/// Each reason with the functions that it holds for, those for the same nodes together.
std::string ReasonsText(const CheckResult& result, const Terminal& terminal) {
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
  Table table({{""}, {""}, {"nodes", true}, {"reason", false, Narrow::kWrap}});
  for (const Line& line : lines) {
    const MarkRow& row = kMarkRows[line.row];
    std::string reason(result.reason(line.reason));
    if (row.mark != Mark::kComment) reason += fmt::format(" ({})", NamesOf(line.nodes));
    table.AddRow(
        {Cell(row.sign, row.style), line.letters, std::to_string(line.nodes.size()), reason});
  }
  return table.empty() ? std::string() : '\n' + table.text(terminal);
}

std::string ClassesText(const CheckResult& result, const Terminal& terminal) {
  std::string text;
  for (const auto& [class_word, nodes] : result.SharedClasses()) {
    text += Paragraph(
        fmt::format("{} nodes define the class {}: {}", nodes.size(), class_word, NamesOf(nodes)),
        terminal);
  }
  if (!text.empty()) text = '\n' + text + "In one file only one node of a class compiles.\n";
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
  add(hand, fmt::format("{} to finish by hand", hand));
  add(shared, Counted(shared, "class", "classes") + " that several nodes define");
  return "does not build: " + causes;
}

std::string TotalsText(const CheckResult& result, const std::string& snapshot,
                       const Terminal& terminal) {
  const std::size_t nodes = result.nodes().size();
  const std::string counts = fmt::format(
      "{}: {}, {}: {} with a block, {} skipped, {} with #error, {} to finish by hand", snapshot,
      Counted(nodes, "node"), Counted(nodes * result.functionNames().size(), "function"),
      result.count(Mark::kBlock), result.count(Mark::kComment), result.count(Mark::kError),
      result.count(Mark::kHand));
  std::string text = Paragraph(counts, terminal) + LeftOutText(result.leftOut());
  const Style style = result.Builds() ? Style::kGood : Style::kBad;
  for (const std::string& line : Wrapped(Verdict(result), terminal.width)) {
    text += Painted(line, style, terminal) + '\n';
  }
  return text;
}

std::string CheckText(const CheckResult& result, const std::string& snapshot,
                      const Terminal& terminal) {
  return MatrixText(result, terminal) + '\n' + LegendText(result, terminal) +
         ReasonsText(result, terminal) + ClassesText(result, terminal) + '\n' +
         TotalsText(result, snapshot, terminal);
}

void PrintCheckJson(const CheckResult& result, const std::string& snapshot) {
  JsonResult json;
  json.Text("snapshot", snapshot);
  json.Truth("builds", result.Builds());
  json.Key("totals");
  json.BeginObject();
  json.Count("nodes", result.nodes().size());
  for (const MarkRow& row : kMarkRows) json.Count(row.word, result.count(row.mark));
  json.EndObject();
  json.Count("outsideSubFabric", result.leftOut());
  json.BeginObjects("sharedClasses");
  for (const auto& [class_word, nodes] : result.SharedClasses()) {
    json.BeginObject();
    json.Text("class", class_word);
    json.Key("guids");
    json.BeginArray();
    for (const IBNode* node : nodes) json.String(GuidText(node->guid));
    json.EndArray();
    json.EndObject();
  }
  json.EndArray();
  json.BeginObjects("nodes");
  for (const CheckedNode& node : result.nodes()) {
    json.BeginObject();
    json.Text("name", node.node->name);
    json.Guid("guid", node.node->guid);
    json.Text("class", node.class_word);
    json.BeginObjects("functions");
    for (std::size_t i = 0; i < node.functions.size(); ++i) {
      const CheckedFunction& function = node.functions[i];
      json.BeginObject();
      json.Text("name", result.functionNames()[i]);
      json.Text("mark", RowOf(function.mark).word);
      if (function.reason != 0) json.Text("reason", result.reason(function.reason));
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.Flush();
  }
  json.EndArray();
}

}  // namespace fabscan
