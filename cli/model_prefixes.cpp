#include "model_prefixes.h"

#include <fabscan_sim_info_dump.h>
#include <fmt/format.h>

#include <map>

namespace fabscan {

std::vector<std::string> ModelPrefixes(const std::vector<DeviceModel>& models, Fabscan& fabscan,
                                       const std::string& start) {
  const SimInfoDumpCPP generator(fabscan);
  std::vector<std::string> prefixes;
  std::map<std::string, std::size_t> used;
  for (const DeviceModel& model : models) {
    std::string prefix =
        fmt::format("{}{}_{:04x}", start, generator.GetDumpedNodeType(*model.representative),
                    model.key.device_id);
    const std::size_t number = ++used[prefix];
    if (number > 1) prefix += fmt::format("_{}", number);
    prefixes.push_back(prefix);
  }
  return prefixes;
}

}  // namespace fabscan
