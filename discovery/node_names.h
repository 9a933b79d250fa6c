#ifndef FABSCAN_DISCOVERY_NODE_NAMES_H
#define FABSCAN_DISCOVERY_NODE_NAMES_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace fabscan {

/// What one node calls itself.
struct NodeDescription {
  u_int64_t guid = 0;
  std::string text;  // may be empty, or shared with other nodes
};

/// A distinct name for each node, in the order given. A description that no other node has is the
/// node's name as it stands. One that is shared is followed by the node's GUID, as in
/// `spine [0x0002c90300a1b2c3]`; a node without one is called `[0x0002c90300a1b2c3]`. The names
/// depend on the set of nodes alone, not on their order. The GUIDs are distinct.
std::vector<std::string> DistinctNames(const std::vector<NodeDescription>& nodes);

}  // namespace fabscan

#endif
