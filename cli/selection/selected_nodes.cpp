#include "cli/selection/selected_nodes.h"

#include <fmt/format.h>

#include "cli/output/counted.h"

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

std::size_t NodesOutside(const IBFabric& fabric) {
  std::size_t outside = 0;
  for (const IBNode& node : fabric.nodes()) outside += node.in_sub_fabric ? 0 : 1;
  return outside;
}

std::string LeftOutText(std::size_t nodes_outside) {
  if (nodes_outside == 0) return {};
  return fmt::format("skipped (outside the sub-fabric): {}\n", Counted(nodes_outside, "node"));
}

}  // namespace fabscan
