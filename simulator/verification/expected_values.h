#ifndef FABSCAN_SIMULATOR_VERIFICATION_EXPECTED_VALUES_H
#define FABSCAN_SIMULATOR_VERIFICATION_EXPECTED_VALUES_H

#include <infiniband/fabscan/fabscan.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "simulator/runner/expectations.h"

namespace fabscan {

/// What a generated function must be.
enum class Outcome {
  kAssigns,  // gives the simulated node values
  kLeaves,   // leaves the simulated node alone
  kRefuses,  // stops the compiler
};

struct ExpectedFunction {
  Outcome outcome = Outcome::kLeaves;
  simulator::Assignments values;  // only where it assigns
  /// Beginnings of the lines that do not compile as written, in order. Of branches that need
  /// braces, only the first line counts.
  std::vector<std::string> edited_lines = {};
};

/// The class of simulated nodes that the node is dumped as: SW, RTR, HCA, AN or Unknown.
std::string ExpectedClassOf(const IBNode& node);

/// What the 22 functions that a fabric's node is dumped as must do to the simulated node: the rules
/// of the generated file told once more, from the store's records alone. Nothing is shared with the
/// generator, so that an error there shows.
std::map<std::string, ExpectedFunction> ExpectedFunctionsOf(const Fabscan& fabscan,
                                                            const IBNode& node);

/// The same as the runner takes it, for the unit that is named `unit`.
simulator::UnitExpectations ExpectationsOf(
    const std::string& unit, const IBNode& node,
    const std::map<std::string, ExpectedFunction>& functions);

/// Writes what `simulator::ReadExpectations` reads.
void WriteExpectations(std::ostream& out, const simulator::UnitExpectations& expectations);

}  // namespace fabscan

#endif
