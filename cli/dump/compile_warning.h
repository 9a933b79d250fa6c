#ifndef FABSCAN_CLI_COMPILE_WARNING_H
#define FABSCAN_CLI_COMPILE_WARNING_H

#include <string>

#include "cli/dump/dump_options.h"
#include "cli/dump/dump_summary.h"

namespace fabscan {

/// The line that says that `what`, such as "x.cpp does not compile as written", with the faults and
/// the next command: a warning, or an error with --strict. Empty without faults.
std::string CompileWarning(const std::string& what, const CompileFaults& faults,
                           const DumpOptions& options);

}  // namespace fabscan

#endif
