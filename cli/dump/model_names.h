#ifndef FABSCAN_CLI_MODEL_NAMES_H
#define FABSCAN_CLI_MODEL_NAMES_H

#include <set>
#include <string>
#include <vector>

#include "fabrics/device_models.h"

namespace fabscan {

/// A device model and the class prefix of its generated file, such as `SW_d2f0`: the simulator's
/// class and the device ID, then a number if several models share them.
struct NamedModel {
  DeviceModel model;
  std::string prefix;
};

/// The start of model prefixes: `prefix` and an underscore, but never two consecutive underscores,
/// which are reserved.
std::string ModelPrefixStart(const std::string& prefix);

/// The models of the nodes of `guids`, or of all nodes if it is empty; the most frequent first,
/// equally frequent ones by representative. The prefixes begin with `start` and are distinct even
/// in lower case, as in file names.
std::vector<NamedModel> NameModels(Fabscan& fabscan, const std::string& start,
                                   const std::set<u_int64_t>& guids = {});
/// The same, with each of `nodes` as a separate model.
std::vector<NamedModel> NameNodes(Fabscan& fabscan, const std::vector<const IBNode*>& nodes,
                                  const std::string& start);

}  // namespace fabscan

#endif
