#ifndef FABSCAN_CLI_DUMP_FILE_H
#define FABSCAN_CLI_DUMP_FILE_H

#include <infiniband/fabscan/fabscan.h>

#include <set>
#include <string>
#include <vector>

#include "cli/dump/dump_summary.h"
#include "cli/files/staged_output.h"
#include "cli/terminal/progress.h"
#include "simulator/buildable/buildable_source.h"

namespace fabscan {

/// What was written.
struct DumpedFile {
  DumpSummary summary;            // of the exact text
  std::vector<SourceEdit> edits;  // of the buildable variant
};

/// Has the generator write nodes, all when `guids` is empty, into `output`, which is not committed.
/// Shows its progress where one is given. Throws CommandError.
DumpedFile WriteDumpFile(Fabscan& fabscan, const std::string& prefix,
                         const std::set<u_int64_t>& guids, Variant variant, StagedOutput& output,
                         Progress* progress = nullptr);

}  // namespace fabscan

#endif
