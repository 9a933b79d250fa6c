#ifndef FABSCAN_CLI_NEXT_COMMAND_H
#define FABSCAN_CLI_NEXT_COMMAND_H

#include <string>

namespace fabscan {

/// The snapshot as a shell word that is never an option; SNAPSHOT for standard input, which cannot
/// be read again.
std::string SnapshotWord(const std::string& snapshot);

/// `fabscan scaffold fabric.jsonl --prefix MyDev --output-dir sim`: the command that makes devices
/// that compile. `selection`: as NodeSelection::Words.
std::string ScaffoldLine(const std::string& snapshot, const std::string& prefix,
                         const std::string& selection = "");

}  // namespace fabscan

#endif
