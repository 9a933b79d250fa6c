#include "verify_selection.h"

#include <device_models.h>
#include <fmt/format.h>

#include "command.h"
#include "guid_options.h"

namespace fabscan {

std::vector<const IBNode*> ChosenNodes(const IBFabric& fabric, const std::set<u_int64_t>& guids) {
  for (const u_int64_t guid : guids) {
    const IBNode* node = fabric.getNodeByGuid(guid);
    if (node == nullptr) {
      throw CommandError(
          fmt::format("no node has the GUID {}; choose one of the snapshot's", GuidText(guid)));
    }
    if (!node->in_sub_fabric) {
      throw CommandError(
          fmt::format("the node {} ({}) is outside the sub-fabric, so it is never written; choose "
                      "another",
                      GuidText(guid), node->name));
    }
  }
  std::vector<const IBNode*> nodes;
  for (const auto& [name, node] : fabric.NodeByName) {
    if (node != nullptr && guids.count(node->guid) != 0) nodes.push_back(node);
  }
  return nodes;
}

std::vector<const IBNode*> RepresentativeNodes(const Fabscan& fabscan) {
  std::vector<const IBNode*> nodes;
  for (const DeviceModel& model : DeviceModelsOf(fabscan)) nodes.push_back(model.representative);
  return nodes;
}

}  // namespace fabscan
