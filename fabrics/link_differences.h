#ifndef FABSCAN_FABRICS_LINK_DIFFERENCES_H
#define FABSCAN_FABRICS_LINK_DIFFERENCES_H

#include <infiniband/fabscan/fabscan.h>

#include <string>
#include <vector>

namespace fabscan {

/// One end of a link. Its node may be outside the fabric.
struct LinkEnd {
  u_int64_t guid;  // of the node
  phys_port_t port;
  std::string name;  // of the node; its GUID if it is outside the fabric
};

/// A link that two fabrics do not have in common.
struct LinkDifference {
  enum class Change { kMoved, kLost, kAdded };

  Change change;
  LinkEnd end;
  LinkEnd before;  // the other end in the first fabric; not of an added link
  LinkEnd after;   // in the second; not of a lost one
};

/// The moved links, then the lost ones, then the added ones, each in natural order of the first
/// end. Matches nodes by GUID, or by name.
std::vector<LinkDifference> LinkDifferences(const IBFabric& first, const IBFabric& second,
                                            bool by_name);

}  // namespace fabscan

#endif
