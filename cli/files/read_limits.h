#ifndef FABSCAN_CLI_READ_LIMITS_H
#define FABSCAN_CLI_READ_LIMITS_H

#include "snapshot/snapshot.h"

namespace CLI {
class App;
}

namespace fabscan {

/// Adds the options that change the limits for reading snapshots.
void AddReadLimits(CLI::App& app, SnapshotReadOptions& options);

}  // namespace fabscan

#endif
