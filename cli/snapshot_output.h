#ifndef FABSCAN_CLI_SNAPSHOT_OUTPUT_H
#define FABSCAN_CLI_SNAPSHOT_OUTPUT_H

#include <snapshot.h>

#include <string>

#include "staged_output.h"

namespace CLI {
class App;
}

namespace fabscan {

/// The options `--output` and `--force` of a subcommand that writes a snapshot.
struct SnapshotOutputOptions {
  std::string path;
  bool force = false;

  /// `type_name` is what the help calls the file.
  void AddTo(CLI::App& app, const char* type_name);
};

/// Writes the fabric to `output`, compressed with zstd where its name ends in `.zst`, and commits
/// it. Throws CommandError.
void WriteAndCommit(StagedOutput& output, const Fabscan& fabscan, const SnapshotHeader& header);

}  // namespace fabscan

#endif
