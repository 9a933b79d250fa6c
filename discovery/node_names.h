#ifndef FABSCAN_DISCOVERY_NODE_NAMES_H
#define FABSCAN_DISCOVERY_NODE_NAMES_H

#include <sys/types.h>

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// The node description of one node.
struct NodeDescription {
  u_int64_t guid = 0;
  std::string_view text;  // may be empty, or shared with other nodes
};

/// A distinct name for each node, in the order given. A unique description is the
/// name of its node. A shared description is followed by the node's GUID, as in
/// `spine [0x5a1e0c0300a1b2c3]`; a node without a description is named `[0x5a1e0c0300a1b2c3]`. The
/// names depend only on the set of nodes, not on their order. GUIDs must be distinct.
class NodeNames {
 public:
  /// The texts must outlive the names.
  explicit NodeNames(const std::vector<NodeDescription>& nodes);
  NodeNames(const NodeNames&) = delete;  // contains pointers into itself
  NodeNames& operator=(const NodeNames&) = delete;

  std::string_view operator[](std::size_t place) const { return names_[place]; }

 private:
  std::set<std::string, std::less<>> with_guid_;
  std::vector<std::string_view> names_;
};

}  // namespace fabscan

#endif
