#ifndef FABSCAN_CLI_NODE_MATCHERS_H
#define FABSCAN_CLI_NODE_MATCHERS_H

#include <infiniband/fabscan/fabscan.h>

#include <functional>
#include <string>
#include <vector>

#include "cli/dump/model_names.h"

namespace fabscan {

using NodeMatcher = std::function<bool(const IBNode&)>;

/// Matches names by a pattern with the wildcards of a shell; `*` also matches a slash.
NodeMatcher MatchName(const std::string& pattern);

/// Matches a type by its word in snapshots or a usual one (`switch`, `HCA`), ignoring case. Throws
/// CommandError (kWrongUsage) for another word.
NodeMatcher MatchType(const std::string& word);

/// Matches a model by its prefix, such as `SW_d2f0`, ignoring case, or all models with a device id,
/// such as `0xd2f0`. The matcher refers to `fabscan`.
NodeMatcher MatchModel(const std::string& word, const std::vector<NamedModel>& models,
                       const Fabscan& fabscan);

}  // namespace fabscan

#endif
