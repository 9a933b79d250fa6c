#include "simulator/buildable/buildable_source.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <utility>

#include "fabscan/generated_functions.h"

namespace fabscan {

namespace {

bool BeginsWith(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

std::size_t IndentOf(std::string_view line) {
  return std::min(line.find_first_not_of(' '), line.size());
}

std::string AsComment(std::string_view line, const IB_ClassPortInfo*) {
  const std::size_t indent = IndentOf(line);
  return std::string(indent, ' ') + "// " + std::string(line.substr(indent));
}

std::string AsTwoWords(std::string_view line, const IB_ClassPortInfo* record) {
  if (record == nullptr) return AsComment(line, nullptr);
  char words[128];
  std::snprintf(words, sizeof words,
                "    mad_buffer.RedirectGID[0] = 0x%llx; mad_buffer.RedirectGID[1] = 0x%llx;",
                static_cast<unsigned long long>(record->RedirectGID[0]),
                static_cast<unsigned long long>(record->RedirectGID[1]));
  return words;
}

std::string WithOpenBrace(std::string_view line, const IB_ClassPortInfo*) {
  return std::string(line) + " {";
}

std::string WithClosingBrace(std::string_view line, const IB_ClassPortInfo*) {
  return std::string(line) + " }";
}

enum class Match { kBeginning, kWhole };

using generator::CompileProblem;
using generator::GeneratedFunction;

/// An #error line, possible in any function.
constexpr CompileProblem kErrorLine = {"an #error line", "#error line turned into a comment"};

/// A line that does not compile, and its replacement.
struct EditRow {
  const CompileProblem* problem;
  std::string_view line;
  Match match;
  std::string (*edit)(std::string_view line, const IB_ClassPortInfo* record);
};

// clang-format off
constexpr EditRow kEdits[] = {
    {&kErrorLine,                   "#error",                                       Match::kBeginning, AsComment},
    {&generator::kAddressAsGID,     "    mad_buffer.RedirectGID = 0x0x",            Match::kBeginning, AsTwoWords},
    {&generator::kUndeclaredRecord, "        SMP_TarnExtPortInfo_pack(&mad_buffer", Match::kBeginning, AsComment},
    {&generator::kRepeatedNames,    "        case ",                                Match::kBeginning, WithOpenBrace},
    {&generator::kRepeatedNames,    "        default:",                             Match::kWhole,     WithOpenBrace},
    {&generator::kRepeatedNames,    "            break;",                           Match::kWhole,     WithClosingBrace},
    {&generator::kRepeatedNames,    "        }",                                    Match::kWhole,     WithClosingBrace},
};
// clang-format on

constexpr bool EditsEveryProblem() {
  for (const GeneratedFunction& function : generator::kGeneratedFunctions) {
    for (const CompileProblem* problem : function.problems) {
      bool edits = problem == nullptr;
      for (const EditRow& row : kEdits) edits = edits || row.problem == problem;
      if (!edits) return false;
    }
  }
  return true;
}
static_assert(EditsEveryProblem());

const EditRow* FindEdit(const GeneratedFunction& function, std::string_view line) {
  const auto* found = std::find_if(std::begin(kEdits), std::end(kEdits), [&](const EditRow& row) {
    if (row.problem != &kErrorLine && !HasProblem(function, *row.problem)) return false;
    return row.match == Match::kWhole ? line == row.line : BeginsWith(line, row.line);
  });
  return found == std::end(kEdits) ? nullptr : found;
}

/// Edits a file line by line.
class Editor {
 public:
  Editor(const Fabscan& fabscan, BuildableSource& source) : fabscan_(fabscan), source_(source) {}

  void Append(std::string_view line) {
    ++number_;
    const EditRow* row = nullptr;
    if (BeginsWith(line, kNodeLine)) {
      EnterNode(line);
    } else if (BeginsWith(line, "void ")) {
      EnterFunction(line);
    } else if (BeginsWith(line, "}")) {
      function_ = nullptr;
    } else if (function_ != nullptr) {
      row = FindEdit(*function_, line);
    }
    if (row == nullptr) {
      source_.text += line;
      return;
    }
    source_.text += row->edit(line, record());
    note(line, *row);
  }

 private:
  static constexpr std::string_view kNodeLine = "// Node Type: ";

  void EnterNode(std::string_view line) {
    constexpr std::string_view kBeforeGuid = ", Node GUID: 0x";
    const std::size_t found = line.find(kBeforeGuid);
    std::uint64_t guid = 0;
    if (found != std::string_view::npos) {
      line.remove_prefix(found + kBeforeGuid.size());
      std::from_chars(line.data(), line.data() + line.size(), guid, 16);
    }
    node_ = fabscan_.discovered_fabric.getNodeByGuid(guid);
  }

  /// void PREFIX::CLASS::FUNCTION() {
  void EnterFunction(std::string_view line) {
    constexpr std::string_view kEnd = "() {";
    const std::size_t name = line.rfind("::");
    if (name == std::string_view::npos || !EndsWith(line, kEnd)) return;
    function_ = generator::FindGeneratedFunction(
        line.substr(name + 2, line.size() - name - 2 - kEnd.size()));
    braces_noted_ = false;
  }

  const IB_ClassPortInfo* record() const {
    return node_ == nullptr
               ? nullptr
               : fabscan_.fabric_extended_info.getWrenClassPortInfo(node_->createIndex);
  }

  void note(std::string_view line, const EditRow& row) {
    if (row.problem == &generator::kRepeatedNames) {
      if (braces_noted_) return;
      braces_noted_ = true;
    }
    // The address differs between runs.
    std::string text(row.edit == AsTwoWords ? row.line : line);
    if (row.edit == AsTwoWords) text += "...;";
    text.erase(0, IndentOf(text));
    source_.edits.push_back({number_, node_ == nullptr ? std::string() : node_->name,
                             std::string(function_->name), std::move(text), row.problem->edit,
                             row.problem == &kErrorLine});
  }

  const Fabscan& fabscan_;
  BuildableSource& source_;
  std::size_t number_ = 0;
  const IBNode* node_ = nullptr;
  const GeneratedFunction* function_ = nullptr;
  bool braces_noted_ = false;
};

}  // namespace

BuildableSource MakeBuildable(std::string_view generated, const Fabscan& fabscan) {
  BuildableSource source;
  source.text.reserve(generated.size() + generated.size() / 64);
  Editor editor(fabscan, source);
  while (!generated.empty()) {
    const std::size_t end = std::min(generated.find('\n'), generated.size());
    editor.Append(generated.substr(0, end));
    generated.remove_prefix(end);
    if (generated.empty()) break;
    source.text += '\n';
    generated.remove_prefix(1);
  }
  return source;
}

}  // namespace fabscan
