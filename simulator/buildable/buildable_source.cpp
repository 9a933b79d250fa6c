#include "simulator/buildable/buildable_source.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <utility>

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

/// A line that does not compile in its function, and its replacement.
struct EditRow {
  std::string_view function;  // empty: any function
  std::string_view line;
  Match match;
  std::string (*edit)(std::string_view line, const IB_ClassPortInfo* record);
  const char* change;
};

constexpr std::string_view kClassPortInfo = "setVSReductionManagerClassPortInfo";
constexpr std::string_view kPushCounters = "setWrenPushReductionCounters";
constexpr std::string_view kErrorLine = "#error";
constexpr char kBraces[] = "braces put around each branch";

// clang-format off
constexpr EditRow kEdits[] = {
    {{},             kErrorLine,                                     Match::kBeginning, AsComment,        "#error line turned into a comment"},
    {kClassPortInfo, "    mad_buffer.RedirectGID = 0x0x",            Match::kBeginning, AsTwoWords,       "redirect GID assigned as its two words"},
    {kPushCounters,  "        SMP_TarnExtPortInfo_pack(&mad_buffer", Match::kBeginning, AsComment,        "pack of an undeclared record turned into a comment"},
    {kPushCounters,  "        case ",                                Match::kBeginning, WithOpenBrace,    kBraces},
    {kPushCounters,  "        default:",                             Match::kWhole,     WithOpenBrace,    kBraces},
    {kPushCounters,  "            break;",                           Match::kWhole,     WithClosingBrace, kBraces},
    {kPushCounters,  "        }",                                    Match::kWhole,     WithClosingBrace, kBraces},
};

struct ReasonRow {
  std::string_view function;
  std::string_view marker;  // found in each body that does not compile
  std::string_view reason;
};

constexpr ReasonRow kReasons[] = {
    {kClassPortInfo, "mad_buffer.RedirectGID = 0x0x",
     "the redirect GID is written as a memory address"},
    {kPushCounters, "SMP_TarnExtPortInfo_pack(&mad_buffer",
     "the branches declare the same names, and the last line packs a record that is not declared"},
};
// clang-format on

const EditRow* FindEdit(std::string_view function, std::string_view line) {
  const auto* found = std::find_if(std::begin(kEdits), std::end(kEdits), [&](const EditRow& row) {
    if (!row.function.empty() && row.function != function) return false;
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
      enterNode(line);
    } else if (BeginsWith(line, "void ")) {
      enterFunction(line);
    } else if (BeginsWith(line, "}")) {
      function_ = {};
    } else if (!function_.empty()) {
      row = FindEdit(function_, line);
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

  void enterNode(std::string_view line) {
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
  void enterFunction(std::string_view line) {
    constexpr std::string_view kEnd = "() {";
    const std::size_t name = line.rfind("::");
    if (name == std::string_view::npos || !EndsWith(line, kEnd)) return;
    function_ = line.substr(name + 2, line.size() - name - 2 - kEnd.size());
    braces_noted_ = false;
  }

  const IB_ClassPortInfo* record() const {
    return node_ == nullptr
               ? nullptr
               : fabscan_.fabric_extended_info.getWrenClassPortInfo(node_->createIndex);
  }

  void note(std::string_view line, const EditRow& row) {
    if (row.change == kBraces) {
      if (braces_noted_) return;
      braces_noted_ = true;
    }
    // The address differs between runs.
    std::string text(row.edit == AsTwoWords ? row.line : line);
    if (row.edit == AsTwoWords) text += "...;";
    text.erase(0, IndentOf(text));
    source_.edits.push_back({number_, node_ == nullptr ? std::string() : node_->name,
                             std::string(function_), std::move(text), row.change,
                             row.line == kErrorLine});
  }

  const Fabscan& fabscan_;
  BuildableSource& source_;
  std::size_t number_ = 0;
  const IBNode* node_ = nullptr;
  std::string_view function_;
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

std::string_view ReasonForEdit(std::string_view function, std::string_view body) {
  for (const ReasonRow& row : kReasons) {
    if (function == row.function && body.find(row.marker) != std::string_view::npos) {
      return row.reason;
    }
  }
  return {};
}

}  // namespace fabscan
