#include "cli/check/next_steps.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/output/next_command.h"

namespace fabscan {

namespace {

/// Keys and records without which the build stops, each once.
std::string MissingKeys(const std::vector<CauseGroup>& groups) {
  std::vector<std::string> keys;
  for (const CauseGroup& group : groups) {
    if (!group.StopsBuild() || !group.cause.CanBeCollected()) continue;
    if (std::find(keys.begin(), keys.end(), group.cause.key) == keys.end()) {
      keys.push_back(group.cause.key);
    }
  }
  return fmt::format("{}", fmt::join(keys, ", "));
}

/// The name of the merged snapshot, which `merge` must not find in place.
const char* MergedName(const std::string& snapshot) {
  return snapshot == "whole.jsonl" ? "whole-2.jsonl" : "whole.jsonl";
}

}  // namespace

std::vector<NextStep> NextSteps(const CheckResult& result, const std::vector<CauseGroup>& groups,
                                const std::string& snapshot, const std::string& selection) {
  std::vector<NextStep> steps;
  const std::string missing = MissingKeys(groups);
  if (!missing.empty()) {
    steps.push_back(
        {fmt::format("collect {} (see docs/discovery.md), and add what you collected", missing),
         fmt::format("fabscan merge {} extra.jsonl --output {}", SnapshotWord(snapshot),
                     MergedName(snapshot))});
  }
  std::string project = "write a project that simulates these devices";
  if (!result.Builds()) {
    project = "write a project that builds";
    if (selection.empty()) project += ", with one node of each device model";
  }
  steps.push_back({project, ScaffoldLine(snapshot, "MyDev", selection)});
  if (result.SharedClasses().empty()) return steps;
  const bool stops = result.count(Mark::kError) + result.count(Mark::kHand) != 0;
  steps.push_back({stops ? "write one file for each device model, in a form that compiles"
                         : "write one file for each device model",
                   fmt::format("fabscan dump {}{} --prefix MyDev --one-per-model{}",
                               SnapshotWord(snapshot), selection, stops ? " --buildable" : "")});
  return steps;
}

std::string NextText(const std::vector<NextStep>& steps, const Terminal& terminal) {
  std::string text;
  for (const NextStep& step : steps) {
    text += Paragraph("next: " + step.text, terminal) + "  " + step.command + '\n';
  }
  return text;
}

}  // namespace fabscan
