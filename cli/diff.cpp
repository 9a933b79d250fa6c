#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/files/read_limits.h"
#include "cli/files/read_snapshot.h"
#include "cli/files/standard_streams.h"
#include "cli/output/counted.h"
#include "cli/output/json_result.h"
#include "cli/output/link_text.h"
#include "cli/output/node_text.h"
#include "cli/output/report.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/terminal.h"
#include "fabrics/fabric_differences.h"
#include "fabrics/link_differences.h"
#include "model/guid_text.h"
#include "model/links.h"

namespace fabscan {

namespace {

// As for diff(1): 0 for equal, 1 for different, 2 for any error.
constexpr ExitStatus kSame = kDone;
constexpr ExitStatus kDifferent = kFailed;
constexpr ExitStatus kTrouble = kWrongUsage;

struct DiffOptions {
  std::string first;
  std::string second;
  bool by_name = false;
  std::vector<std::string> ignored;
  IngressPort ingress_port = IngressPort::kIgnored;
  bool json = false;
  SnapshotReadOptions reading;
};

struct DiffCounts {
  std::size_t links = 0;
  std::size_t differences = 0;
  std::size_t nodes = 0;  // in both snapshots, with differences
  std::size_t only_first = 0;
  std::size_t only_second = 0;

  void Add(const Difference& difference, bool is_new_node) {
    ++differences;
    const bool whole = IsWholeNode(difference);
    if (whole) ++(InFirst(difference) ? only_first : only_second);
    if (!whole && is_new_node) ++nodes;
  }

  /// Whether the first snapshot is the one that has a whole node, port or record.
  static bool InFirst(const Difference& difference) { return std::get<bool>(difference.first); }

  static bool IsWholeNode(const Difference& difference) {
    return difference.port == Difference::kNone && difference.record.empty() &&
           difference.field.empty();
  }
};

/// `port 3 WrenReductionCounters[1].mlid`
std::string PlaceText(const Difference& difference) {
  std::string text;
  if (difference.port != Difference::kNone) text = fmt::format("port {}", difference.port);
  if (!difference.record.empty()) {
    text += fmt::format("{}{}", text.empty() ? "" : " ", difference.record);
    if (difference.index != Difference::kNone) text += fmt::format("[{}]", difference.index);
  }
  if (!difference.field.empty()) {
    text += fmt::format("{}{}", difference.record.empty() ? (text.empty() ? "" : " ") : ".",
                        difference.field);
  }
  return text;
}

/// For people: record values in hexadecimal, and reasons made harmless; names already are.
std::string ValueText(const Difference& difference, const DifferingValue& value) {
  if (const bool* truth = std::get_if<bool>(&value)) return *truth ? "true" : "false";
  if (const u_int64_t* number = std::get_if<u_int64_t>(&value)) {
    return difference.record.empty() ? std::to_string(*number) : fmt::format("{:#x}", *number);
  }
  if (const std::string* text = std::get_if<std::string>(&value)) {
    return difference.field.rfind("absent.", 0) == 0 ? ReasonText(*text) : *text;
  }
  return "nothing";
}

class TextReport {
 public:
  TextReport(const DiffOptions& options, const Terminal& terminal)
      : options_(options), terminal_(terminal) {}

  void Add(const LinkDifference& link) {
    ++counts_.links;
    switch (link.change) {
      case LinkDifference::Change::kMoved:
        std::cout << "link moved: " << EndText(link.end) << " from "
                  << Removed(EndText(link.before)) << " to " << Added(EndText(link.after)) << '\n';
        break;
      case LinkDifference::Change::kLost:
        std::cout << "link lost: " << Removed(EndText(link.end) + " to " + EndText(link.before))
                  << '\n';
        break;
      case LinkDifference::Change::kAdded:
        std::cout << "link added: " << Added(EndText(link.end) + " to " + EndText(link.after))
                  << '\n';
    }
  }

  void OmitLinks(const std::string& path) const {
    std::cout << Paragraph(
        fmt::format("links are not compared: {} contains none, though ports are up",
                    InputName(path)),
        terminal_);
  }

