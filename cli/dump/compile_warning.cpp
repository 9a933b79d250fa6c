#include "cli/dump/compile_warning.h"

#include <fmt/format.h>

#include "cli/output/next_command.h"
#include "cli/output/report.h"

namespace fabscan {

void WarnOfFaults(const std::string& what, const CompileFaults& faults,
                  const DumpOptions& options) {
  if (!faults.any()) return;
  const std::string warning =
      fmt::format("{}: {}; next: {}", what, faults.text(),
                  ScaffoldLine(options.snapshot, options.prefix, options.nodes.Words()));
  if (options.strict) throw CommandError(warning, kIncomplete);
  PrintWarning(warning);
}

}  // namespace fabscan
