#ifndef FABSCAN_CLI_SELECTED_NODES_H
#define FABSCAN_CLI_SELECTED_NODES_H

#include <infiniband/fabscan/fabscan.h>

#include <set>
#include <vector>

namespace fabscan {

/// The nodes that the generator writes, in its order: those of the sub-fabric, by ascending name.
/// `guids` chooses among them; empty means all.
std::vector<const IBNode*> SelectedNodes(const IBFabric& fabric, const std::set<u_int64_t>& guids);

}  // namespace fabscan

#endif
