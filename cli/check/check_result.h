#ifndef FABSCAN_CLI_CHECK_RESULT_H
#define FABSCAN_CLI_CHECK_RESULT_H

#include <infiniband/fabscan/fabscan.h>

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "generated_file.h"

namespace fabscan {

/// What a generated function is for whoever builds the file.
enum class Mark {
  kBlock,    // compiles, and gives the simulated node its values
  kComment,  // compiles, and gives nothing
  kError,    // an #error line stops the compiler
  kHand,     // statements that no compiler takes as they stand
};
inline constexpr std::size_t kMarks = 4;

struct CheckedFunction {
  Mark mark = Mark::kBlock;
  std::size_t reason = 0;  // see CheckResult::reason
};

struct CheckedNode {
  const IBNode* node = nullptr;
  std::string class_word;
  std::vector<CheckedFunction> functions;  // in the order of CheckResult::functionNames
};

/// What the generator wrote of some nodes, as one file: what in it is missing, and what stops a
/// build.
class CheckResult {
 public:
  void Add(const IBNode& node, const GeneratedNode& generated);
  /// So many nodes are not checked: they are outside the sub-fabric.
  void LeaveOut(std::size_t nodes) { left_out_ = nodes; }
  std::size_t leftOut() const { return left_out_; }

  const std::vector<CheckedNode>& nodes() const { return nodes_; }
  const std::vector<std::string>& functionNames() const { return function_names_; }
  /// Why a function is no plain block, in words and without the node's name; empty for number 0.
  std::string_view reason(std::size_t number) const { return reasons_[number]; }

  /// Functions with this mark, in all and of one name.
  std::size_t count(Mark mark) const;
  std::size_t count(Mark mark, std::size_t function) const;

  /// The classes that several nodes define, with these nodes. A file with such does not compile.
  std::map<std::string, std::vector<const IBNode*>> SharedClasses() const;
  bool Builds() const;

 private:
  std::size_t numberOf(std::string reason);

  std::vector<CheckedNode> nodes_;
  std::size_t left_out_ = 0;
  std::vector<std::string> function_names_;
  std::vector<std::array<std::size_t, kMarks>> counts_;  // by function, by mark
  std::vector<std::string> reasons_ = {""};
  std::map<std::string, std::size_t> reason_numbers_;
};

}  // namespace fabscan

#endif
