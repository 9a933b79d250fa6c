#ifndef FABSCAN_CLI_MODEL_NAMES_H
#define FABSCAN_CLI_MODEL_NAMES_H

#include <set>
#include <string>
#include <vector>

#include "fabrics/device_models.h"

namespace fabscan {

/// A device model and the class prefix of its generated file, such as `SW_d2f0`: the simulator's
/// word for its kind and the device id, then a number where several models have these in common.
struct NamedModel {
  DeviceModel model;
  std::string prefix;
};

/// What begins the prefixes of models: `prefix` and an underscore, which is not doubled, as two in
/// a row are reserved.
std::string ModelPrefixStart(const std::string& prefix);

/// The models of the selected nodes, all when `guids` is empty; the most frequent first, equally
/// frequent ones by representative. The prefixes begin with `start` and are distinct also in lower
/// case, as the names of their files.
std::vector<NamedModel> NameModels(Fabscan& fabscan, const std::string& start,
                                   const std::set<u_int64_t>& guids = {});
/// The same for each of `nodes` alone: each is its own model.
std::vector<NamedModel> NameNodes(Fabscan& fabscan, const std::vector<const IBNode*>& nodes,
                                  const std::string& start);

}  // namespace fabscan

#endif
