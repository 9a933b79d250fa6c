#include "cli/check/check_result.h"

#include <gtest/gtest.h>

#include "cli/check/check_report.h"

namespace fabscan {
namespace {

class CheckResultTest : public ::testing::Test {
 protected:
  void Add(const std::string& name, const std::string& class_word,
           std::vector<GeneratedFunction> functions) {
    GeneratedNode generated;
    generated.guid = ++guid_;
    generated.class_word = class_word;
    for (GeneratedFunction& function : functions) function.kind = KindOfBody(function.body);
    generated.functions = std::move(functions);
    result_.Add(fabscan_.discovered_fabric.makeNode(name, guid_, IB_SW_NODE, 1), generated);
  }

  Fabscan fabscan_;
  u_int64_t guid_ = 0;
  CheckResult result_{fabscan_};
};

constexpr char kBlock[] = "    SMP_NodeInfo mad_buffer;\n";

TEST_F(CheckResultTest, Builds) {
  Add("S", "SW", {{"setNodeInfo", kBlock}, {"setRouterInfo", "// The node=S is not a router\n"}});
  Add("H", "HCA", {{"setNodeInfo", kBlock}, {"setRouterInfo", "// The node=H is not a router\n"}});
  EXPECT_TRUE(result_.Builds());
  EXPECT_EQ(Verdict(result_), "builds");
  EXPECT_EQ(result_.count(Mark::kBlock), 2U);
  EXPECT_EQ(result_.count(Mark::kComment, 1), 2U);
  EXPECT_EQ(result_.nodes()[0].functions[0].reason, 0U);
  const std::size_t reason = result_.nodes()[0].functions[1].reason;
  EXPECT_EQ(result_.reason(reason), "The node is not a router");
  EXPECT_EQ(result_.nodes()[1].functions[1].reason, reason) << "the same for every node";
}

TEST_F(CheckResultTest, AnErrorStopsTheBuild) {
  Add("S", "SW", {{"setNodeInfo", "#error \"Failed to get NodeInfo mad for the node=S\"\n"}});
  EXPECT_FALSE(result_.Builds());
  EXPECT_EQ(result_.nodes()[0].functions[0].mark, Mark::kError);
  EXPECT_EQ(result_.reason(1), "Failed to get NodeInfo mad for the node");
  EXPECT_EQ(Verdict(result_), "does not build: 1 function with #error");
}

TEST_F(CheckResultTest, WhatNeedsAHandStopsTheBuild) {
  Add("S", "SW",
      {{"setVSReductionManagerClassPortInfo", "    mad_buffer.RedirectGID = 0x0x7ffe;\n"},
       {"setWrenPushReductionCounters", "        SMP_TarnExtPortInfo_pack(&mad_buffer, x);\n"}});
  EXPECT_EQ(result_.count(Mark::kHand), 2U);
  EXPECT_EQ(Verdict(result_), "does not build: 2 in need of an edit");
  EXPECT_EQ(result_.cause(1)->code, CauseCode::kByHand);
  EXPECT_EQ(result_.cause(1)->text, "the redirect GID is written as a memory address");
}

TEST_F(CheckResultTest, ASharedClassStopsTheBuild) {
  Add("S1", "SW", {{"setNodeInfo", kBlock}});
  Add("H", "HCA", {{"setNodeInfo", kBlock}});
  Add("S2", "SW", {{"setNodeInfo", kBlock}});
  EXPECT_EQ(Verdict(result_), "does not build: 1 class that several nodes define");
  const auto shared = result_.SharedClasses();
  ASSERT_EQ(shared.size(), 1U);
  EXPECT_EQ(shared.at("SW").size(), 2U);
}

}  // namespace
}  // namespace fabscan
