#ifndef FABSCAN_DISCOVERY_LIVE_SCANNED_FABRIC_H
#define FABSCAN_DISCOVERY_LIVE_SCANNED_FABRIC_H

#include <memory>
#include <vector>

#include "discovery/findings.h"
#include "discovery/live/live_discovery.h"
#include "discovery/live/local_port.h"

// Of the InfiniBand libraries, whose headers define macros that stay in source files.
struct ibnd_fabric;
struct portid;

namespace fabscan {

/// What one scan of the fabric met. It knows nothing of why a query failed: what is missing is
/// simply not there.
class ScannedFabric {
 public:
  /// Scans to `max_hops` from the local port; 0 is as far as it goes. A signal must not break off
  /// the wait for an answer: the library then frees what it still uses.
  ScannedFabric(const LocalPort& port, const LiveOptions& options, unsigned max_hops);

  /// The scan failed; then this holds nothing, and the library has written why to standard error.
  bool failed() const { return fabric_ == nullptr; }

  /// The nodes, each with all ports that it has; ports that the scan did not come by have no
  /// answers yet.
  FabricFindings Findings() const;
  /// The way to each node, in the order of `Findings`; valid as long as this.
  std::vector<const portid*> Paths() const;
  std::size_t NodeCount() const;

 private:
  struct Destroy {
    void operator()(ibnd_fabric* fabric) const;
  };

  std::unique_ptr<ibnd_fabric, Destroy> fabric_;
};

}  // namespace fabscan

#endif
