#ifndef FABSCAN_DISCOVERY_LIVE_LIVE_DISCOVERY_H
#define FABSCAN_DISCOVERY_LIVE_LIVE_DISCOVERY_H

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

#include "discovery/findings.h"

namespace fabscan {

/// A discovery that failed. `what()` is one line with the remedy.
class DiscoveryError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct LiveOptions {
  std::string channel_adapter;  // -C; empty: the first one with a usable port
  unsigned port = 0;            // -P; 0: the first usable port
  unsigned timeout_ms = 1000;
  unsigned retries = 3;      // per query; the scan retries at least once
  unsigned outstanding = 2;  // outstanding queries during the scan
  /// Keep the results when the discovery is stopped. The scan then runs repeatedly, one hop farther
  /// each time, and takes longer.
  bool keep_partial = false;
  /// Polled regularly; true ends the discovery.
  std::function<bool()> stopped = [] { return false; };
  /// Called with the progress: the current step, the items done and their total; 0 if the total is
  /// unknown.
  std::function<void(const std::string& what, std::size_t done, std::size_t total)> progress =
      [](const std::string&, std::size_t, std::size_t) {};
};

struct LiveFindings {
  FabricFindings fabric;
  std::string where;  // local adapter and port
  bool stopped = false;
};

/// Scans the fabric that an InfiniBand port of this host belongs to. Nothing in the fabric changes:
/// every query is a Get. When stopped, throws DiscoveryError, or with `keep_partial` returns what
/// was read so far. Throws DiscoveryError if the port does not exist or cannot be used. A build
/// without the InfiniBand libraries always throws, and names the packages to install.
LiveFindings DiscoverLive(const LiveOptions& options);

}  // namespace fabscan

#endif
