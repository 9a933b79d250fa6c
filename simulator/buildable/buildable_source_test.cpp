#include "simulator/buildable/buildable_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace fabscan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kHead[] =
    "// Node Type: SW, Node GUID: 0x0000000000000010, Ports: 2\n"
    "// Name: 'leaf', Alt: '\n";

class BuildableSourceTest : public testing::Test {
 protected:
  BuildableSourceTest() {
    IBNode& node = fabscan_.discovered_fabric.makeNode("leaf", 0x10, IB_SW_NODE, 2);
    auto& record = fabscan_.fabric_extended_info.put<IB_ClassPortInfo>(node);
    record.RedirectGID[0] = 0xfe80000000000000;
    record.RedirectGID[1] = 0x5a1e0c0000000100;
  }

  /// The edits as `line function: text -> change`.
  std::vector<std::string> Edits(const std::string& text) {
    source_ = MakeBuildable(text, fabscan_);
    std::vector<std::string> lines;
    for (const SourceEdit& edit : source_.edits) {
      lines.push_back(std::to_string(edit.line) + ' ' + edit.function + ": " + edit.text + " -> " +
                      edit.change);
    }
    return lines;
  }

  Fabscan fabscan_;
  BuildableSource source_;
};

TEST_F(BuildableSourceTest, DoesNotChangeAFileThatCompiles) {
  for (const std::string text :
       {"", "\n", "no line end", "void P::SW::setArInfo() {\n    mad_buffer.x = 0x1;\n}\n",
        "#error outside of a function\n"}) {
    EXPECT_THAT(Edits(text), IsEmpty());
    EXPECT_EQ(source_.text, text);
  }
}

TEST_F(BuildableSourceTest, TurnsAnErrorLineIntoACommentThatKeepsItsText) {
  const std::string text = std::string(kHead) +
                           "void P::SW::setArInfo() {\n"
                           "#error \"The node=leaf does not support AR\"\n"
                           "}\n"
                           "\n"
                           "void P::SW::setPrivateLftInfo() {\n"
                           "#error \"Failed to get PrivateLFTInfo mad for the node=leaf\n"
                           "}\n";
  EXPECT_THAT(
      Edits(text),
      ElementsAre("4 setArInfo: #error \"The node=leaf does not support AR\" -> #error line "
                  "turned into a comment",
                  "8 setPrivateLftInfo: #error \"Failed to get PrivateLFTInfo mad for the "
                  "node=leaf -> #error line turned into a comment"));
  EXPECT_EQ(source_.text, std::string(kHead) +
                              "void P::SW::setArInfo() {\n"
                              "// #error \"The node=leaf does not support AR\"\n"
                              "}\n"
                              "\n"
                              "void P::SW::setPrivateLftInfo() {\n"
                              "// #error \"Failed to get PrivateLFTInfo mad for the node=leaf\n"
                              "}\n");
  EXPECT_TRUE(source_.edits[0].is_error_line);
  EXPECT_EQ(source_.edits[0].node, "leaf");
}

TEST_F(BuildableSourceTest, AssignsTheRedirectGidOfTheNodeAsItsTwoWords) {
  const std::string function = "void P::SW::setVSReductionManagerClassPortInfo() {\n";
  const std::string text = kHead + function + "    mad_buffer.RedirectGID = 0x0x7ffd00001234;\n}\n";
  EXPECT_THAT(Edits(text), ElementsAre("4 setVSReductionManagerClassPortInfo: "
                                       "mad_buffer.RedirectGID = 0x0x...; -> redirect GID assigned "
                                       "as its two words"));
  EXPECT_EQ(source_.text, kHead + function +
                              "    mad_buffer.RedirectGID[0] = 0xfe80000000000000; "
                              "mad_buffer.RedirectGID[1] = 0x5a1e0c0000000100;\n}\n");
  EXPECT_FALSE(source_.edits[0].is_error_line);
}

TEST_F(BuildableSourceTest, TurnsTheRedirectGidIntoACommentIfTheNodeIsUnknown) {
  Edits(
      "void P::SW::setVSReductionManagerClassPortInfo() {\n"
      "    mad_buffer.RedirectGID = 0x0x7ffd00001234;\n}\n");
  EXPECT_EQ(source_.text,
            "void P::SW::setVSReductionManagerClassPortInfo() {\n"
            "    // mad_buffer.RedirectGID = 0x0x7ffd00001234;\n}\n");
}

TEST_F(BuildableSourceTest, PutsBracesAroundBranchesOfPushCounters) {
  EXPECT_THAT(
      Edits("void P::SW::setWrenPushReductionCounters() {\n"
            "    for (phys_port_t i = 1; i < m_node->numPorts; i++) {\n"
            "        switch (i) {\n"
            "        case 4:\n"
            "            WrenPushReductionCounters mad_buffer = {0};\n"
            "            if (p_ctr) {\n"
            "            }\n"
            "            break;\n"
            "        default:\n"
            "            WrenPushReductionCounters mad_buffer = {0};\n"
            "        }\n"
            "\n"
            "        SMP_TarnExtPortInfo_pack(&mad_buffer, x);\n"
            "    }\n"
            "}\n"),
      ElementsAre("4 setWrenPushReductionCounters: case 4: -> braces put around each branch",
                  "13 setWrenPushReductionCounters: SMP_TarnExtPortInfo_pack(&mad_buffer, "
                  "x); -> pack of an undeclared record turned into a comment"));
  EXPECT_EQ(source_.text,
            "void P::SW::setWrenPushReductionCounters() {\n"
            "    for (phys_port_t i = 1; i < m_node->numPorts; i++) {\n"
            "        switch (i) {\n"
            "        case 4: {\n"
            "            WrenPushReductionCounters mad_buffer = {0};\n"
            "            if (p_ctr) {\n"
            "            }\n"
            "            break; }\n"
            "        default: {\n"
            "            WrenPushReductionCounters mad_buffer = {0};\n"
            "        } }\n"
            "\n"
            "        // SMP_TarnExtPortInfo_pack(&mad_buffer, x);\n"
            "    }\n"
            "}\n");
}

TEST_F(BuildableSourceTest, DoesNotChangeEqualLinesOfOtherFunctions) {
  const std::string text =
      "void P::SW::setExtendedPortInfo() {\n"
      "        case 4:\n"
      "            break;\n"
      "        default:\n"
      "        }\n"
      "        SMP_TarnExtPortInfo_pack(&mad_buffer, x);\n"
      "}\n";
  EXPECT_THAT(Edits(text), IsEmpty());
  EXPECT_EQ(source_.text, text);
}

}  // namespace
}  // namespace fabscan
