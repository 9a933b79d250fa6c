#include "cli/dump/edit_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "cli/dump/function_body.h"
#include "cli/output/table.h"

namespace fabscan {

namespace {

struct Row {
  std::string_view function;
  std::string change;
  std::size_t times;
};

std::string ChangeText(const SourceEdit& edit) {
  if (!edit.is_error_line) return edit.change;
  return fmt::format("{}: \"{}\"", edit.change, WithoutName(ReasonOfLine(edit.text), edit.node));
}

}  // namespace

std::string EditsText(const std::vector<SourceEdit>& edits, const Terminal& terminal) {
  if (edits.empty()) return {};
  std::vector<Row> rows;
  for (const SourceEdit& edit : edits) {
    std::string change = ChangeText(edit);
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) {
      return row.function == edit.function && row.change == change;
    });
    if (found == rows.end()) {
      rows.push_back({edit.function, std::move(change), 1});
    } else {
      ++found->times;
    }
  }
  Table table({{"times", true}, {"function"}, {"edit", false, Narrow::kWrap}});
  for (Row& row : rows) {
    table.AddRow({std::to_string(row.times), std::string(row.function), std::move(row.change)});
  }
  return "Edited so that it compiles:\n" + table.text(terminal, 2);
}

}  // namespace fabscan
