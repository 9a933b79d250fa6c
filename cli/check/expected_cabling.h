#ifndef FABSCAN_CLI_CHECK_EXPECTED_CABLING_H
#define FABSCAN_CLI_CHECK_EXPECTED_CABLING_H

#include <string>

#include "cli/command.h"
#include "snapshot/snapshot.h"

namespace fabscan {

/// Compares the links of a snapshot with a plan: a table of links, or another snapshot. Reports the
/// differences; kIncomplete if there are any.
ExitStatus CheckCabling(const std::string& snapshot, const std::string& plan, bool json,
                        const SnapshotReadOptions& reading);

}  // namespace fabscan

#endif
