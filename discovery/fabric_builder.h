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
  /// What is missing of the fabric, one line a node, each naming its node; empty when it is whole.
  std::vector<std::string> gaps;

  bool complete() const { return gaps.empty(); }
};

/// Fills the empty model and store of `fabscan` with what was found: nodes ascending by GUID, with
/// distinct names, each with all of its ports. What was not read is noted as absent, with its
/// reason.
///
/// Throws std::invalid_argument when the findings contradict each other: a GUID that two nodes
/// have, a port twice or above the node's number of ports.
DiscoveryReport BuildFabric(const FindingsSource& findings, Fabscan& fabscan);

/// So many ports make a part that is still in the second-level cache when it has been built.
inline constexpr std::size_t kPortsOfAPart = 128;

/// The same nodes in parts of about `ports` ports, in the same order: `take` is given one part
/// after another, all in the same model, which is emptied for the next. A fabric of any size takes
/// the memory of a part, beside that of the findings and the names.
DiscoveryReport BuildFabricInParts(const FindingsSource& findings, std::size_t ports,
                                   const std::function<void(const Fabscan& part)>& take);

}  // namespace fabscan

#endif
