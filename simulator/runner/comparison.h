#ifndef SIMULATOR_RUNNER_COMPARISON_H
#define SIMULATOR_RUNNER_COMPARISON_H

#include <map>
#include <string>

#include "../core/node.h"
#include "expectations.h"

namespace fabscan {
namespace simulator {

/// What differs, by storage and field, and how.
using Differences = std::map<std::string, std::string>;

/// Adds to `differences` where `after` does not hold the assigned values, and where anything else
/// is not as it was in `before`.
void Compare(Node& before, Node& after, const Assignments& assigned, Differences& differences);

}  // namespace simulator
}  // namespace fabscan

#endif
