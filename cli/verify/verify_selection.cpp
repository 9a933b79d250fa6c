#include "cli/verify/verify_selection.h"

#include "fabrics/device_models.h"
namespace fabscan {

std::vector<const IBNode*> RepresentativeNodes(const Fabscan& fabscan) {
  std::vector<const IBNode*> nodes;
  for (const DeviceModel& model : DeviceModelsOf(fabscan)) nodes.push_back(model.representative);
  return nodes;
}

}  // namespace fabscan
