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

/// The result of a dump.
struct DumpedFile {
  DumpSummary summary;            // of the exact text
  std::vector<SourceEdit> edits;  // of the buildable variant
};

/// Generates the nodes of `guids`, or all nodes if it is empty, into `output`, without committing
/// it. Shows the progress if `progress` is not null. Throws CommandError.
DumpedFile WriteDumpFile(Fabscan& fabscan, const std::string& prefix,
                         const std::set<u_int64_t>& guids, Variant variant, StagedOutput& output,
                         Progress* progress = nullptr);

}  // namespace fabscan

#endif
