#ifndef FABSCAN_CLI_GUID_OPTIONS_H
#define FABSCAN_CLI_GUID_OPTIONS_H

#include <guid_text.h>
#include <infiniband/fabscan/fabscan.h>

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace fabscan {

/// The options `--guid` and `--guid-file`, by which a subcommand chooses nodes.
class GuidOptions {
 public:
  void AddTo(CLI::App& app);

  /// Whether nodes are chosen at all; without a choice all are meant.
  bool given() const { return !guids_.empty() || !file_.empty(); }
  /// The chosen GUIDs; empty when none are given. Throws CommandError (wrong usage) for a malformed
  /// one, with file and line where it stands in a file, and for a file that names none.
  std::set<u_int64_t> Read() const;

 private:
  std::vector<std::string> guids_;
  std::string file_;
};

/// A GUID as 1 to 16 hexadecimal digits, with or without 0x; empty when `text` is none.
std::optional<u_int64_t> ParseGuid(std::string_view text);

/// Warns of every chosen GUID that no node has, or whose node is outside the sub-fabric, and
/// returns the others. Nothing chosen: nothing returned.
std::set<u_int64_t> WarnOfMissing(const std::set<u_int64_t>& chosen, const IBFabric& fabric);
/// The same, but a node outside the sub-fabric is as good as another.
std::set<u_int64_t> WarnOfUnknown(const std::set<u_int64_t>& chosen, const IBFabric& fabric);

}  // namespace fabscan

#endif
