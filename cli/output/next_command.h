#ifndef FABSCAN_CLI_NEXT_COMMAND_H
#define FABSCAN_CLI_NEXT_COMMAND_H

#include <sys/types.h>

#include <set>
#include <string>

namespace fabscan {

/// The snapshot as a shell word that is never an option.
std::string SnapshotWord(const std::string& snapshot);

/// `fabscan scaffold fabric.jsonl --prefix MyDev --output-dir sim`: the command that makes devices
/// that compile. Includes `guids` if they are few; for standard input, the snapshot is the word
/// SNAPSHOT.
std::string ScaffoldLine(const std::string& snapshot, const std::string& prefix,
                         const std::set<u_int64_t>& guids = {});

}  // namespace fabscan

#endif
