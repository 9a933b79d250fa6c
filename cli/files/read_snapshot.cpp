#include "cli/files/read_snapshot.h"

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/files/standard_streams.h"
#include "cli/terminal/progress.h"
#include "model/links.h"

namespace fabscan {

SnapshotHeader ReadSnapshotWithProgress(const std::string& path, Fabscan& fabscan,
                                        const SnapshotReadOptions& limits,
                                        const std::set<u_int64_t>& guids) {
  if (IsStandardStream(path)) TakeStandardInput();
  Progress progress;
  const std::string what = "reading " + InputName(path);
  SnapshotReadOptions options = limits;
  if (!guids.empty()) options.guids = &guids;
  options.progress = [&](std::size_t done, std::size_t total) {
    progress.Show(what, done, total, Unit::kBytes);
  };
  return ReadSnapshot(path, fabscan, options);
}

void RequireLinks(const std::string& path, const Fabscan& fabscan) {
  if (KnowsLinks(fabscan.discovered_fabric)) return;
  throw CommandError(
      fmt::format("{}: contains no links, though ports are up; discover or import the fabric again",
                  InputName(path)));
}

}  // namespace fabscan
