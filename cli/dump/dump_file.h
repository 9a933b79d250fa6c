#ifndef FABSCAN_CLI_DUMP_FILE_H
#define FABSCAN_CLI_DUMP_FILE_H

#include <infiniband/fabscan/fabscan.h>

#include <set>
#include <string>

#include "dump_summary.h"
#include "progress.h"
#include "staged_output.h"

namespace fabscan {

/// Has the generator write nodes, all when `guids` is empty, into `output`, which is not committed,
/// and says what was written. Throws CommandError.
DumpSummary WriteDumpFile(Fabscan& fabscan, const std::string& prefix,
                          const std::set<u_int64_t>& guids, const StagedOutput& output);
/// The same, which shows how far it is.
DumpSummary WriteDumpFile(Fabscan& fabscan, const std::string& prefix,
                          const std::set<u_int64_t>& guids, const StagedOutput& output,
                          Progress& progress);

}  // namespace fabscan

#endif
