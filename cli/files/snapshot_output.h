#ifndef FABSCAN_CLI_SNAPSHOT_OUTPUT_H
#define FABSCAN_CLI_SNAPSHOT_OUTPUT_H

#include <functional>
#include <string>

#include "cli/files/staged_output.h"
#include "snapshot/snapshot_writer.h"

namespace CLI {
class App;
}

namespace fabscan {

/// The options `--output` and `--force` of a subcommand that writes a snapshot.
struct SnapshotOutputOptions {
  std::string path;
  bool force = false;

  /// `type_name` is the name of the file in the help text.
  void AddTo(CLI::App& app, const char* type_name);
};

/// Writes the fabric to `output`, compressed with zstd if its name ends in `.zst`, and finishes it.
/// The caller prints its report, then commits. Throws as StagedOutput does.
void WriteFabric(StagedOutput& output, const Fabscan& fabscan, const SnapshotHeader& header);
/// The same for a fabric in parts: `write` passes them to the writer.
void WriteFabric(StagedOutput& output, const SnapshotHeader& header,
                 const std::function<void(SnapshotWriter& writer)>& write);

}  // namespace fabscan

#endif
