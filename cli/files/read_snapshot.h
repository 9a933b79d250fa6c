#ifndef FABSCAN_CLI_READ_SNAPSHOT_H
#define FABSCAN_CLI_READ_SNAPSHOT_H

#include <set>
#include <string>

#include "snapshot/snapshot.h"

namespace fabscan {

/// `ReadSnapshot` with these limits, which shows how far it is. `guids` empty: all nodes in full;
/// otherwise those, and the others as far as any node is known.
SnapshotHeader ReadSnapshotWithProgress(const std::string& path, Fabscan& fabscan,
                                        const SnapshotReadOptions& limits,
                                        const std::set<u_int64_t>& guids = {});

}  // namespace fabscan

#endif
