#include "cli/dump/compile_warning.h"

#include <fmt/format.h>

#include "cli/output/next_command.h"
#include "cli/output/report.h"

namespace fabscan {

std::string CompileWarning(const std::string& what, const CompileFaults& faults,
                           const DumpOptions& options) {
  if (!faults.any() || options.variant != Variant::kExact) return {};
  const std::string warning =
      fmt::format("{}: {}; next: {}", what, faults.text(),
                  ScaffoldLine(options.snapshot, options.prefix, options.nodes.Words()));
  return options.strict ? ErrorLine(warning) : WarningLine(warning);
}

}  // namespace fabscan
