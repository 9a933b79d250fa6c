#include "cli/selection/node_selection.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <utility>

#include "cli/command.h"
#include "cli/files/read_snapshot.h"
#include "cli/files/standard_streams.h"
#include "cli/output/report.h"
#include "cli/output/shell_word.h"
#include "cli/selection/node_matchers.h"

namespace fabscan {

namespace {

/// Warnings that are printed; the others are only counted.
constexpr std::size_t kMaxWarnings = 20;

/// One value of an option, and the nodes that match it.
struct Value {
  std::string text;
  NodeMatcher matches;
  bool in_scope = false;
  bool outside = false;
};

struct Option {
  const char* name;
  std::vector<Value> values;
};

/// Finds the nodes that match one value of each option, and the values that no node matches.
class Resolution {
 public:
  Resolution(const IBFabric& fabric, NodeScope scope) : fabric_(fabric), scope_(scope) {}

  void Resolve(const std::set<u_int64_t>& guids, std::vector<Option>& options) {
    for (const auto& entry : fabric_.NodeByName) {
      const IBNode& node = *entry.second;
      bool fits = guids.empty() || guids.count(node.guid) != 0;
      for (Option& option : options) fits &= MatchesAny(option, node);
      if (fits && InScope(node)) selected_.insert(node.guid);
    }
    for (const u_int64_t guid : guids) CheckGuid(guid);
    for (const Option& option : options) {
      for (const Value& value : option.values) {
        if (!value.in_scope) misses_.push_back(MissText(option.name, value));
      }
    }
  }

  std::set<u_int64_t>& selected() { return selected_; }
  const std::vector<std::string>& misses() const { return misses_; }

 private:
  bool InScope(const IBNode& node) const {
    return scope_ == NodeScope::kWholeFabric || node.in_sub_fabric;
  }

  bool MatchesAny(Option& option, const IBNode& node) const {
    bool any = false;
    for (Value& value : option.values) {
      if (!value.matches(node)) continue;
      any = true;
      (InScope(node) ? value.in_scope : value.outside) = true;
    }
    return any;
  }

  void CheckGuid(u_int64_t guid) {
    const IBNode* node = fabric_.getNodeByGuid(guid);
    if (node == nullptr) {
      misses_.push_back(fmt::format("no node has the GUID {}", GuidText(guid)));
    } else if (!InScope(*node)) {
      misses_.push_back(
          fmt::format("the node {} ({}) is outside the sub-fabric", GuidText(guid), node->name));
    }
  }

  static std::string MissText(const char* option, const Value& value) {
    return fmt::format("no node{} matches {} '{}'", value.outside ? " in the sub-fabric" : "",
                       option, value.text);
  }

