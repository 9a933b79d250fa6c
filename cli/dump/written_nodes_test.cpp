#include "cli/dump/written_nodes.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "cli/dump/generated_file.h"

namespace fabscan {
namespace {

constexpr char kSwitch[] =
    "\n\n// Node Type: SW, Node GUID: 0x0000000000000001, Ports: 36\n// Name: 'S', Alt: '\n"
    "void MyDev::SW::setNodeInfo() {\n}\n";
constexpr char kAdapter[] =
    "\n\n// Node Type: CA, Node GUID: 0x0000000000000002, Ports: 1\n// Name: 'H', Alt: '\n"
    "void MyDev::HCA::setNodeInfo() {\n";

class WrittenNodesTest : public testing::Test {
 protected:
  WrittenNodesTest() {
    static_cast<void>(std::remove(path_.c_str()));
    fabric_.makeNode("H", 2, IB_CA_NODE, 1);
    fabric_.makeNode("S", 1, IB_SW_NODE, 36);
  }
  ~WrittenNodesTest() override { static_cast<void>(std::remove(path_.c_str())); }

  void Append(const std::string& text) { std::ofstream(path_, std::ios::app) << text; }

  const std::string path_ = testing::TempDir() + "written_nodes_test.cpp";
  IBFabric fabric_;
};

TEST_F(WrittenNodesTest, CountsThoseBeforeTheLast) {
  WrittenNodes written({fabric_.getNodeByGuid(1), fabric_.getNodeByGuid(2)}, path_);
  EXPECT_EQ(written.Count(), 0U);  // no file
  Append("// the head of the file\n");
  EXPECT_EQ(written.Count(), 0U);
  Append(kSwitch);
  EXPECT_EQ(written.Count(), 0U);
  Append(kAdapter);
  EXPECT_EQ(written.Count(), 1U);
  Append(std::string(3U << 20, '\n'));  // a node that is longer than what is looked at
  EXPECT_EQ(written.Count(), 1U);
}

TEST(GuidOfLastNodeTest, TakesNoNameAndNoPartForOne) {
  EXPECT_EQ(GuidOfLastNode(""), std::nullopt);
  EXPECT_EQ(GuidOfLastNode(kSwitch), 1U);
  EXPECT_EQ(
      GuidOfLastNode(std::string(kSwitch) + "// // Node Type: CA, Node GUID: 0x9, Ports: 1\n"), 1U);
  EXPECT_EQ(GuidOfLastNode(std::string(kSwitch) + "\n// Node Type: CA, Node GUID: 0x00"),
            std::nullopt);
}

}  // namespace
}  // namespace fabscan
