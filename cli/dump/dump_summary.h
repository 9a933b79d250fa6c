#ifndef FABSCAN_CLI_DUMP_SUMMARY_H
#define FABSCAN_CLI_DUMP_SUMMARY_H

#include <array>
#include <cstddef>
#include <map>
#include <string>

#include "cli/dump/function_body.h"

namespace fabscan {

enum class Variant {
  kExact,      // as the generator writes it
  kBuildable,  // edited so that it compiles
};

/// Reasons why generated files do not compile as written.
struct CompileFaults {
  std::size_t error_lines = 0;     // functions with an #error line
  std::size_t edits = 0;           // functions with other lines that do not compile
  std::size_t shared_classes = 0;  // classes that several nodes of a file define

  bool any() const { return error_lines + edits + shared_classes != 0; }
  CompileFaults& operator+=(const CompileFaults& other);
  /// `4 functions with #error, 1 class defined by more than one node`.
  std::string text() const;
};

/// Counts the contents of a generated file.
class DumpSummary {
 public:
  /// Adds a node, whose functions follow.
  void AddNode(const std::string& class_word);
  void AddFunction(Mark mark) { ++functions_[static_cast<std::size_t>(mark)]; }

  std::size_t nodes() const { return nodes_; }
  std::size_t functions(Mark mark) const { return functions_[static_cast<std::size_t>(mark)]; }
  CompileFaults faults() const;

  /// The lines of the report on a file of this variant, the last one without a line end.
  /// `left_out`: number of nodes outside the sub-fabric.
  std::string text(std::size_t left_out = 0, Variant variant = Variant::kExact) const;

 private:
  std::size_t nodes_ = 0;
  std::array<std::size_t, kMarks> functions_ = {};
  std::map<std::string, std::size_t> nodes_of_class_;
};

}  // namespace fabscan

#endif
