#ifndef FABSCAN_CLI_VERIFY_SELECTION_H
#define FABSCAN_CLI_VERIFY_SELECTION_H

#include <infiniband/fabscan/fabscan.h>

#include <vector>

namespace fabscan {

/// For each device model of the sub-fabric the first node by name.
std::vector<const IBNode*> RepresentativeNodes(const Fabscan& fabscan);

}  // namespace fabscan

#endif
