#include "dump_summary.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>

#include "guid_options.h"

namespace fabscan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
  EXPECT_EQ(summary.sharedClasses(), 0U);
  EXPECT_THAT(summary.warnings("P", IBFabric()), IsEmpty());
  EXPECT_EQ(summary.text(),
            "  nodes written                   4\n"
            "  functions with a block          2\n"
            "  skipped with a comment          1\n"
            "  stopped with #error             1\n"
            "  to finish by hand               0");
  EXPECT_THAT(summary.text(3), testing::StartsWith("  nodes written                   4\n"
                                                   "  outside the sub-fabric          3\n"
                                                   "  functions with a block"));
}

TEST(DumpSummaryTest, NamesTheNodesOfASharedClassAndOneOfEach) {
  IBFabric fabric;
  fabric.makeNode("S1", 1, IB_SW_NODE, 1);
  fabric.makeNode("H", 2, IB_CA_NODE, 1);
  fabric.makeNode("S2", 3, IB_SW_NODE, 1);
  std::istringstream text(Section(1, "SW", "") + Section(2, "HCA", "") + Section(3, "SW", ""));
  const DumpSummary summary(text);
  EXPECT_EQ(summary.sharedClasses(), 1U);
  EXPECT_THAT(summary.warnings("P", fabric),
              ElementsAre("2 nodes define the class P::SW: 0x0000000000000001 (S1), "
                          "0x0000000000000003 (S2)",
                          "such a file does not compile; for one node of each class, add "
                          "--guid 0x0000000000000002 --guid 0x0000000000000001"));
}

TEST(DumpSummaryTest, NamesWhatNeedsAHand) {
  IBFabric fabric;
  fabric.makeNode("S1", 1, IB_SW_NODE, 1);
  std::string section = Section(1, "SW", "    mad_buffer.RedirectGID = 0x0x5581;\n");
  std::istringstream plain(section);
  EXPECT_TRUE(DumpSummary(plain).compiles()) << "another function may write what it likes";
  const std::string name = "setNodeInfo";
  section.replace(section.find(name), name.size(), "setVSReductionManagerClassPortInfo");
  std::istringstream text(section);
  const DumpSummary summary(text);
  EXPECT_EQ(summary.handPlaces(), 1U);
  EXPECT_EQ(summary.functions(BodyKind::kBlock), 0U);
  EXPECT_EQ(summary.functions(), 1U);
  EXPECT_FALSE(summary.compiles());
  EXPECT_THAT(summary.warnings("P", fabric),
              ElementsAre("to finish by hand before the file compiles: "
                          "setVSReductionManagerClassPortInfo of 0x0000000000000001 (S1)"));
}

TEST(DumpSummaryTest, AWarningStaysShort) {
  IBFabric fabric;
  std::string sections;
  for (u_int64_t guid = 1; guid <= 1000; ++guid) {
    fabric.makeNode("S" + std::to_string(guid), guid, IB_SW_NODE, 1);
    sections += Section(guid, "SW", "");
  }
  std::istringstream text(sections);
  const std::string warning = DumpSummary(text).warnings("P", fabric).front();
  EXPECT_THAT(warning, testing::StartsWith("1000 nodes define the class P::SW: "));
  EXPECT_THAT(warning, testing::EndsWith("0x0000000000000008 (S8) and 992 more"));
}

}  // namespace
}  // namespace fabscan
