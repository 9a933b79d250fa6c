#ifndef FABSCAN_CLI_VERIFY_SELECTION_H
#define FABSCAN_CLI_VERIFY_SELECTION_H

#include <infiniband/fabscan/fabscan.h>

#include <vector>

namespace fabscan {

/// The representative of each device model of the sub-fabric.
std::vector<const IBNode*> RepresentativeNodes(const Fabscan& fabscan);

}  // namespace fabscan

#endif
