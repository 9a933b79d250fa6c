#ifndef FABSCAN_CLI_VERIFY_SELECTION_H
#define FABSCAN_CLI_VERIFY_SELECTION_H

#include <infiniband/fabscan/fabscan.h>

#include <set>
#include <vector>

namespace fabscan {

/// The nodes that have these GUIDs, in the order of their names. Throws CommandError for a GUID
/// that no node has, or whose node is outside the sub-fabric.
std::vector<const IBNode*> ChosenNodes(const IBFabric& fabric, const std::set<u_int64_t>& guids);

/// For each device model of the sub-fabric the first node by name.
std::vector<const IBNode*> RepresentativeNodes(const Fabscan& fabscan);

}  // namespace fabscan

#endif
