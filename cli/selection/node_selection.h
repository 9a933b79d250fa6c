#ifndef FABSCAN_CLI_NODE_SELECTION_H
#define FABSCAN_CLI_NODE_SELECTION_H

#include <infiniband/fabscan/fabscan.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/selection/guid_options.h"
#include "snapshot/snapshot.h"

namespace fabscan {

/// The nodes that a command can work on.
enum class NodeScope { kSubFabric, kWholeFabric };
/// What happens when one of several values matches no node.
enum class Unmatched { kWarn, kRefuse };

/// What a command selects nodes for.
struct SelectionPurpose {
  std::string_view verb;  // for messages: "no node to VERB"
  NodeScope scope = NodeScope::kSubFabric;
  Unmatched unmatched = Unmatched::kWarn;
};

/// A snapshot that was read, and the selection of its nodes.
struct SelectedSnapshot {
  SnapshotHeader header;
  std::set<u_int64_t> guids;  // empty: all nodes
  bool unmatched = false;     // a value of an option matches no node

  bool Has(const IBNode& node) const { return guids.empty() || guids.count(node.guid) != 0; }
};

/// The options by which a subcommand selects nodes: `--guid`, `--guid-file`, `--name`, `--type` and
/// `--model`. A node is selected if it matches one value of each option that is given; the two for
/// GUIDs count as one.
class NodeSelection {
 public:
  void AddTo(CLI::App& app);

  /// Without a selection, all nodes are selected.
  bool given() const { return !OptionNames().empty(); }
  /// Whether nodes are selected one by one.
  bool ByGuid() const { return !guids_.OptionNames().empty(); }
  /// The selection as words of another command: ` --type CA --name 'leaf*'`; empty without one.
  std::string Words() const;
  /// The options that are given: `--guid`, `--name`.
  std::vector<std::string_view> OptionNames() const;

  /// Reads the snapshot into `fabscan`, shows the progress, and resolves the selection. Nodes that
  /// are not selected are read only as far as needed. Warns about each value that no node matches.
  ///
  /// Throws CommandError: kWrongUsage for a malformed value, kFailed if no node is left.
  SelectedSnapshot Read(const std::string& path, Fabscan& fabscan,
                        const SnapshotReadOptions& limits, const SelectionPurpose& purpose) const;

 private:
  GuidOptions guids_;
  std::vector<std::string> names_;
  std::vector<std::string> types_;
  std::vector<std::string> models_;
};

/// `--guid`, `--guid and --name`, `--guid, --name and --type`.
std::string ListText(const std::vector<std::string_view>& words);

}  // namespace fabscan

#endif
