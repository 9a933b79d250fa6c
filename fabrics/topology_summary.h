#ifndef FABSCAN_FABRICS_TOPOLOGY_SUMMARY_H
#define FABSCAN_FABRICS_TOPOLOGY_SUMMARY_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <string_view>
#include <vector>

#include "fabrics/topology_levels.h"

namespace fabscan {

/// Switches that are alike: at one level, with as many links of as much bandwidth in each
/// direction.
struct SwitchGroup {
  int level = TopologyLevels::kNone;
  phys_port_t ports = 0;
  std::size_t down = 0;      // links to lower levels, and to nodes that are no switches
  std::size_t up = 0;        // links to higher levels
  std::size_t sideways = 0;  // links to the same level, and to nodes outside
  double down_gbps = 0;
  double up_gbps = 0;
  std::vector<const IBNode*> switches;  // in natural order

  /// Bandwidth down against bandwidth up; 0 if one of them is 0.
  double oversubscription() const { return up_gbps == 0 ? 0 : down_gbps / up_gbps; }
};

/// Links between two levels that use one width and speed.
struct LinkGroup {
  int lower = TopologyLevels::kNone;
  int upper = TopologyLevels::kNone;
  std::string_view width;
  std::string_view speed;
  std::size_t links = 0;
};

struct TopologySummary {
  std::vector<SwitchGroup> switches;  // highest level first, then the largest groups
  std::vector<LinkGroup> links;       // likewise
  std::size_t adapters = 0;           // special nodes not included
  std::size_t outside = 0;            // links to nodes that the fabric does not contain
  /// The parts of the fabric that no link connects, largest first; each begins with the first of
  /// its nodes in natural order.
  std::vector<std::vector<const IBNode*>> parts;
};

TopologySummary SummariseTopology(const Fabscan& fabscan);

}  // namespace fabscan

#endif
