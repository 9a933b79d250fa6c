#ifndef FABSCAN_FABRICS_TOPOLOGY_LEVELS_H
#define FABSCAN_FABRICS_TOPOLOGY_LEVELS_H

#include <infiniband/fabscan/fabscan.h>

#include <vector>

namespace fabscan {

/// The levels of a tree: adapters are at 0, switches with adapters at 1, the next switches at 2.
class TopologyLevels {
 public:
  static constexpr int kNone = -1;

  explicit TopologyLevels(const IBFabric& fabric);

  /// The number of links to the nearest adapter; kNone without a path to one. Special nodes and
  /// routers are at every level of a fabric, so no distance begins at them.
  int Of(const IBNode& node) const { return levels_[node.createIndex]; }
  /// The highest level of a switch; kNone without switches.
  int top() const { return top_; }

 private:
  std::vector<int> levels_;  // by creation index
  int top_ = kNone;
};

}  // namespace fabscan

#endif
