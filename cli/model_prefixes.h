#ifndef FABSCAN_CLI_MODEL_PREFIXES_H
#define FABSCAN_CLI_MODEL_PREFIXES_H

#include <device_models.h>

#include <string>
#include <vector>

namespace fabscan {

/// A class prefix for each device model, such as `SW_d2f0`: the simulator's word for its kind and
/// the device id, then a number where several models have these in common. Distinct also in lower
/// case, as the names of their files. `start` stands before each.
std::vector<std::string> ModelPrefixes(const std::vector<DeviceModel>& models, Fabscan& fabscan,
                                       const std::string& start);

}  // namespace fabscan

#endif
