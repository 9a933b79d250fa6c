#ifndef FABSCAN_DISCOVERY_FABRIC_BUILDER_H
#define FABSCAN_DISCOVERY_FABRIC_BUILDER_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "discovery/findings.h"

namespace fabscan {

/// How complete a fabric is.
struct DiscoveryReport {
  std::size_t nodes = 0;
  std::size_t ports = 0;
  std::size_t attributes_asked = 0;
  std::size_t attributes_read = 0;
  /// What is missing, one line per node with the name of the node; empty if nothing is missing.
  std::vector<std::string> gaps;

  bool complete() const { return gaps.empty(); }
};

/// Fills the empty model and store of `fabscan` with the findings: nodes in ascending order of
/// GUID, with distinct names, each with all of its ports. Records that were not read are absent,
/// with the reason.
///
/// Throws std::invalid_argument if the findings are inconsistent: a GUID of two nodes, a duplicate
/// port, or a port above the node's number of ports.
DiscoveryReport BuildFabric(const FindingsSource& findings, Fabscan& fabscan);

/// A part with this many ports fits in the second-level cache.
inline constexpr std::size_t kPortsOfAPart = 128;

/// Builds the same nodes in the same order, in parts of about `ports` ports. Calls `take` for each
/// part; all parts use the same model, which is cleared in between. A fabric of any size needs only
/// memory for one part, the findings and the names.
DiscoveryReport BuildFabricInParts(const FindingsSource& findings, std::size_t ports,
                                   const std::function<void(const Fabscan& part)>& take);

}  // namespace fabscan

#endif
