#include "discovery/live/live_discovery.h"

#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>
#include <utility>

#include "discovery/live/captured_standard_error.h"
#include "discovery/live/local_port.h"
#include "discovery/live/node_queries.h"
#include "discovery/live/scanned_fabric.h"

namespace fabscan {

namespace {

constexpr unsigned kMostHops = 63;  // the limit of a directed route
constexpr unsigned kNoLimit = 0;
constexpr std::chrono::milliseconds kPause(50);

std::string Text(const LocalPort& port) {
  return fmt::format("{} port {}", port.channel_adapter, port.number);
}

/// The library's message, without the source location at its start.
std::string WithoutPlace(const std::string& message) {
  const std::size_t end = message.find("; ");
  return end == std::string::npos ? message : message.substr(end + 2);
}

using Scan = std::unique_ptr<ScannedFabric>;

/// Scans in a separate thread that receives no signals. A scan cannot be cancelled: when the
/// discovery is stopped, the thread is detached and continues until the process ends.
std::future<Scan> BeginScan(const LocalPort& port, const LiveOptions& options, unsigned max_hops) {
  std::packaged_task<Scan()> task([port, options, max_hops] {
    return std::make_unique<ScannedFabric>(port, options, max_hops);
  });
  std::future<Scan> scan = task.get_future();
  sigset_t all;
  sigset_t before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread(std::move(task)).detach();
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return scan;
}

/// Makes the process exit without destroying static objects: the detached scan must not use a
/// library that has been shut down. Registered last, so it is called first.
void EndWithoutDestructors() {
  ::on_exit(
      [](int status, void*) {
        static_cast<void>(std::fflush(nullptr));
        ::_exit(status);
      },
      nullptr);
}

/// The fabric up to `max_hops`; null if the discovery was stopped.
Scan ScanFabric(const LocalPort& port, const LiveOptions& options, unsigned max_hops) {
  const CapturedStandardError captured;
  std::future<Scan> begun = BeginScan(port, options, max_hops);
  while (begun.wait_for(kPause) != std::future_status::ready) {
    if (options.stopped()) {
      EndWithoutDestructors();
      return nullptr;
    }
    options.progress("scanning the fabric from " + Text(port), 0, 0);
  }
  Scan scan = begun.get();
  if (!scan->failed()) return scan;
  const std::string cause = WithoutPlace(captured.LastLine());
  throw DiscoveryError(fmt::format(
      "{}: the scan failed{}{}; is the port up, and may this user send subnet management queries?",
      Text(port), cause.empty() ? "" : ": ", cause));
}

/// A scan returns no results before it ends. To keep partial results when it is stopped, scans
/// repeatedly, one hop farther each time, until no more nodes are found.
Scan ScanHopByHop(const LocalPort& port, const LiveOptions& options) {
  Scan farthest;
  for (unsigned hops = 1; hops <= kMostHops; ++hops) {
    Scan scan = ScanFabric(port, options, hops);
    if (scan == nullptr) break;
    const bool whole = farthest != nullptr && scan->NodeCount() == farthest->NodeCount();
    farthest = std::move(scan);
    if (whole) break;
    options.progress("nodes found so far", farthest->NodeCount(), 0);
  }
  return farthest;
}

[[noreturn]] void GiveUp(const LiveOptions& options) {
  throw DiscoveryError(
      options.keep_partial
          ? "interrupted before anything was read"
          : "interrupted; nothing was written (use --keep-partial to keep what was read)");
}

}  // namespace

LiveFindings DiscoverLive(const LiveOptions& options) {
  const LocalPort port = ChooseLocalPort(options.channel_adapter, options.port);
  options.progress("scanning the fabric from " + Text(port), 0, 0);
  const Scan scan =
      options.keep_partial ? ScanHopByHop(port, options) : ScanFabric(port, options, kNoLimit);
  if (scan == nullptr) GiveUp(options);

  LiveFindings found;
  found.where = Text(port);
  found.fabric = scan->Findings();
  AskWhatTheScanDidNot(port, options, scan->Paths(), found.fabric);
  found.stopped = options.stopped();
  if (found.stopped && !options.keep_partial) GiveUp(options);
  return found;
}

}  // namespace fabscan
