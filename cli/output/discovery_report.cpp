#include "cli/output/discovery_report.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cstdlib>
#include <ctime>
#include <iostream>

#include "cli/files/standard_streams.h"
#include "cli/output/counted.h"
#include "cli/output/report.h"

namespace fabscan {

ExitStatus Tell(const DiscoveryReport& report, const std::string& path) {
  std::string text = fmt::format("{}: {}, {}", OutputName(path), Counted(report.nodes, "node"),
                                 Counted(report.ports, "port"));
  if (report.attributes_asked != 0) {
    text += fmt::format("; {} of {}", report.attributes_read,
                        Counted(report.attributes_asked, "attribute"));
  }
  (IsStandardOutput(path) ? std::cerr : std::cout) << text << '\n';
  if (report.complete()) return kDone;
  for (const std::string& gap : report.gaps) PrintWarning(gap);
  PrintWarning(fmt::format("the snapshot is incomplete: {} of {} lack attributes",
                           report.gaps.size(), Counted(report.nodes, "node")));
  return kIncomplete;
}

std::string CurrentTime() {
  std::time_t now = std::time(nullptr);
  if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) {
    char* end = nullptr;
    const long long seconds = std::strtoll(epoch, &end, 10);
    if (end != epoch && *end == '\0') now = static_cast<std::time_t>(seconds);
  }
  return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(now));
}

}  // namespace fabscan
