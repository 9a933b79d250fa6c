#ifndef FABSCAN_CLI_NEXT_COMMAND_H
#define FABSCAN_CLI_NEXT_COMMAND_H

#include <sys/types.h>

#include <set>
#include <string>

namespace fabscan {

/// The snapshot as a word of a command, and never as an option.
std::string SnapshotWord(const std::string& snapshot);

/// `fabscan scaffold fabric.jsonl --prefix MyDev --output-dir sim`: the command that makes devices
/// which compile. A few `guids` are named as well; standard input cannot be named, so a word stands
/// for it.
std::string ScaffoldLine(const std::string& snapshot, const std::string& prefix,
                         const std::set<u_int64_t>& guids = {});

}  // namespace fabscan

#endif
