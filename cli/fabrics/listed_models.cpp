#include "listed_models.h"

#include <fabscan_sim_info_dump.h>
#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace fabscan {

std::vector<ListedModel> ListModels(Fabscan& fabscan, const std::string& start) {
  const SimInfoDumpCPP generator(fabscan);
  std::vector<ListedModel> list;
  std::map<std::string, std::size_t> used;
  for (const DeviceModel& model : DeviceModelsOf(fabscan)) {
    std::string prefix =
        fmt::format("{}{}_{:04x}", start, generator.GetDumpedNodeType(*model.representative),
                    model.key.device_id);
    const std::size_t number = ++used[prefix];
    if (number > 1) prefix += fmt::format("_{}", number);
    list.push_back({model, std::move(prefix)});
  }
  std::stable_sort(list.begin(), list.end(), [](const ListedModel& one, const ListedModel& other) {
    return one.model.nodes > other.model.nodes;
  });
  return list;
}

}  // namespace fabscan
