#include "cli/dump/edit_report.h"

#include <gtest/gtest.h>

namespace fabscan {
namespace {

SourceEdit ErrorLine(const std::string& node) {
  return {7,
          node,
          "setArInfo",
          "#error \"The node=" + node + " does not support AR\"",
          "#error line turned into a comment",
          true};
}

TEST(EditReport, CountsEditsOfManyNodesThatReadAlike) {
  const SourceEdit braces = {9, "a", "setWrenPushReductionCounters", "case 4:", "braces", false};
  EXPECT_EQ(EditsText({ErrorLine("a"), braces, ErrorLine("b")}, Terminal()),
            "Edited so that it compiles:\n"
            "  times  function                      edit\n"
            "      2  setArInfo                     #error line turned into a comment: \"The node "
            "does not support AR\"\n"
            "      1  setWrenPushReductionCounters  braces\n");
}

TEST(EditReport, SaysNothingWithoutEdits) { EXPECT_EQ(EditsText({}, Terminal()), ""); }

}  // namespace
}  // namespace fabscan
