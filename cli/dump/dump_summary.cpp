#include "dump_summary.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "guid_options.h"

namespace fabscan {

namespace {

/// Nodes that a warning names before it only counts the rest.
constexpr std::size_t kMaxNamed = 8;

std::string NamedNodes(const std::vector<u_int64_t>& guids, const IBFabric& fabric) {
  std::string named;
  for (std::size_t i = 0; i < std::min(guids.size(), kMaxNamed); ++i) {
    const IBNode* node = fabric.getNodeByGuid(guids[i]);
    named += fmt::format("{}{} ({})", i == 0 ? "" : ", ", GuidText(guids[i]),
                         node == nullptr ? "" : node->name);
  }
  if (guids.size() > kMaxNamed) named += fmt::format(" and {} more", guids.size() - kMaxNamed);
  return named;
}

}  // namespace

DumpSummary::DumpSummary(std::istream& generated_text,
                         const std::function<void(std::size_t)>& visit) {
  GeneratedFileReader reader(generated_text);
  for (GeneratedNode node; reader.Next(node);) {
    visit(++nodes_);
    guids_of_class_[node.class_word].push_back(node.guid);
    const std::size_t places_before = hand_places_;
    for (const GeneratedFunction& function : node.functions) {
      if (function.kind != BodyKind::kBlock || !NeedsHand(function)) {
        ++functions_[static_cast<std::size_t>(function.kind)];
        continue;
      }
      ++hand_places_;
      hand_functions_.insert(function.name);
    }
    if (hand_places_ > places_before) hand_guids_.push_back(node.guid);
  }
}

std::size_t DumpSummary::functions() const {
  return std::accumulate(functions_.begin(), functions_.end(), hand_places_);
}

std::size_t DumpSummary::sharedClasses() const {
  return static_cast<std::size_t>(
      std::count_if(guids_of_class_.begin(), guids_of_class_.end(),
                    [](const auto& of_class) { return of_class.second.size() > 1; }));
}

std::string DumpSummary::text(std::size_t left_out) const {
  std::string text;
  const auto add = [&text](const char* what, std::size_t count) {
    text += fmt::format("{}  {:<25}{:>8}", text.empty() ? "" : "\n", what, count);
  };
  add("nodes written", nodes_);
  if (left_out != 0) add("outside the sub-fabric", left_out);
  add("functions with a block", functions(BodyKind::kBlock));
  add("skipped with a comment", functions(BodyKind::kComment));
  add("stopped with #error", functions(BodyKind::kError));
  add("to finish by hand", hand_places_);
  return text;
}

std::vector<std::string> DumpSummary::warnings(const std::string& prefix,
                                               const IBFabric& fabric) const {
  std::vector<std::string> lines;
  std::string one_of_each;
  for (const auto& [class_word, guids] : guids_of_class_) {
    one_of_each += " --guid " + GuidText(guids.front());
    if (guids.size() < 2) continue;
    lines.push_back(fmt::format("{} nodes define the class {}::{}: {}", guids.size(), prefix,
                                class_word, NamedNodes(guids, fabric)));
  }
  if (!lines.empty()) {
    lines.push_back("such a file does not compile; for one node of each class, add" + one_of_each);
  }
  if (hand_places_ > 0) {
    lines.push_back(fmt::format("to finish by hand before the file compiles: {} of {}",
                                fmt::join(hand_functions_, " and "),
                                NamedNodes(hand_guids_, fabric)));
  }
  return lines;
}

}  // namespace fabscan
