#ifndef FABSCAN_CLI_READ_SNAPSHOT_H
#define FABSCAN_CLI_READ_SNAPSHOT_H

#include <set>
#include <string>

#include "snapshot/snapshot.h"

namespace fabscan {

/// `ReadSnapshot` with these limits and a progress line. Reads the nodes of `guids` in full, or all
/// nodes if it is empty; of other nodes, reads only the identity.
SnapshotHeader ReadSnapshotWithProgress(const std::string& path, Fabscan& fabscan,
                                        const SnapshotReadOptions& limits,
                                        const std::set<u_int64_t>& guids = {});

/// Throws CommandError if ports of the snapshot are up, and it contains no links.
void RequireLinks(const std::string& path, const Fabscan& fabscan);

}  // namespace fabscan

#endif
