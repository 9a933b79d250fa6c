#include "cli/dump/dump_summary.h"

#include <fmt/format.h>

#include <numeric>

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

DumpSummary::DumpSummary(std::istream& generated_text,
                         const std::function<void(std::size_t)>& visit) {
  GeneratedFileReader reader(generated_text);
  for (GeneratedNode node; reader.Next(node);) {
    visit(++nodes_);
    if (++nodes_of_class_[node.class_word] == 2) ++faults_.shared_classes;
    for (const GeneratedFunction& function : node.functions) {
      if (function.kind == BodyKind::kBlock && NeedsHand(function)) {
        ++faults_.edits;
      } else {
        ++functions_[static_cast<std::size_t>(function.kind)];
      }
    }
  }
  faults_.error_lines = functions(BodyKind::kError);
}

std::size_t DumpSummary::functions() const {
  return std::accumulate(functions_.begin(), functions_.end(), faults_.edits);
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
  add("in need of an edit", faults_.edits);
  return text;
}

}  // namespace fabscan
