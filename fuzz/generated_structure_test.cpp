// The oracle of the generator's fuzz target must detect errors.

#include "fuzz/generated_structure.h"

#include <gtest/gtest.h>

#include "fuzz/bytes.h"
#include "fuzz/inconsistent_fabric.h"
#include "fuzz/scratch_folder.h"

namespace fabscan {
namespace {

class GeneratedStructureTest : public testing::Test {
 protected:
  GeneratedStructureTest() {
    for (const char* name : {"S1", "S2"}) {
      IBNode& node = fabscan_.discovered_fabric.makeNode(name, nodes_.size() + 1, IB_SW_NODE, 1);
      nodes_.push_back(&node);
    }
    text_ = ScratchFolder().Generated(fabscan_, {});
  }

  /// The error after replacing the first `from` with `to`.
  std::string FaultWith(const std::string& from, const std::string& to) const {
    std::string text = text_;
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return FaultOfStructure(text.replace(at, from.size(), to), "Fuzz", nodes_);
  }

  Fabscan fabscan_;
  std::vector<const IBNode*> nodes_;
  std::string text_;
};

TEST_F(GeneratedStructureTest, AcceptsGeneratedFiles) {
  EXPECT_EQ(FaultOfStructure(text_, "Fuzz", nodes_), "");
}

TEST_F(GeneratedStructureTest, DetectsARenamedAddedOrMissingFunction) {
  EXPECT_NE(FaultWith("setFWInfo", "setHWInfo"), "");
  EXPECT_NE(FaultWith("void Fuzz::SW::setFWInfo", "void f() {\n}\nvoid Fuzz::SW::setFWInfo"), "");
  const std::string function = "void Fuzz::SW::setArInfo() {\n";
  const std::size_t begin = text_.find(function);
  const std::size_t end = text_.find("\n}\n\n", begin) + 4;
  EXPECT_NE(FaultWith(text_.substr(begin, end - begin), ""), "");
}

TEST_F(GeneratedStructureTest, DetectsAnUnclosedOrTwiceClosedBody) {
  EXPECT_NE(FaultWith("\n}\n", "\n"), "");
  EXPECT_NE(FaultWith("\n}\n", "\n}\n}\n"), "");
  EXPECT_NE(FaultWith("setFWInfo() {\n", "setFWInfo() {\n    {\n"), "");
  EXPECT_NE(FaultWith("setFWInfo() {\n", "setFWInfo() {\n    }\n"), "");
  EXPECT_NE(FaultWith("setFWInfo() {\n", "setFWInfo() {\nint x;\n"), "");
}

TEST_F(GeneratedStructureTest, DetectsExtraMissingOrReorderedNodes) {
  const std::vector<const IBNode*> one = {nodes_[0]};
  EXPECT_NE(FaultOfStructure(text_, "Fuzz", one), "");
  const std::vector<const IBNode*> swapped = {nodes_[1], nodes_[0]};
  EXPECT_NE(FaultOfStructure(text_, "Fuzz", swapped), "");
  const std::vector<const IBNode*> three = {nodes_[0], nodes_[1], nodes_[1]};
  EXPECT_NE(FaultOfStructure(text_, "Fuzz", three), "");
  EXPECT_NE(FaultOfStructure("", "Fuzz", {}), "");
}

TEST_F(GeneratedStructureTest, DetectsANameThatEndsItsLine) {
  EXPECT_NE(FaultWith("S1', Alt", "S1\n}', Alt"), "");
}

TEST(InconsistentFabric, DetectsANameThatChangesOtherText) {
  // One selected node with the name "ab".
  const u_int8_t input[] = {1, 2, 'a', 'b'};
  Bytes bytes(input, sizeof input);
  Fabscan fabscan;
  InconsistentFabric fabric(bytes, fabscan);
  ASSERT_EQ(fabric.Selected().size(), 1U);
  EXPECT_EQ(fabric.Selected()[0]->name, "ab");
  EXPECT_EQ(fabric.WithFirstNames("x <N0> <A0> <N1>"), "x ab  <N1>");
  fabric.UsePlainNames();
  EXPECT_EQ(fabric.Selected()[0]->name, "<N0>");
}

}  // namespace
}  // namespace fabscan