  const IBFabric& fabric_;
  const NodeScope scope_;
  std::set<u_int64_t> selected_;
  std::vector<std::string> misses_;
};

template <class Match>
void AddOption(const char* name, const std::vector<std::string>& texts, const Match& match,
               std::vector<Option>& options) {
  if (texts.empty()) return;
  Option& option = options.emplace_back(Option{name, {}});
  for (const std::string& text : texts) option.values.push_back({text, match(text)});
}

void WarnOf(const std::vector<std::string>& misses) {
  for (std::size_t i = 0; i < misses.size(); ++i) {
    if (i == kMaxWarnings) {
      PrintWarning(fmt::format("{} more values match no node", misses.size() - kMaxWarnings));
      return;
    }
    PrintWarning(misses[i]);
  }
}

bool HasNodeInSubFabric(const IBFabric& fabric) {
  for (const IBNode& node : fabric.nodes()) {
    if (node.in_sub_fabric) return true;
  }
  return false;
}

/// Why no node is left, if no single unmatched value explains it.
std::string NothingText(const std::vector<std::string_view>& options, NodeScope scope) {
  return fmt::format("no node{} matches {}{}",
                     scope == NodeScope::kSubFabric ? " in the sub-fabric" : "",
                     options.size() > 1 ? "all of " : "", ListText(options));
}

}  // namespace

void NodeSelection::AddTo(CLI::App& app) {
  guids_.AddTo(app);
  const auto add = [&app](const char* name, std::vector<std::string>& values, const char* type,
                          const char* description) {
    app.add_option(name, values, description)->type_name(type)->allow_extra_args(false);
  };
  add("--name", names_, "GLOB",
      "Select nodes by name, with the wildcards *, ? and [] (repeatable)");
  add("--type", types_, "TYPE",
      "Select nodes by type: SW or switch, CA or adapter, RTR or router (repeatable)");
  add("--model", models_, "MODEL",
      "Select nodes by device model, such as SW_d2f0 (see 'fabscan models'), or by device id, such "
      "as 0xd2f0 (repeatable)");
}

std::string NodeSelection::Words() const {
  std::string words = guids_.Words();
  for (const std::string& name : names_) words += " --name " + ShellWord(name);
  for (const std::string& type : types_) words += " --type " + ShellWord(type);
  for (const std::string& model : models_) words += " --model " + ShellWord(model);
  return words;
}

std::vector<std::string_view> NodeSelection::OptionNames() const {
  std::vector<std::string_view> names = guids_.OptionNames();
  if (!names_.empty()) names.emplace_back("--name");
  if (!types_.empty()) names.emplace_back("--type");
  if (!models_.empty()) names.emplace_back("--model");
  return names;
}

SelectedSnapshot NodeSelection::Read(const std::string& path, Fabscan& fabscan,
                                     const SnapshotReadOptions& limits,
                                     const SelectionPurpose& purpose) const {
  const std::set<u_int64_t> guids = guids_.Read();
  std::vector<Option> options;
  AddOption("--name", names_, MatchName, options);
  AddOption("--type", types_, MatchType, options);

  // A model's prefix depends on the models of the whole fabric.
  const std::set<u_int64_t> read_in_full = models_.empty() ? guids : std::set<u_int64_t>();
  SelectedSnapshot result;
  result.header = ReadSnapshotWithProgress(path, fabscan, limits, read_in_full);
  const IBFabric& fabric = fabscan.discovered_fabric;
  const std::string nothing = fmt::format("{}: no node to {}: ", InputName(path), purpose.verb);
  if (!given()) {
    if (purpose.scope == NodeScope::kSubFabric && !HasNodeInSubFabric(fabric)) {
      throw CommandError(nothing + "none is in the sub-fabric; use a different snapshot");
    }
    return result;
  }

  if (!models_.empty()) {
    const std::vector<NamedModel> listed = NameModels(fabscan, "");
    const auto match = [&](const std::string& word) { return MatchModel(word, listed, fabscan); };
    AddOption("--model", models_, match, options);
  }
  Resolution resolution(fabric, purpose.scope);
  resolution.Resolve(guids, options);
  const std::vector<std::string>& misses = resolution.misses();
  const bool nothing_left = resolution.selected().empty();
  const bool refused = nothing_left || (purpose.unmatched == Unmatched::kRefuse && !misses.empty());
  if (!refused || misses.size() > 1) WarnOf(misses);
  if (refused) {
    throw CommandError((nothing_left ? nothing : InputName(path) + ": ") +
                       (misses.size() == 1 || !nothing_left
                            ? misses.front()
                            : NothingText(OptionNames(), purpose.scope)) +
                       (models_.empty() ? "; 'fabscan show' lists the nodes"
                                        : "; 'fabscan models' lists the models"));
  }
  result.guids = std::move(resolution.selected());
  result.unmatched = !misses.empty();
  return result;
}

std::string ListText(const std::vector<std::string_view>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    text += i == 0 ? "" : i + 1 == words.size() ? " and " : ", ";
    text += words[i];
  }
  return text;
}

}  // namespace fabscan
