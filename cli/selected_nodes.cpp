#include "selected_nodes.h"

namespace fabscan {

std::vector<const IBNode*> SelectedNodes(const IBFabric& fabric, const std::set<u_int64_t>& guids) {
  std::vector<const IBNode*> nodes;
  for (const auto& entry : fabric.NodeByName) {
    const IBNode* node = entry.second;
    if (node == nullptr || !node->in_sub_fabric) continue;
    if (guids.empty() || guids.count(node->guid) != 0) nodes.push_back(node);
  }
  return nodes;
}

}  // namespace fabscan
