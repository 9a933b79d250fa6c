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

  /// `type_name` is what the help calls the file.
  void AddTo(CLI::App& app, const char* type_name);
};

/// Writes the fabric to `output`, compressed with zstd where its name ends in `.zst`, and finishes
/// that; the caller commits it, once it has printed what it has to say. Throws as StagedOutput
/// does.
void WriteFabric(StagedOutput& output, const Fabscan& fabscan, const SnapshotHeader& header);
/// The same for a fabric that comes in parts: `write` gives them to the writer.
void WriteFabric(StagedOutput& output, const SnapshotHeader& header,
                 const std::function<void(SnapshotWriter& writer)>& write);

}  // namespace fabscan

#endif
