#include "live_discovery.h"

#include <fmt/format.h>

#include <memory>
#include <utility>

#include "captured_standard_error.h"
#include "local_port.h"
#include "node_queries.h"
#include "payload_decoder.h"
#include "scanned_fabric.h"
#include "subnet_query.h"

namespace fabscan {

namespace {

constexpr unsigned kMostHops = 63;  // as far as a directed route goes
constexpr unsigned kNoLimit = 0;

std::string Text(const LocalPort& port) {
  return fmt::format("{} port {}", port.channel_adapter, port.number);
}

std::unique_ptr<ScannedFabric> Scan(const LocalPort& port, const LiveOptions& options,
                                    unsigned max_hops) {
  auto scan = std::make_unique<ScannedFabric>(port, options, max_hops);
  if (!scan->failed() || options.stopped()) return scan;
  throw DiscoveryError(fmt::format(
      "{}: the scan failed{}{}; is the port up, and may this user send subnet-management queries?",
      Text(port), scan->failure().empty() ? "" : ": ", scan->failure()));
}

/// The scan is one call that gives nothing before its end. To have something at hand when it is
/// stopped, it is made again and again, a hop farther each time, until no more nodes come up.
std::unique_ptr<ScannedFabric> ScanHopByHop(const LocalPort& port, const LiveOptions& options) {
  std::unique_ptr<ScannedFabric> farthest;
  for (unsigned hops = 1; hops <= kMostHops; ++hops) {
    auto scan = Scan(port, options, hops);
    if (scan->failed()) break;  // stopped
    const bool whole = farthest != nullptr && scan->NodeCount() == farthest->NodeCount();
    farthest = std::move(scan);
    if (whole || options.stopped()) break;
    options.progress("nodes found so far", farthest->NodeCount(), 0);
  }
  return farthest;
}

}  // namespace

LiveFindings DiscoverLive(const LiveOptions& options) {
  const LocalPort port = ChooseLocalPort(options.channel_adapter, options.port);
  options.progress("scanning the fabric from " + Text(port), 0, 0);
  const auto scan =
      options.keep_partial ? ScanHopByHop(port, options) : Scan(port, options, kNoLimit);
  if (options.stopped() && (scan == nullptr || scan->failed() || !options.keep_partial)) {
    throw DiscoveryError(options.keep_partial
                             ? "interrupted before anything was read"
                             : "interrupted; nothing is kept (--keep-partial keeps what was read)");
  }

  LiveFindings found;
  found.where = Text(port);
  found.fabric = scan->Findings();
  AskWhatTheScanDidNot(port, options, scan->Paths(), found.fabric);
  found.stopped = options.stopped();
  if (found.stopped && !options.keep_partial) {
    throw DiscoveryError("interrupted; nothing is kept (--keep-partial keeps what was read)");
  }
  return found;
}

}  // namespace fabscan
