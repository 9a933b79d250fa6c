#include "cli/dump/dump_summary.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/output/counted.h"

namespace fabscan {

CompileFaults& CompileFaults::operator+=(const CompileFaults& other) {
  error_lines += other.error_lines;
  edits += other.edits;
  shared_classes += other.shared_classes;
  return *this;
}

std::string CompileFaults::text() const {
  std::string text;
  const auto add = [&text](std::size_t count, const std::string& what) {
    if (count != 0) text += (text.empty() ? "" : ", ") + what;
  };
  add(error_lines, Counted(error_lines, "function") + " with #error");
  add(edits,
      Counted(edits, "function") + (edits == 1 ? " that needs an edit" : " that need edits"));
  add(shared_classes,
      Counted(shared_classes, "class", "classes") + " defined by more than one node");
  return text;
}

void DumpSummary::AddNode(const std::string& class_word) {
  ++nodes_;
  ++nodes_of_class_[class_word];
}

CompileFaults DumpSummary::faults() const {
  const auto shared = std::count_if(nodes_of_class_.begin(), nodes_of_class_.end(),
                                    [](const auto& entry) { return entry.second > 1; });
  return {functions(Mark::kError), functions(Mark::kHand), static_cast<std::size_t>(shared)};
}

std::string DumpSummary::text(std::size_t left_out, Variant variant) const {
  std::string text;
  const auto add = [&text](const char* what, std::size_t count) {
    text += fmt::format("{}  {:<25}{:>8}", text.empty() ? "" : "\n", what, count);
  };
  add("nodes written", nodes_);
  if (left_out != 0) add("outside the sub-fabric", left_out);
  add("functions with a block", functions(Mark::kBlock));
  add("skipped with a comment", functions(Mark::kComment));
  const bool edited = variant == Variant::kBuildable;
  add(edited ? "#error made a comment" : "stopped with #error", functions(Mark::kError));
  add(edited ? "edited to compile" : "in need of an edit", functions(Mark::kHand));
  return text;
}

}  // namespace fabscan
