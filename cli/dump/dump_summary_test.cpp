#include "cli/dump/dump_summary.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>

#include "cli/selection/guid_options.h"

namespace fabscan {
namespace {

std::string Section(u_int64_t guid, const std::string& class_word, const std::string& body) {
  return "\n\n// Node Type: SW, Node GUID: " + GuidText(guid) +
         ", Ports: 1\n// Name: 'S', Alt: '\n" + "void P::" + class_word + "::setNodeInfo() {\n" +
         body + "}\n";
}

TEST(DumpSummaryTest, CountsNodesAndFunctionsByKind) {
  std::istringstream text(Section(1, "SW", "    a = 1;\n") + Section(2, "HCA", "// why\n") +
                          Section(3, "RTR", "#error \"why\n") + Section(4, "AN", "    a = 1;\n"));
  const DumpSummary summary(text);
  EXPECT_EQ(summary.nodes(), 4U);
  EXPECT_EQ(summary.functions(), 4U);
  EXPECT_EQ(summary.functions(BodyKind::kBlock), 2U);
  EXPECT_EQ(summary.functions(BodyKind::kComment), 1U);
  EXPECT_EQ(summary.functions(BodyKind::kError), 1U);
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
  std::istringstream text(Section(1, "SW", "") + Section(2, "HCA", "") + Section(3, "SW", "") +
                          Section(4, "SW", ""));
  const DumpSummary summary(text);
  EXPECT_EQ(summary.faults().shared_classes, 1U);
  EXPECT_EQ(summary.faults().text(), "1 class defined by more than one node");
}

TEST(DumpSummaryTest, CountsWhatNeedsAnEdit) {
  std::string section = Section(1, "SW", "    mad_buffer.RedirectGID = 0x0x5581;\n");
  std::istringstream plain(section);
  EXPECT_FALSE(DumpSummary(plain).faults().any()) << "another function may write what it likes";
  const std::string name = "setNodeInfo";
  section.replace(section.find(name), name.size(), "setVSReductionManagerClassPortInfo");
  std::istringstream text(section);
  const DumpSummary summary(text);
  EXPECT_EQ(summary.functions(BodyKind::kBlock), 0U);
  EXPECT_EQ(summary.functions(), 1U);
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
