#ifndef FABSCAN_CLI_DUMP_SUMMARY_H
#define FABSCAN_CLI_DUMP_SUMMARY_H

#include <infiniband/fabscan/fabscan.h>

#include <array>
#include <cstddef>
#include <functional>
#include <istream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "generated_file.h"

namespace fabscan {

/// What a generated file holds, counted, and what in it stops a build.
class DumpSummary {
 public:
  /// `visit` is called with the number of nodes so far. Throws GeneratedFileError.
  explicit DumpSummary(
      std::istream& generated_text,
      const std::function<void(std::size_t)>& visit = [](std::size_t) {});

  std::size_t nodes() const { return nodes_; }
  /// Functions whose body is of this kind, without those that need a hand.
  std::size_t functions(BodyKind kind) const { return functions_[static_cast<std::size_t>(kind)]; }
  std::size_t functions() const;
  /// Classes that more than one node defines: such a file does not compile.
  std::size_t sharedClasses() const;

  /// Functions that need a hand before they compile.
  std::size_t handPlaces() const { return hand_places_; }
  /// Whether the file compiles as it stands.
  bool compiles() const {
    return functions(BodyKind::kError) == 0 && sharedClasses() == 0 && hand_places_ == 0;
  }

  /// The lines for standard output, the last without a line end; `left_out` nodes are outside the
  /// sub-fabric.
  std::string text(std::size_t left_out = 0) const;
  /// What stops a build besides #error lines: a line for each shared class that names its nodes,
  /// one with the options that choose one node of each class, one for what needs a hand. `prefix`
  /// is that of the file.
  std::vector<std::string> warnings(const std::string& prefix, const IBFabric& fabric) const;

 private:
  std::size_t nodes_ = 0;
  std::array<std::size_t, 3> functions_ = {};
  std::size_t hand_places_ = 0;
  std::set<std::string> hand_functions_;
  std::vector<u_int64_t> hand_guids_;
  std::map<std::string, std::vector<u_int64_t>> guids_of_class_;
};

}  // namespace fabscan

#endif
