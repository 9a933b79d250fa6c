#include "cli/check/next_steps.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/files/standard_streams.h"
#include "cli/output/next_command.h"
#include "model/guid_text.h"

namespace fabscan {

namespace {

/// More `--guid` options make no readable command.
constexpr std::size_t kMaxGuids = 8;

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

/// ` --guid 0x… --guid 0x…`; empty for all nodes.
std::string GuidWords(const CheckResult& result, CheckedNodes checked) {
  std::string words;
  if (checked == CheckedNodes::kAll || result.nodes().size() > kMaxGuids) return words;
  for (const CheckedNode& node : result.nodes()) {
    words += " --guid " + GuidText(node.node->guid);
  }
  return words;
}

}  // namespace

std::vector<NextStep> NextSteps(const CheckResult& result, const std::vector<CauseGroup>& groups,
                                const std::string& snapshot, CheckedNodes checked) {
  std::vector<NextStep> steps;
  const bool is_file = !IsStandardStream(snapshot);
  const std::string file = is_file ? SnapshotWord(snapshot) : "";
  const std::string missing = MissingKeys(groups);
  if (!missing.empty()) {
    steps.push_back(
        {fmt::format("collect {} (see docs/discovery.md), and add what you collected", missing),
         is_file ? fmt::format("fabscan merge {} extra.jsonl --output whole.jsonl", file) : ""});
  }
  if (!is_file) return steps;

  const bool builds = result.Builds();
  const bool shares = !result.SharedClasses().empty();
  const bool stops = result.count(Mark::kError) + result.count(Mark::kHand) != 0;
  const std::string guids = GuidWords(result, checked);
  if (guids.empty()) {
    steps.push_back({builds ? "write a project that simulates these devices"
                            : "write a project that builds, with one node of each device model",
                     ScaffoldLine(snapshot, "MyDev")});
    if (!shares) return steps;
  }
  std::string text = shares ? "write one file for each device model" : "write the generated file";
  if (stops) text += ", in a form that compiles";
  steps.push_back(
      {text, fmt::format("fabscan dump {}{} --prefix MyDev{}{}", file, guids,
                         shares ? " --one-per-model" : "", stops ? " --buildable" : "")});
  return steps;
}

std::string NextText(const std::vector<NextStep>& steps, const Terminal& terminal) {
  std::string text;
  for (const NextStep& step : steps) {
    text += Paragraph("next: " + step.text, terminal);
    if (!step.command.empty()) text += "  " + step.command + '\n';
  }
  return text;
}

}  // namespace fabscan
