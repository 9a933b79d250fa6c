#ifndef FABSCAN_DISCOVERY_LIVE_SCANNED_FABRIC_H
#define FABSCAN_DISCOVERY_LIVE_SCANNED_FABRIC_H

#include <memory>
#include <vector>

#include "discovery/findings.h"
#include "discovery/live/live_discovery.h"
#include "discovery/live/local_port.h"

// Types of the InfiniBand libraries; their headers define macros, so only source files include
// them.
struct ibnd_fabric;
struct portid;

namespace fabscan {

/// The result of one scan of the fabric. It does not record why a query failed: the answer is just
/// missing.
class ScannedFabric {
 public:
  /// Scans up to `max_hops` from the local port; 0 means no limit. A signal must not interrupt the
  /// wait for an answer: the library would free memory that it still uses.
  ScannedFabric(const LocalPort& port, const LiveOptions& options, unsigned max_hops);

  /// Whether the scan failed; then this is empty, and the library has written the reason to
  /// standard error.
  bool failed() const { return fabric_ == nullptr; }

  /// The nodes with all of their ports; ports that the scan did not traverse have no answers yet.
  FabricFindings Findings() const;
  /// The directed route to each node, in the order of `Findings`; valid as long as this object.
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
