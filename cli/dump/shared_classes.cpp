#include "cli/dump/shared_classes.h"

#include <fmt/format.h>

#include <map>

#include "cli/command.h"
#include "cli/selection/selected_nodes.h"
#include "fabscan/fabscan_sim_info_dump.h"

namespace fabscan {

void RefuseSharedClasses(Fabscan& fabscan, const std::set<u_int64_t>& guids,
                         const std::string& prefix) {
  const SimInfoDumpCPP generator(fabscan);
  std::map<std::string, const IBNode*> first;
  for (const IBNode* node : SelectedNodes(fabscan.discovered_fabric, guids)) {
    const std::string class_name = generator.GetDumpedNodeType(*node);
    const auto [found, is_new] = first.emplace(class_name, node);
    if (is_new) continue;
    throw CommandError(
        fmt::format("--buildable: {} and {} both define the class {}::{}, and a file can define it "
                    "only once; add --one-per-model, or select one node of each class",
                    found->second->name, node->name, prefix, class_name));
  }
}

}  // namespace fabscan
