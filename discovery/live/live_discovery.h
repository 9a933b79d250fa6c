#ifndef FABSCAN_DISCOVERY_LIVE_LIVE_DISCOVERY_H
#define FABSCAN_DISCOVERY_LIVE_LIVE_DISCOVERY_H

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

#include "discovery/findings.h"

namespace fabscan {

/// A discovery that found nothing. `what()` is one line that tells what to do.
class DiscoveryError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct LiveOptions {
  std::string channel_adapter;  // -C; empty: the first one with a usable port
  unsigned port = 0;            // -P; 0: the first usable port
  unsigned timeout_ms = 1000;
  unsigned retries = 3;      // of a query; those of the scan are tried twice at least
  unsigned outstanding = 2;  // queries under way at once while scanning
  /// Whoever stops the discovery may want what was read. The scan then goes out one hop at a time,
  /// and takes longer.
  bool keep_partial = false;
  /// Asked now and then; true ends the discovery.
  std::function<bool()> stopped = [] { return false; };
  /// Told how far the discovery is: what it does, and how much of how many is done; `total` 0 means
  /// that it is not known.
  std::function<void(const std::string& what, std::size_t done, std::size_t total)> progress =
      [](const std::string&, std::size_t, std::size_t) {};
};

struct LiveFindings {
  FabricFindings fabric;
  std::string where;  // adapter and port that the queries left by
  bool stopped = false;
};

/// Scans the fabric that an InfiniBand port of this host belongs to. Nothing in the fabric is
/// changed: every query is a Get. When stopped, throws DiscoveryError, or with `keep_partial`
/// returns what was read by then. Throws DiscoveryError when there is no such port, or no way to
/// it; in a build without the InfiniBand libraries always, and then says what to install.
LiveFindings DiscoverLive(const LiveOptions& options);

}  // namespace fabscan

#endif
