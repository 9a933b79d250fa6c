#ifndef FABSCAN_EXAMPLES_BUNDLED_FABRICS_H
#define FABSCAN_EXAMPLES_BUNDLED_FABRICS_H

#include "examples/example_fabric.h"

namespace fabscan {

/// The LID of the subnet manager in the first and the last fabric.
inline constexpr u_int16_t kManagerLid = 97;

/// Every type of node and every attribute.
void MakeDemo(ExampleFabric& fabric);
/// A discovery with incomplete answers.
void MakePartial(ExampleFabric& fabric);
/// What a discovery of the fabric of `./run demo-live` cannot read.
void MakeExtra(ExampleFabric& fabric);

}  // namespace fabscan

#endif
