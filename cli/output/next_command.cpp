#include "cli/output/next_command.h"

#include <fmt/format.h>

#include "cli/files/standard_streams.h"
#include "cli/output/shell_word.h"
#include "model/guid_text.h"

namespace fabscan {

namespace {

constexpr std::size_t kMostGuids = 4;

}  // namespace

std::string SnapshotWord(const std::string& snapshot) {
  return ShellWord(!snapshot.empty() && snapshot.front() == '-' ? "./" + snapshot : snapshot);
}

std::string ScaffoldLine(const std::string& snapshot, const std::string& prefix,
                         const std::set<u_int64_t>& guids) {
  std::string line =
      fmt::format("fabscan scaffold {} --prefix {}",
                  IsStandardStream(snapshot) ? "SNAPSHOT" : SnapshotWord(snapshot), prefix);
  if (guids.size() <= kMostGuids) {
    for (const u_int64_t guid : guids) line += " --guid " + GuidText(guid);
  }
  return line + " --output-dir sim";
}

}  // namespace fabscan
