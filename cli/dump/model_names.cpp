#include "cli/dump/model_names.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "fabrics/natural_order.h"
#include "fabscan/fabscan_sim_info_dump.h"

namespace fabscan {

namespace {

std::vector<NamedModel> Named(Fabscan& fabscan, const std::vector<DeviceModel>& models,
                              const std::string& start) {
  const SimInfoDumpCPP generator(fabscan);
  std::vector<NamedModel> list;
  std::map<std::string, std::size_t> used;
  for (const DeviceModel& model : models) {
    std::string prefix =
        fmt::format("{}{}_{:04x}", start, generator.GetDumpedNodeType(*model.representative),
                    model.key.device_id);
    const std::size_t number = ++used[prefix];
    if (number > 1) prefix += fmt::format("_{}", number);
    list.push_back({model, std::move(prefix)});
  }
  return list;
}

}  // namespace

std::string ModelPrefixStart(const std::string& prefix) {
  return prefix.back() == '_' ? prefix : prefix + '_';
}

std::vector<NamedModel> NameModels(Fabscan& fabscan, const std::string& start,
                                   const std::set<u_int64_t>& guids) {
  std::vector<NamedModel> list = Named(fabscan, DeviceModelsOf(fabscan, guids), start);
  std::sort(list.begin(), list.end(), [](const NamedModel& one, const NamedModel& other) {
    if (one.model.nodes != other.model.nodes) return one.model.nodes > other.model.nodes;
    return NaturallyBefore(*one.model.representative, *other.model.representative);
  });
  return list;
}

std::vector<NamedModel> NameNodes(Fabscan& fabscan, const std::vector<const IBNode*>& nodes,
                                  const std::string& start) {
  std::vector<DeviceModel> models;
  for (const IBNode* node : nodes) {
    models.push_back({DeviceModelOf(fabscan, *node), node, RecordsOf(fabscan, *node), 1});
  }
  return Named(fabscan, models, start);
}

}  // namespace fabscan
