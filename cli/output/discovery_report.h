#ifndef FABSCAN_CLI_DISCOVERY_REPORT_H
#define FABSCAN_CLI_DISCOVERY_REPORT_H

#include <string>

#include "cli/command.h"
#include "discovery/fabric_builder.h"

namespace fabscan {

/// Reports what was written to `path`, and on standard error what is missing, one line per node.
/// Returns the exit status.
ExitStatus Tell(const DiscoveryReport& report, const std::string& path);

/// Now, or the time that SOURCE_DATE_EPOCH sets, as in `2024-05-01T12:00:00Z`.
std::string CurrentTime();

}  // namespace fabscan

#endif
