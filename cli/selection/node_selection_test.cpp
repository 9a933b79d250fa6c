#include "cli/selection/node_selection.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <fstream>

#include "cli/command.h"

namespace fabscan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr SelectionPurpose kWrite{"write"};
constexpr SelectionPurpose kShow{"show", NodeScope::kWholeFabric};
constexpr SelectionPurpose kVerify{"verify", NodeScope::kSubFabric, Unmatched::kRefuse};

class NodeSelectionTest : public testing::Test {
 protected:
  ~NodeSelectionTest() override { std::remove(path_.c_str()); }

  void WriteNode(const char* name, u_int64_t guid, const char* type, bool in_sub_fabric = true) {
    std::ofstream(path_, std::ios::app)
        << R"({"name":")" << name << R"(","guid":")" << GuidText(guid) << R"(","type":")" << type
        << R"(","numPorts":1)" << (in_sub_fabric ? "" : R"(,"inSubFabric":false)") << "}\n";
    ++nodes_;
  }

  /// Two switches, two adapters, one of each outside the sub-fabric.
  void WriteFabric() {
    WriteNode("leaf1", 1, "SW");
    WriteNode("leaf2", 2, "SW", false);
    WriteNode("host1", 3, "CA");
    WriteNode("host2", 4, "CA", false);
  }

  /// The GUIDs that these options select; standard error is in `errors_`.
  std::set<u_int64_t> Select(std::vector<std::string> arguments,
                             const SelectionPurpose& purpose = kWrite) {
    Finish();
    CLI::App app;
    NodeSelection selection;
    selection.AddTo(app);
    std::reverse(arguments.begin(), arguments.end());
    app.parse(arguments);
    fabscan_ = std::make_unique<Fabscan>();
    testing::internal::CaptureStderr();
    try {
      const SelectedSnapshot selected = selection.Read(path_, *fabscan_, {}, purpose);
      EXPECT_EQ(selected.guids.empty(), !selection.given());
      errors_ = testing::internal::GetCapturedStderr();
      return selected.guids;
    } catch (const CommandError& error) {
      errors_ = testing::internal::GetCapturedStderr();
      throw;
    }
  }

  /// Why these options select nothing, without the path.
  std::string Refusal(const std::vector<std::string>& arguments,
                      const SelectionPurpose& purpose = kWrite) {
    try {
      Select(arguments, purpose);
    } catch (const CommandError& error) {
      EXPECT_EQ(error.status(), kFailed);
      const std::string text = error.what();
      EXPECT_EQ(text.find(path_ + ": "), 0U);
      return text.substr(path_.size() + 2);
    }
    return "";
  }

  std::string errors_;
  std::unique_ptr<Fabscan> fabscan_;

 private:
  /// Adds the first and last line of a snapshot.
  void Finish() {
    std::ifstream file(path_);
    const std::string lines{std::istreambuf_iterator<char>(file), {}};
    if (lines.find("fabscan_snapshot") != std::string::npos) return;
    std::ofstream(path_) << "{\"fabscan_snapshot\":1}\n"
                         << lines << R"({"end":true,"nodes":)" << nodes_ << "}\n";
  }

  const std::string path_ = testing::TempDir() + "selection-" + std::to_string(::getpid());
  int nodes_ = 0;
};

TEST_F(NodeSelectionTest, EveryOptionSelects) {
  WriteFabric();
  EXPECT_THAT(Select({}), IsEmpty());
  EXPECT_THAT(Select({"--guid", "S-1", "--guid", "3"}), ElementsAre(1, 3));
  EXPECT_THAT(Select({"--name", "*1"}), ElementsAre(1, 3));
  EXPECT_THAT(Select({"--type", "switch"}), ElementsAre(1));
  EXPECT_THAT(Select({"--model", "hca_0000"}), ElementsAre(3));
  EXPECT_EQ(errors_, "");
}

TEST_F(NodeSelectionTest, TheScopeCanBeTheWholeFabric) {
  WriteFabric();
  EXPECT_THAT(Select({"--name", "*", "--type", "SW"}, kShow), ElementsAre(1, 2));
  EXPECT_THAT(Select({"--model", "HCA_0000"}, kShow), ElementsAre(3, 4));
  EXPECT_THAT(Select({"--guid", "2"}, kShow), ElementsAre(2));
}

TEST_F(NodeSelectionTest, ValuesAreAlternativesAndOptionsAreCombined) {
  WriteFabric();
  EXPECT_THAT(Select({"--name", "leaf1", "--name", "host?"}), ElementsAre(1, 3));
  EXPECT_THAT(Select({"--type", "SW", "--type", "CA"}), ElementsAre(1, 3));
  EXPECT_THAT(Select({"--type", "SW", "--name", "*1"}), ElementsAre(1));
  EXPECT_THAT(Select({"--guid", "1", "--guid", "3", "--type", "CA"}), ElementsAre(3));
  EXPECT_EQ(errors_, "");
}

