#ifndef FABSCAN_CLI_DUMP_SUMMARY_H
#define FABSCAN_CLI_DUMP_SUMMARY_H

#include <infiniband/fabscan/fabscan.h>

#include <array>
#include <cstddef>
#include <functional>
#include <istream>
#include <map>
#include <string>

#include "cli/dump/generated_file.h"

namespace fabscan {

/// What keeps generated files from compiling as written.
struct CompileFaults {
  std::size_t error_lines = 0;     // functions with an #error line
  std::size_t edits = 0;           // functions with other lines that do not compile
  std::size_t shared_classes = 0;  // classes that several nodes of a file define

  bool any() const { return error_lines + edits + shared_classes != 0; }
  CompileFaults& operator+=(const CompileFaults& other);
  /// `4 functions with #error, 1 class defined by more than one node`.
  std::string text() const;
};

/// What a generated file contains, counted.
class DumpSummary {
 public:
  /// `visit` is called with the number of nodes so far. Throws GeneratedFileError.
  explicit DumpSummary(
      std::istream& generated_text,
      const std::function<void(std::size_t)>& visit = [](std::size_t) {});

  std::size_t nodes() const { return nodes_; }
  /// Functions whose body is of this kind, without those that need an edit.
  std::size_t functions(BodyKind kind) const { return functions_[static_cast<std::size_t>(kind)]; }
  std::size_t functions() const;
  const CompileFaults& faults() const { return faults_; }

  /// The lines for the report, the last without a line end; `left_out` nodes are outside the
  /// sub-fabric.
  std::string text(std::size_t left_out = 0) const;

 private:
  std::size_t nodes_ = 0;
  std::array<std::size_t, 3> functions_ = {};
  CompileFaults faults_;
  std::map<std::string, std::size_t> nodes_of_class_;
};

}  // namespace fabscan

#endif
