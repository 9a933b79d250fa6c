#ifndef FABSCAN_SIMULATOR_VERIFICATION_VERIFICATION_H
#define FABSCAN_SIMULATOR_VERIFICATION_VERIFICATION_H

#include <infiniband/fabscan/fabscan.h>

#include <string>
#include <vector>

#include "simulator/buildable/buildable_source.h"
#include "simulator/verification/expected_values.h"
#include "simulator/verification/program.h"

namespace fabscan {

/// The result of verifying one node.
struct NodeReport {
  std::vector<SourceEdit> edits;  // without which the generated file does not compile
  std::vector<FunctionResult> functions;

  /// The #error line of the function, or null.
  const SourceEdit* ErrorLineOf(const std::string& function) const;
  std::size_t ErrorLines() const;
  std::size_t records() const;
  std::size_t fields() const;
  std::size_t differences() const;
};

/// The generated file of one node to verify.
struct GeneratedSource {
  std::string prefix;
  std::string text;
  const IBNode* node = nullptr;
};

/// Compiles and runs generated files of nodes of `fabscan` as one program of the workspace, and
/// compares the results with the store. Returns a report for each node, in order. Throws
/// VerificationError.
std::vector<NodeReport> Verify(const Workspace& workspace, const std::string& program,
                               const Fabscan& fabscan, const std::vector<GeneratedSource>& nodes);

/// Generates the file of one node, as a device of `prefix`, into the workspace. Must not run
/// while another thread generates from the same `fabscan`. Throws VerificationError.
GeneratedSource Generate(const Workspace& workspace, Fabscan& fabscan, const IBNode& node,
                         const std::string& prefix);

}  // namespace fabscan

#endif