TEST_F(NodeSelectionTest, ReadsOnlySelectedGuidsInFull) {
  WriteFabric();
  Select({"--guid", "1"});
  EXPECT_TRUE(fabscan_->discovered_fabric.getNodeByGuid(4)->in_sub_fabric);  // the default
  Select({"--guid", "1", "--model", "SW_0000"});
  EXPECT_FALSE(fabscan_->discovered_fabric.getNodeByGuid(4)->in_sub_fabric);
}

TEST_F(NodeSelectionTest, WarnsAboutValuesThatMatchNoNode) {
  WriteFabric();
  Select({"--guid", "1", "--guid", "2", "--guid", "9"});
  EXPECT_EQ(errors_,
            "fabscan: warning: the node 0x0000000000000002 (leaf2) is outside the sub-fabric\n"
            "fabscan: warning: no node has the GUID 0x0000000000000009\n");
  Select({"--name", "leaf1", "--name", "leaf2", "--name", "x*", "--type", "SW", "--type", "RTR",
          "--model", "SW_0000", "--model", "SW_0001"});
  EXPECT_EQ(errors_,
            "fabscan: warning: no node in the sub-fabric matches --name 'leaf2'\n"
            "fabscan: warning: no node matches --name 'x*'\n"
            "fabscan: warning: no node matches --type 'RTR'\n"
            "fabscan: warning: no node matches --model 'SW_0001'\n");
}

TEST_F(NodeSelectionTest, ReportsTheUnmatchedValueIfNoNodeIsLeft) {
  WriteFabric();
  EXPECT_EQ(Refusal({"--guid", "9"}),
            "no node to write: no node has the GUID 0x0000000000000009; 'fabscan show' lists the "
            "nodes");
  EXPECT_EQ(Refusal({"--guid", "2"}),
            "no node to write: the node 0x0000000000000002 (leaf2) is outside the sub-fabric; "
            "'fabscan show' lists the nodes");
  EXPECT_EQ(Refusal({"--name", "x*"}, kShow),
            "no node to show: no node matches --name 'x*'; 'fabscan show' lists the nodes");
  EXPECT_EQ(Refusal({"--model", "0x1"}, kShow),
            "no node to show: no node matches --model '0x1'; 'fabscan models' lists the models");
  EXPECT_EQ(errors_, "");
}

TEST_F(NodeSelectionTest, ReportsOptionsThatExcludeEachOther) {
  WriteFabric();
  EXPECT_EQ(Refusal({"--name", "leaf*", "--type", "CA"}),
            "no node to write: no node in the sub-fabric matches all of --name and --type; "
            "'fabscan show' lists the nodes");
  EXPECT_EQ(errors_, "");
  EXPECT_EQ(Refusal({"--name", "x", "--name", "y"}, kShow),
            "no node to show: no node matches --name; 'fabscan show' lists the nodes");
  EXPECT_EQ(errors_,
            "fabscan: warning: no node matches --name 'x'\n"
            "fabscan: warning: no node matches --name 'y'\n");
}

TEST_F(NodeSelectionTest, UnmatchedValuesCanBeErrors) {
  WriteFabric();
  EXPECT_EQ(Refusal({"--guid", "1", "--name", "leaf1", "--name", "x"}, kVerify),
            "no node matches --name 'x'; 'fabscan show' lists the nodes");
  EXPECT_EQ(errors_, "");
  EXPECT_EQ(Refusal({"--name", "leaf1", "--name", "x", "--name", "y"}, kVerify),
            "no node matches --name 'x'; 'fabscan show' lists the nodes");
  EXPECT_EQ(errors_,
            "fabscan: warning: no node matches --name 'x'\n"
            "fabscan: warning: no node matches --name 'y'\n");
}

TEST_F(NodeSelectionTest, ReportsAnEmptySubFabric) {
  WriteNode("leaf", 1, "SW", false);
  EXPECT_EQ(Refusal({}), "no node to write: none is in the sub-fabric; use a different snapshot");
  EXPECT_THAT(Select({}, kShow), IsEmpty());
}

TEST_F(NodeSelectionTest, LimitsTheNumberOfWarnings) {
  WriteFabric();
  std::vector<std::string> arguments = {"--guid", "1"};
  for (int guid = 10; guid < 40; ++guid) {
    arguments.insert(arguments.end(), {"--guid", std::to_string(guid)});
  }
  EXPECT_THAT(Select(arguments), ElementsAre(1));
  EXPECT_EQ(std::count(errors_.begin(), errors_.end(), '\n'), 21);
  EXPECT_THAT(errors_, testing::EndsWith("fabscan: warning: 10 more values match no node\n"));
}

TEST(ListTextTest, JoinsWords) {
  EXPECT_EQ(ListText({"--guid"}), "--guid");
  EXPECT_EQ(ListText({"--guid", "--name"}), "--guid and --name");
  EXPECT_EQ(ListText({"--guid", "--name", "--type"}), "--guid, --name and --type");
}

}  // namespace
}  // namespace fabscan