  void Add(const Difference& difference) {
    const bool is_new = difference.node != node_;
    node_ = difference.node;
    counts_.Add(difference, is_new);
    const std::string head = fmt::format("{} ({})", node_->name, GuidText(node_->guid));
    if (DiffCounts::IsWholeNode(difference)) {
      std::cout << Painted(head, Style::kHead, terminal_) << ": " << Values(difference) << '\n';
      return;
    }
    if (is_new) std::cout << Painted(head, Style::kHead, terminal_) << '\n';
    std::cout << "  " << PlaceText(difference) << ": " << Values(difference) << '\n';
  }

  void BeginDifferences() const {}

  bool Finish() {
    if (counts_.differences + counts_.links == 0) return true;
    std::string summary;
    if (counts_.links != 0) summary = Counted(counts_.links, "link");
    if (counts_.differences != 0) {
      summary += fmt::format("{}{}: {}", summary.empty() ? "" : ", ",
                             Counted(counts_.differences, "difference"), WhereText());
    }
    std::cout << '\n' << Paragraph(summary, terminal_);
    return false;
  }

 private:
  /// `in 2 nodes; 1 node only in a.jsonl`
  std::string WhereText() const {
    std::string text;
    if (counts_.nodes != 0) text = "in " + Counted(counts_.nodes, "node");
    const auto add = [&text](std::size_t nodes, const std::string& path) {
      if (nodes == 0) return;
      text += fmt::format("{}{} only in {}", text.empty() ? "" : "; ", Counted(nodes, "node"),
                          InputName(path));
    };
    add(counts_.only_first, options_.first);
    add(counts_.only_second, options_.second);
    return text;
  }

  std::string Values(const Difference& difference) const {
    if (difference.whole) {
      return DiffCounts::InFirst(difference) ? Removed("only in " + InputName(options_.first))
                                             : Added("only in " + InputName(options_.second));
    }
    return Removed(ValueText(difference, difference.first)) + " -> " +
           Added(ValueText(difference, difference.second));
  }

  std::string Removed(const std::string& text) const {
    return Painted(text, Style::kBad, terminal_);
  }
  std::string Added(const std::string& text) const {
    return Painted(text, Style::kGood, terminal_);
  }

  const DiffOptions& options_;
  const Terminal terminal_;
  const IBNode* node_ = nullptr;
  DiffCounts counts_;
};

class JsonReport {
 public:
  explicit JsonReport(const DiffOptions& options) {
    json_.Text("first", options.first);
    json_.Text("second", options.second);
    json_.BeginObjects("links");
  }

  void Add(const LinkDifference& link) {
    same_ = false;
    json_.BeginObject();
    json_.Text("change", link.change == LinkDifference::Change::kMoved  ? "moved"
                         : link.change == LinkDifference::Change::kLost ? "lost"
                                                                        : "added");
    WriteEnd(json_, "end", link.end);
    if (link.change != LinkDifference::Change::kAdded) WriteEnd(json_, "first", link.before);
    if (link.change != LinkDifference::Change::kLost) WriteEnd(json_, "second", link.after);
    json_.EndObject();
  }

  void OmitLinks(const std::string& /*path*/) { are_links_compared_ = false; }

  void BeginDifferences() {
    json_.EndArray();
    json_.Truth("linksCompared", are_links_compared_);
    json_.BeginObjects("differences");
  }

  void Add(const Difference& difference) {
    same_ = false;
    json_.BeginObject();
    json_.Text("name", difference.node->name);
    json_.Guid("guid", difference.node->guid);
    if (difference.port != Difference::kNone) {
      json_.Count("port", static_cast<u_int64_t>(difference.port));
    }
    if (!difference.record.empty()) json_.Text("record", difference.record);
    if (difference.index != Difference::kNone) {
      json_.Count("index", static_cast<u_int64_t>(difference.index));
    }
    if (!difference.field.empty()) json_.Text("field", difference.field);
    AddValue("first", difference.first);
    AddValue("second", difference.second);
    json_.EndObject();
    json_.Flush();
  }

