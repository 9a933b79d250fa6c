#ifndef SIMULATOR_RUNNER_COMPARISON_H
#define SIMULATOR_RUNNER_COMPARISON_H

#include <map>
#include <string>

#include "../core/node.h"
#include "expectations.h"

namespace fabscan::simulator {

/// A difference: storage, field and description.
using Differences = std::map<std::string, std::string>;

/// Adds to `differences` every assigned field whose value in `after` is wrong, and every other
/// change from `before`.
void Compare(Node& before, Node& after, const Assignments& assigned, Differences& differences);

}  // namespace fabscan::simulator

#endif
