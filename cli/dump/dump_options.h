#ifndef FABSCAN_CLI_DUMP_OPTIONS_H
#define FABSCAN_CLI_DUMP_OPTIONS_H

#include <string>

#include "cli/command.h"
#include "cli/dump/dump_file.h"
#include "cli/selection/node_selection.h"
#include "snapshot/snapshot.h"

namespace fabscan {

struct DumpOptions {
  std::string snapshot;
  std::string prefix;
  NodeSelection nodes;
  std::string output;  // empty: named by the prefix, in `output_dir`
  std::string output_dir;
  Variant variant = Variant::kExact;
  bool one_per_model = false;
  bool force = false;
  bool strict = false;
  SnapshotReadOptions reading;
};

/// Runs `dump --one-per-model`.
ExitStatus DumpModels(const DumpOptions& options);

}  // namespace fabscan

#endif
