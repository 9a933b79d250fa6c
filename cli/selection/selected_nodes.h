#ifndef FABSCAN_CLI_SELECTED_NODES_H
#define FABSCAN_CLI_SELECTED_NODES_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace fabscan {

/// The nodes that the generator writes, in its order: those of the sub-fabric, by ascending name.
/// `guids` chooses among them; empty means all.
std::vector<const IBNode*> SelectedNodes(const IBFabric& fabric, const std::set<u_int64_t>& guids);

/// The nodes that it never writes, as many as they are.
std::size_t NodesOutside(const IBFabric& fabric);
/// A line that tells of so many nodes; none where there are none.
std::string LeftOutText(std::size_t nodes_outside);

}  // namespace fabscan

#endif
