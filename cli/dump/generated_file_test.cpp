#include "cli/dump/generated_file.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace fabscan {
namespace {

constexpr char kFrame[] =
    "/*\n* licence\n*/\n\n// Written by fabscan\n// Host Name: h\n\n#include \"mydev.h\"\n";

TEST(GeneratedFileTest, ReadsNodesAndFunctions) {
  std::istringstream text(
      std::string(kFrame) +
      "\n\n"
      "// Node Type: SW, Node GUID: 0x00000000000002c9, Ports: 36\n"
      "// Name: 'void S::S::S() {', Alt: '\n"
      "void MyDev::SW::setNodeInfo() {\n"
      "    SMP_NodeInfo mad_buffer = {0};\n"
      "\n"
      "    }\n"
      "}\n"
      "\n"
      "void MyDev::SW::setRouterInfo() {\n"
      "// The node=S is not a router\n"
      "}\n"
      "\n\n"
      "// Node Type: CA(Special Node), Node GUID: 0xffffffffffffffff, Ports: 1\n"
      "// Name: 'H', Alt: 'a\n"
      "void MyDev::AN::setNodeInfo() {\n"
      "#error \"Failed to get NodeInfo mad for the node=H\"\n"
      "}\n");
  GeneratedFileReader reader(text);
  GeneratedNode node;
  ASSERT_TRUE(reader.Next(node));
  EXPECT_EQ(node.guid, 0x2c9U);
  EXPECT_EQ(node.class_word, "SW");
  ASSERT_EQ(node.functions.size(), 2U);
  EXPECT_EQ(node.functions[0].name, "setNodeInfo");
  EXPECT_EQ(node.functions[0].body, "    SMP_NodeInfo mad_buffer = {0};\n\n    }\n");
  EXPECT_EQ(node.functions[0].kind, BodyKind::kBlock);
  EXPECT_EQ(node.functions[0].line, 13U);
  EXPECT_EQ(node.functions[1].name, "setRouterInfo");
  EXPECT_EQ(node.functions[1].kind, BodyKind::kComment);
  ASSERT_TRUE(reader.Next(node));
  EXPECT_EQ(node.guid, 0xffffffffffffffffU);
  EXPECT_EQ(node.class_word, "AN");
  ASSERT_EQ(node.functions.size(), 1U);
  EXPECT_EQ(node.functions[0].kind, BodyKind::kError);
  EXPECT_FALSE(reader.Next(node));
}

TEST(GeneratedFileTest, AFrameAloneHasNoNodes) {
  std::istringstream text(kFrame);
  GeneratedFileReader reader(text);
  GeneratedNode node;
  EXPECT_FALSE(reader.Next(node));
}

std::string ErrorOf(const std::string& text) {
  std::istringstream stream(text);
  GeneratedFileReader reader(stream);
  try {
    for (GeneratedNode node; reader.Next(node);) {
    }
  } catch (const GeneratedFileError& error) {
    return error.what();
  }
  return "";
}

TEST(GeneratedFileTest, RefusesWhatHasAnotherForm) {
  const std::string head = "// Node Type: SW, Node GUID: 0x1, Ports: 1\n";
  const std::string name = "// Name: 'S', Alt: '\n";
  EXPECT_EQ(ErrorOf("// Node Type: SW\n"), "line 1: a node's GUID expected");
  EXPECT_EQ(ErrorOf(head), "line 1: a node's name expected");
  EXPECT_EQ(ErrorOf(head + name + "int x;\n"), "line 3: a function expected");
  EXPECT_EQ(ErrorOf(head + name + "void f() {\n"),
            "line 3: 'void PREFIX::CLASS::NAME() {' expected");
  EXPECT_EQ(ErrorOf(head + name + "void A::B::c() {\n// no end\n"),
            "line 4: the function's closing brace expected");
  EXPECT_EQ(ErrorOf(head + name + "void A::B::c() {\n}\n"), "");
}

TEST(GeneratedFileTest, ABodyIsErrorBeforeBlockBeforeComment) {
  EXPECT_EQ(KindOfBody(""), BodyKind::kComment);
  EXPECT_EQ(KindOfBody("// a\n    // b\n"), BodyKind::kComment);
  EXPECT_EQ(KindOfBody("    // ---------- SMP Caps ----------\n    a = 1;\n"), BodyKind::kBlock);
  EXPECT_EQ(KindOfBody("    a = 1;\n#error \"x\n"), BodyKind::kError);
  EXPECT_EQ(KindOfBody("// #error \"x\n"), BodyKind::kComment);
}

TEST(GeneratedFileTest, GivesTheReason) {
  EXPECT_EQ(ReasonOfBody("// The node=S is not a router\n"), "The node=S is not a router");
  EXPECT_EQ(ReasonOfBody("#error \"The node=S does not support AR\"\n"),
            "The node=S does not support AR");
  EXPECT_EQ(ReasonOfBody("#error \"Failed to get VS ArInfo mad for the node=S\n"),
            "Failed to get VS ArInfo mad for the node=S");
  EXPECT_EQ(ReasonOfBody("    a = 1;\n"), "");
}

}  // namespace
}  // namespace fabscan
