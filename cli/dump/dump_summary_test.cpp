#include "cli/dump/dump_summary.h"

#include <gmock/gmock.h>

#include <string>

namespace fabscan {
namespace {

TEST(DumpSummaryTest, CountsNodesAndFunctions) {
  DumpSummary summary;
  for (const char* class_word : {"SW", "HCA", "RTR", "AN"}) summary.AddNode(class_word);
  for (const Mark mark : {Mark::kBlock, Mark::kComment, Mark::kError, Mark::kBlock}) {
    summary.AddFunction(mark);
  }
  EXPECT_EQ(summary.nodes(), 4U);
  EXPECT_EQ(summary.functions(Mark::kBlock), 2U);
  EXPECT_EQ(summary.faults().text(), "1 function with #error");
  EXPECT_EQ(summary.text(),
            "  nodes written                   4\n"
            "  functions with a block          2\n"
            "  skipped with a comment          1\n"
            "  stopped with #error             1\n"
            "  in need of an edit              0");
  EXPECT_THAT(summary.text(3), testing::StartsWith("  nodes written                   4\n"
                                                   "  outside the sub-fabric          3\n"
                                                   "  functions with a block"));
}

TEST(DumpSummaryTest, CountsTheClassesThatSeveralNodesDefine) {
  DumpSummary summary;
  for (const char* class_word : {"SW", "HCA", "SW", "SW"}) summary.AddNode(class_word);
  EXPECT_EQ(summary.faults().shared_classes, 1U);
  EXPECT_EQ(summary.faults().text(), "1 class defined by more than one node");
}

TEST(DumpSummaryTest, CountsWhatNeedsAnEdit) {
  DumpSummary summary;
  summary.AddNode("SW");
  summary.AddFunction(Mark::kBlock);
  EXPECT_FALSE(summary.faults().any());
  summary.AddFunction(Mark::kHand);
  EXPECT_EQ(summary.functions(Mark::kBlock), 1U);
  EXPECT_EQ(summary.faults().text(), "1 function that needs an edit");
}

TEST(CompileFaultsTest, AddUp) {
  CompileFaults faults{1, 0, 0};
  EXPECT_FALSE(CompileFaults().any());
  faults += {1, 2, 3};
  EXPECT_EQ(faults.text(),
            "2 functions with #error, 2 functions that need edits, 3 classes defined by more than "
            "one node");
}

}  // namespace
}  // namespace fabscan
