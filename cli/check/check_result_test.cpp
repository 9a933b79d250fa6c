#include "cli/check/check_result.h"

#include <gtest/gtest.h>

#include "cli/check/check_report.h"

namespace fabscan {
namespace {

class CheckResultTest : public ::testing::Test {
 protected:
  void Add(const std::string& name, const std::string& class_word,
           std::vector<FunctionBody> functions) {
    result_.Add(fabscan_.discovered_fabric.makeNode(name, ++guid_, IB_SW_NODE, 1),
                {class_word, std::move(functions)});
  }

  Fabscan fabscan_;
  u_int64_t guid_ = 0;
  CheckResult result_{fabscan_};
};

FunctionBody Body(const char* function, Mark mark, std::string reason = {}) {
  return {generator::FindGeneratedFunction(function), mark, std::move(reason)};
}
const FunctionBody kNodeInfoBlock = Body("setNodeInfo", Mark::kBlock);

TEST_F(CheckResultTest, Builds) {
  Add("S", "SW",
      {kNodeInfoBlock, Body("setRouterInfo", Mark::kComment, "The node=S is not a router")});
  Add("H", "HCA",
      {kNodeInfoBlock, Body("setRouterInfo", Mark::kComment, "The node=H is not a router")});
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
  Add("S", "SW", {Body("setNodeInfo", Mark::kError, "Failed to get NodeInfo mad for the node=S")});
  EXPECT_FALSE(result_.Builds());
  EXPECT_EQ(result_.nodes()[0].functions[0].mark, Mark::kError);
  EXPECT_EQ(result_.reason(1), "Failed to get NodeInfo mad for the node");
  EXPECT_EQ(Verdict(result_), "does not build: 1 function with #error");
}

TEST_F(CheckResultTest, WhatNeedsAHandStopsTheBuild) {
  Add("S", "SW",
      {Body("setVSReductionManagerClassPortInfo", Mark::kHand),
       Body("setWrenPushReductionCounters", Mark::kHand)});
  EXPECT_EQ(result_.count(Mark::kHand), 2U);
  EXPECT_EQ(Verdict(result_), "does not build: 2 in need of an edit");
  EXPECT_EQ(result_.cause(1)->code, CauseCode::kByHand);
  EXPECT_EQ(result_.cause(1)->text, "the redirect GID is written as a memory address");
}

TEST_F(CheckResultTest, ASharedClassStopsTheBuild) {
  Add("S1", "SW", {kNodeInfoBlock});
  Add("H", "HCA", {kNodeInfoBlock});
  Add("S2", "SW", {kNodeInfoBlock});
  EXPECT_EQ(Verdict(result_), "does not build: 1 class that several nodes define");
  const auto shared = result_.SharedClasses();
  ASSERT_EQ(shared.size(), 1U);
  EXPECT_EQ(shared.at("SW").size(), 2U);
}

}  // namespace
}  // namespace fabscan
