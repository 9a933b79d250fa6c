#ifndef FABSCAN_DISCOVERY_NODE_NAMES_H
#define FABSCAN_DISCOVERY_NODE_NAMES_H

#include <sys/types.h>

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// What one node calls itself.
struct NodeDescription {
  u_int64_t guid = 0;
  std::string_view text;  // may be empty, or shared with other nodes
};

/// A distinct name for each node, in the order given. A description that no other node has is the
/// node's name as it stands. One that is shared is followed by the node's GUID, as in
/// `spine [0x0002c90300a1b2c3]`; a node without one is called `[0x0002c90300a1b2c3]`. The names
/// depend on the set of nodes alone, not on their order. The GUIDs are distinct.
class NodeNames {
 public:
  /// The texts stay where they are as long as the names are used.
  explicit NodeNames(const std::vector<NodeDescription>& nodes);
  NodeNames(const NodeNames&) = delete;  // it points into itself
  NodeNames& operator=(const NodeNames&) = delete;

  std::string_view operator[](std::size_t place) const { return names_[place]; }

 private:
  std::set<std::string, std::less<>> with_guid_;
  std::vector<std::string_view> names_;
};

}  // namespace fabscan

#endif
