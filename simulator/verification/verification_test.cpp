#include "simulator/verification/verification.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

#include "simulator/verification/testing/test_fabric.h"

namespace fabscan {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string path = testing::TempDir() + "verificationXXXXXX";
    path_ = mkdtemp(path.data()) != nullptr ? path : "";
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

class VerificationTest : public testing::Test {
 protected:
  VerificationTest() { MakeTestFabric(fabscan_); }

  // Shared by all tests, because compiling the runner takes longest.
  static void SetUpTestSuite() {
    folder_ = new TemporaryFolder;
    workspace_ = new Workspace(folder_->path(), Compiler{});
  }
  static void TearDownTestSuite() {
    delete workspace_;
    delete folder_;
  }

  GeneratedSource GenerateNode(u_int64_t guid) {
    return Generate(*workspace_, fabscan_, *fabscan_.discovered_fabric.getNodeByGuid(guid), "Dev");
  }
  NodeReport VerifyText(const GeneratedSource& source) {
    return Verify(*workspace_, "program", fabscan_, {source}).front();
  }
  NodeReport VerifyNode(u_int64_t guid) { return VerifyText(GenerateNode(guid)); }

  static std::vector<std::string> DifferencesOf(const NodeReport& report) {
    std::vector<std::string> all;
    for (const FunctionResult& function : report.functions) {
      all.insert(all.end(), function.differences.begin(), function.differences.end());
    }
    return all;
  }

  static FunctionResult ResultOf(const NodeReport& report, const std::string& name) {
    for (const FunctionResult& function : report.functions) {
      if (function.name == name) return function;
    }
    return {};
  }

  Fabscan fabscan_;
  static TemporaryFolder* folder_;
  static Workspace* workspace_;
};

TemporaryFolder* VerificationTest::folder_ = nullptr;
Workspace* VerificationTest::workspace_ = nullptr;

TEST_F(VerificationTest, EveryNodeHasItsRecordedValues) {
  const NodeReport switch_report = VerifyNode(0x10);
  EXPECT_THAT(DifferencesOf(switch_report), IsEmpty());
  EXPECT_THAT(switch_report.functions, SizeIs(22));
  EXPECT_EQ(switch_report.ErrorLines(), 0U);
  ASSERT_THAT(switch_report.edits, SizeIs(3));
  EXPECT_EQ(switch_report.edits[0].function, "setVSReductionManagerClassPortInfo");
  EXPECT_EQ(switch_report.edits[0].text, "mad_buffer.RedirectGID = 0x0x...;");
  EXPECT_EQ(switch_report.edits[1].text, "case 4:");
  EXPECT_THAT(switch_report.edits[2].text, HasSubstr("SMP_TarnExtPortInfo_pack"));
  // Thirteen fields, of which the redirect GID is two words.
  EXPECT_EQ(ResultOf(switch_report, "setVSReductionManagerClassPortInfo").fields, 14U);

  // Six identity fields, and the partition key tables.
  EXPECT_EQ(ResultOf(switch_report, "setNodeInfo").fields, 7U);
  // Ports 0 to 6, seven fields each.
  EXPECT_EQ(ResultOf(switch_report, "setPortInfo").records, 7U);
  EXPECT_EQ(ResultOf(switch_report, "setPortInfo").fields, 49U);
  // Major to Extended_SubMinor and the rest, and sixteen bytes of PSID.
  EXPECT_EQ(ResultOf(switch_report, "setFWInfo").fields, 26U);
  EXPECT_EQ(ResultOf(switch_report, "setRouterInfo").fields, 0U);
  // Ports 1 to 6, one field each.
  EXPECT_EQ(ResultOf(switch_report, "setWrenReductionPortInfo").fields, 6U);
  // Sets 0 and 6 of port 2 for the regular ports, and of 4 and 5.
  EXPECT_EQ(ResultOf(switch_report, "setWrenReductionCounters").records, 6U);
  EXPECT_EQ(ResultOf(switch_report, "setWrenReductionCounters").fields, 6U * 20U);
  EXPECT_EQ(ResultOf(switch_report, "setWrenPushReductionCounters").fields, 3U * 17U);

  for (const u_int64_t guid : {0x11U, 0x12U, 0x13U}) {
    const NodeReport report = VerifyNode(guid);
    EXPECT_THAT(DifferencesOf(report), IsEmpty());
    EXPECT_THAT(report.edits, IsEmpty());
    EXPECT_GT(report.fields(), 20U);
  }
}

TEST_F(VerificationTest, ReportsErrorLinesAndVerifiesTheRest) {
  const NodeReport report = VerifyNode(0x14);
  std::vector<std::string> functions;
  for (const SourceEdit& edit : report.edits) functions.push_back(edit.function);
  EXPECT_THAT(functions,
              ElementsAre("setNodeInfo", "setPortInfo", "setGMPCapability", "setSMPCapability",
                          "setArInfo", "setPrivateLftInfo", "setEnhancedCongestionInfo",
                          "setCongestionSwitchGeneralSettings"));
  EXPECT_EQ(report.ErrorLines(), 8U);
  EXPECT_EQ(report.edits[0].text, "#error \"Failed to get NodeInfo mad for the node=bare\"");
  EXPECT_THAT(DifferencesOf(report), IsEmpty());
  EXPECT_EQ(report.fields(), 0U);
}

TEST_F(VerificationTest, AnUnexpectedErrorLineIsADifference) {
  GeneratedSource source = GenerateNode(0x11);
  const std::string opening = "::setNodeInfo() {\n";
  source.text.insert(source.text.find(opening) + opening.size(), "#error \"no\n");
  const NodeReport report = VerifyText(source);
  EXPECT_THAT(DifferencesOf(report), ElementsAre("refuses to compile, though nothing is missing"));
}

TEST_F(VerificationTest, AValueWiderThanItsFieldIsADifference) {
  IBNode& node = *fabscan_.discovered_fabric.getNodeByGuid(0x10);
  fabscan_.fabric_extended_info.put<SMP_SwitchInfo>(node).ENP0 = 3;
  EXPECT_THAT(
      DifferencesOf(VerifyNode(0x10)),
      ElementsAre("switchInfo.ENP0 is 0x1, should be 0x3, which its 1-bit field cannot hold"));
}

TEST_F(VerificationTest, ReportsAMissingOrFailingCompiler) {
  try {
    const Workspace workspace(folder_->path() + "/other", Compiler{"no-such-compiler", "c++17"});
    FAIL();
  } catch (const VerificationError& error) {
    EXPECT_STREQ(error.what(),
                 "no-such-compiler: cannot run the compiler: No such file or directory; use a "
                 "different compiler");
  }

  GeneratedSource source = GenerateNode(0x11);
  source.text += "no such type;\n";
  try {
    VerifyText(source);
    FAIL();
  } catch (const VerificationError& error) {
    EXPECT_STREQ(error.what(),
                 "c++: the compiler failed; fix the errors above, or use a different compiler");
    ASSERT_FALSE(error.details().empty());
    EXPECT_THAT(error.details()[0], HasSubstr("dev_verified.cpp"));
  }
}

TEST(Workspace, ReportsAReadOnlyDirectory) {
  try {
    const Workspace workspace("/proc/no-such-folder", Compiler{});
    FAIL();
  } catch (const VerificationError& error) {
    EXPECT_THAT(error.what(), HasSubstr("cannot write"));
  }
}

}  // namespace
}  // namespace fabscan
