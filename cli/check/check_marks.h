#ifndef FABSCAN_CLI_CHECK_MARKS_H
#define FABSCAN_CLI_CHECK_MARKS_H

#include <algorithm>
#include <iterator>

#include "cli/check/check_result.h"
#include "cli/terminal/terminal.h"

namespace fabscan {

/// How a mark is shown.
struct MarkRow {
  Mark mark;
  const char* sign;
  Style style;
  const char* word;
  const char* meaning;
};

// In the order of the legend and the reasons: marks that stop a build come first.
// clang-format off
inline constexpr MarkRow kMarkRows[] = {
    {Mark::kError,   "E", Style::kBad,     "error",   "an #error line stops the compiler"},
    {Mark::kHand,    "H", Style::kWarning, "hand",    "does not compile without an edit"},
    {Mark::kComment, ".", Style::kQuiet,   "comment", "skipped: a comment gives the reason"},
    {Mark::kBlock,   "+", Style::kGood,    "block",   "gives the simulated node its values"},
};
// clang-format on

inline const MarkRow& RowOf(Mark mark) {
  return *std::find_if(std::begin(kMarkRows), std::end(kMarkRows),
                       [mark](const MarkRow& row) { return row.mark == mark; });
}

}  // namespace fabscan

#endif
