#include "cli/output/next_command.h"

#include <fmt/format.h>

#include "cli/files/standard_streams.h"
#include "cli/output/shell_word.h"

namespace fabscan {

std::string SnapshotWord(const std::string& snapshot) {
  if (IsStandardStream(snapshot)) return "SNAPSHOT";
  return ShellWord(!snapshot.empty() && snapshot.front() == '-' ? "./" + snapshot : snapshot);
}

std::string ScaffoldLine(const std::string& snapshot, const std::string& prefix,
                         const std::string& selection) {
  return fmt::format("fabscan scaffold {} --prefix {}{} --output-dir sim", SnapshotWord(snapshot),
                     prefix, selection);
}

}  // namespace fabscan
