#ifndef FABSCAN_CLI_DISCOVERY_REPORT_H
#define FABSCAN_CLI_DISCOVERY_REPORT_H

#include <string>

#include "cli/command.h"
#include "discovery/fabric_builder.h"

namespace fabscan {

/// Says what was written to `path`, and on standard error what is missing of the fabric, a line a
/// node. Returns what the command then ends with.
ExitStatus Tell(const DiscoveryReport& report, const std::string& path);

/// Now, or the time that SOURCE_DATE_EPOCH sets, as in `2024-05-01T12:00:00Z`.
std::string CurrentTime();

}  // namespace fabscan

#endif
