#ifndef FABSCAN_CLI_CHECK_RESULT_H
#define FABSCAN_CLI_CHECK_RESULT_H

#include <infiniband/fabscan/fabscan.h>

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/check/cause.h"
#include "cli/dump/function_body.h"

namespace fabscan {

struct CheckedFunction {
  Mark mark = Mark::kBlock;
  u_int32_t reason = 0;  // see CheckResult::reason
  u_int32_t cause = 0;   // see CheckResult::cause
};

struct CheckedNode {
  const IBNode* node = nullptr;
  std::string class_word;
  std::vector<CheckedFunction> functions;  // in the order of CheckResult::functionNames
};

/// The generated functions of nodes in one file: missing data, and reasons why it does not build.
class CheckResult {
 public:
  /// `fabric` contains the nodes to add.
  explicit CheckResult(const Fabscan& fabric) : fabric_(fabric) {}
  CheckResult(const CheckResult&) = delete;  // contains pointers into itself
  CheckResult& operator=(const CheckResult&) = delete;

  void Add(const IBNode& node, const GeneratedNode& generated);
  /// Sorts the nodes in natural order, after all are added.
  void SortNodes();
  /// Sets the number of nodes that are not checked because they are outside the sub-fabric.
  void LeaveOut(std::size_t nodes) { left_out_ = nodes; }
  std::size_t LeftOut() const { return left_out_; }

  const std::vector<CheckedNode>& nodes() const { return nodes_; }
  const std::vector<std::string>& functionNames() const { return function_names_; }
  /// The generator's text instead of a block, without the node's name; empty for number 0.
  std::string_view reason(std::size_t number) const { return reasons_[number]; }
  /// Why a function is not a block that compiles; null for number 0.
  const Cause* cause(std::size_t number) const {
    return number == 0 ? nullptr : causes_[number - 1];
  }
  std::size_t CauseCount() const { return causes_.size(); }

  /// The number of functions with this mark: of all names, and of one name.
  std::size_t count(Mark mark) const;
  std::size_t count(Mark mark, std::size_t function) const;

  /// The classes that several nodes define, with these nodes. A file with a shared class does not
  /// compile.
  std::map<std::string, std::vector<const IBNode*>> SharedClasses() const;
  bool Builds() const;

 private:
  u_int32_t NumberOf(std::string reason);
  u_int32_t NumberOf(Cause cause);

  const Fabscan& fabric_;
  std::vector<CheckedNode> nodes_;
  std::size_t left_out_ = 0;
  std::vector<std::string> function_names_;
  std::vector<std::array<std::size_t, kMarks>> counts_;  // by function, by mark
  std::vector<std::string> reasons_ = {""};
  std::map<std::string, u_int32_t> reason_numbers_;
  std::vector<const Cause*> causes_;  // keys of `cause_numbers_`
  std::map<Cause, u_int32_t, CauseOrder> cause_numbers_;
};

}  // namespace fabscan

#endif