  bool Finish() {
    json_.EndArray();
    json_.Truth("same", same_);
    return same_;
  }

 private:
  void AddValue(std::string_view key, const DifferingValue& value) {
    if (const bool* truth = std::get_if<bool>(&value)) json_.Truth(key, *truth);
    if (const u_int64_t* number = std::get_if<u_int64_t>(&value)) json_.Count(key, *number);
    if (const std::string* text = std::get_if<std::string>(&value)) json_.Text(key, *text);
  }

  JsonResult json_;
  bool same_ = true;
  bool are_links_compared_ = true;
};

/// Links come first: a cable that was moved explains much of the rest.
template <class Report>
void CompareLinks(const DiffOptions& options, const IBFabric& first, const IBFabric& second,
                  Report& report) {
  const bool in_first = KnowsLinks(first);
  const bool in_second = KnowsLinks(second);
  if (!in_first && !in_second) return;
  if (!in_first || !in_second) return report.OmitLinks(in_first ? options.second : options.first);
  for (const LinkDifference& link : LinkDifferences(first, second, options.by_name)) {
    report.Add(link);
  }
}

IgnoredFields IgnoredOrRefuse(const DiffOptions& options) {
  try {
    return IgnoredFields(options.ignored);
  } catch (const std::invalid_argument& error) {
    throw CommandError(fmt::format("--ignore: {}", error.what()), kWrongUsage);
  }
}

ExitStatus Compare(const DiffOptions& options) {
  ComparisonOptions comparison{options.by_name, IgnoredOrRefuse(options), options.ingress_port};
  Fabscan first;
  Fabscan second;
  ReadSnapshotWithProgress(options.first, first, options.reading);
  ReadSnapshotWithProgress(options.second, second, options.reading);
  Progress progress;
  // On a terminal the differences themselves show the progress.
  if (::isatty(STDOUT_FILENO) != 1) comparison.progress = progress.Callback("nodes compared");
  const auto tell = [&](auto& report) {
    if (!comparison.ignored.Has("peer")) {
      CompareLinks(options, first.discovered_fabric, second.discovered_fabric, report);
    }
    report.BeginDifferences();
    ForEachDifference(first, second, comparison, [&](const Difference& d) { report.Add(d); });
    return report.Finish() ? kSame : kDifferent;
  };
  if (options.json) {
    JsonReport report(options);
    return tell(report);
  }
  TextReport report(options, StandardOutput());
  return tell(report);
}

/// Every failure has the status kTrouble, which distinguishes it from a difference.
ExitStatus Diff(const DiffOptions& options) {
  try {
    const ExitStatus status = Compare(options);
    RequireStandardOutput();
    return status;
  } catch (const std::bad_alloc&) {
    throw CommandError("out of memory; use a larger machine", kTrouble);
  } catch (const std::exception& error) {
    throw CommandError(error.what(), kTrouble);
  }
}

}  // namespace

std::function<ExitStatus()> AddDiff(CLI::App& app) {
  const auto options = std::make_shared<DiffOptions>();
  app.add_option("A", options->first, "The first snapshot; - is standard input")->required();
  app.add_option("B", options->second, "The second snapshot")->required();
  app.add_flag("--by-name", options->by_name, "Match nodes by name instead of GUID");
  app.add_option("--ignore", options->ignored,
                 "Ignore a key, record or field, named as in a snapshot (repeatable)")
      ->type_name("FIELD")
      ->allow_extra_args(false);
  AddIngressPort(app, options->ingress_port, "Also compare");
  app.add_flag("--json", options->json, "Print one JSON object");
  AddReadLimits(app, options->reading);
  app.footer(
      "Exit status: 0 if the snapshots are equal, 1 if they differ, 2 for any error.\n"
      "Example: changes since yesterday, ignoring port states and the LID in PortInfo\n"
      "  fabscan diff yesterday.jsonl today.jsonl --ignore state --ignore SMP_PortInfo.LID");
  return [options] { return Diff(*options); };
}

}  // namespace fabscan
