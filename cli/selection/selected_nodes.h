#ifndef FABSCAN_CLI_SELECTED_NODES_H
#define FABSCAN_CLI_SELECTED_NODES_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace fabscan {

/// The nodes that the generator writes, in its order: those of the sub-fabric, by ascending name.
/// `guids` selects among them; empty means all.
std::vector<const IBNode*> SelectedNodes(const IBFabric& fabric, const std::set<u_int64_t>& guids);

/// The number of nodes outside the sub-fabric, which it never writes.
std::size_t NodesOutside(const IBFabric& fabric);
/// The line `skipped (outside the sub-fabric): N nodes`; empty for 0.
std::string LeftOutText(std::size_t nodes_outside);

}  // namespace fabscan

#endif
