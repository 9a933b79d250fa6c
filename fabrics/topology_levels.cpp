#include "fabrics/topology_levels.h"

#include <algorithm>
#include <queue>

namespace fabscan {

TopologyLevels::TopologyLevels(const IBFabric& fabric) : levels_(fabric.nodeCount(), kNone) {
  std::queue<const IBNode*> next;
  for (const IBNode& node : fabric.nodes()) {
    if (node.type != IB_CA_NODE || node.isSpecialNode()) continue;
    levels_[node.createIndex] = 0;
    next.push(&node);
  }
  for (; !next.empty(); next.pop()) {
    const IBNode& node = *next.front();
    // Only switches forward.
    if (node.type != IB_SW_NODE && Of(node) != 0) continue;
    for (const IBPort* port : node.Ports) {
      if (port == nullptr || !port->getRemotePort()) continue;
      const IBNode* other = fabric.getNodeByGuid(port->getRemotePort()->node_guid);
      if (other == nullptr || Of(*other) != kNone) continue;
      levels_[other->createIndex] = Of(node) + 1;
      if (other->type == IB_SW_NODE) top_ = std::max(top_, Of(*other));
      next.push(other);
    }
  }
}

}  // namespace fabscan
