#ifndef FABSCAN_CLI_DUMP_SUMMARY_H
#define FABSCAN_CLI_DUMP_SUMMARY_H

#include <infiniband/fabscan/fabscan.h>

#include <array>
#include <cstddef>
#include <istream>
#include <map>
#include <string>
#include <vector>

#include "generated_file.h"

namespace fabscan {

/// What a generated file holds, counted, and what in it stops a build.
class DumpSummary {
 public:
  /// Throws GeneratedFileError.
  explicit DumpSummary(std::istream& generated_text);

  std::size_t nodes() const { return nodes_; }
  /// Functions whose body is of this kind.
  std::size_t functions(BodyKind kind) const { return functions_[static_cast<std::size_t>(kind)]; }
  std::size_t functions() const;
  /// Classes that more than one node defines: such a file does not compile.
  std::size_t sharedClasses() const;

  /// The lines for standard output, the last without a line end.
  std::string text() const;
  /// A line for each shared class that names its nodes, and one with the options that choose one
  /// node of each class; empty when no class is shared. `prefix` is that of the file.
  std::vector<std::string> warnings(const std::string& prefix, const IBFabric& fabric) const;

 private:
  std::size_t nodes_ = 0;
  std::array<std::size_t, 3> functions_ = {};
  std::map<std::string, std::vector<u_int64_t>> guids_of_class_;
};

}  // namespace fabscan

#endif
