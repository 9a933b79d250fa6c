#ifndef FABSCAN_CLI_COMPILE_WARNING_H
#define FABSCAN_CLI_COMPILE_WARNING_H

#include <string>

#include "cli/dump/dump_options.h"
#include "cli/dump/dump_summary.h"

namespace fabscan {

/// Warns that `what`, such as "x.cpp does not compile as written", with the faults and the next
/// command. With --strict it throws CommandError (kIncomplete) instead. Does nothing without
/// faults.
void WarnOfFaults(const std::string& what, const CompileFaults& faults, const DumpOptions& options);

}  // namespace fabscan

#endif
