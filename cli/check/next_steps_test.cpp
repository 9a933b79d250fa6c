#include "cli/check/next_steps.h"

#include <gtest/gtest.h>

#include "cli/check/check_report.h"

namespace fabscan {
namespace {

FunctionBody Body(const char* function, Mark mark) {
  return {generator::FindGeneratedFunction(function), mark, "why"};
}
const FunctionBody kBlock = Body("setNodeInfo", Mark::kBlock);

class NextStepsTest : public ::testing::Test {
 protected:
  const IBNode& Add(const std::string& class_word, std::vector<FunctionBody> functions) {
    ++guid_;
    const IBNode& node =
        fabscan_.discovered_fabric.makeNode("S" + std::to_string(guid_), guid_, IB_SW_NODE, 1);
    result_.Add(node, {class_word, std::move(functions)});
    return node;
  }
  std::string Text(const std::string& snapshot, const std::string& selection = "") {
    return NextText(CheckReport(result_, snapshot, selection).next, Terminal());
  }

  Fabscan fabscan_;
  u_int64_t guid_ = 0;
  CheckResult result_{fabscan_};
};

TEST_F(NextStepsTest, WhatBuildsIsScaffolded) {
  Add("SW", {kBlock});
  EXPECT_EQ(Text("f.jsonl"),
            "next: write a project that simulates these devices\n"
            "  fabscan scaffold f.jsonl --prefix MyDev --output-dir sim\n");
  EXPECT_EQ(Text("-", " --type SW"),
            "next: write a project that simulates these devices\n"
            "  fabscan scaffold SNAPSHOT --prefix MyDev --type SW --output-dir sim\n");
}

TEST_F(NextStepsTest, WhatIsMissingIsCollected) {
  Add("SW", {Body("setNodeInfo", Mark::kError), Body("setArInfo", Mark::kError)});
  EXPECT_EQ(Text("f.jsonl"),
            "next: collect SMP_NodeInfo, smpCapabilityMask (see docs/discovery.md), and add what "
            "you collected\n"
            "  fabscan merge f.jsonl extra.jsonl --output whole.jsonl\n"
            "next: write a project that builds, with one node of each device model\n"
            "  fabscan scaffold f.jsonl --prefix MyDev --output-dir sim\n");
  EXPECT_NE(Text("whole.jsonl").find("merge whole.jsonl extra.jsonl --output whole-2.jsonl\n"),
            std::string::npos);
}

TEST_F(NextStepsTest, WhatTheDeviceLacksIsNotCollected) {
  const IBNode& node = Add("SW", {});
  fabscan_.capability_module.put(node, false, {});
  result_.Add(node, {"HCA", {Body("setArInfo", Mark::kError)}});
  EXPECT_EQ(Text("f.jsonl"),
            "next: write a project that builds, with one node of each device model\n"
            "  fabscan scaffold f.jsonl --prefix MyDev --output-dir sim\n");
}

TEST_F(NextStepsTest, NodesOfOneClass) {
  Add("SW", {kBlock});
  Add("SW", {kBlock});
  EXPECT_EQ(Text("f.jsonl"),
            "next: write a project that builds, with one node of each device model\n"
            "  fabscan scaffold f.jsonl --prefix MyDev --output-dir sim\n"
            "next: write one file for each device model\n"
            "  fabscan dump f.jsonl --prefix MyDev --one-per-model\n");
  EXPECT_NE(Text("f.jsonl", " --name 'a*'")
                .find("  fabscan dump f.jsonl --name 'a*' --prefix MyDev --one-per-model\n"),
            std::string::npos);
}

TEST_F(NextStepsTest, FileNamesAreWordsOfAShell) {
  Add("SW", {kBlock});
  EXPECT_NE(Text("it's mine.jsonl").find("scaffold 'it'\\''s mine.jsonl' --prefix"),
            std::string::npos);
  EXPECT_NE(Text("-x").find("scaffold ./-x --prefix"), std::string::npos);
}

}  // namespace
}  // namespace fabscan
