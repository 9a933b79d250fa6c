#ifndef FABSCAN_FABRICS_EXPORT_LINKS_H
#define FABSCAN_FABRICS_EXPORT_LINKS_H

#include <infiniband/fabscan/fabscan.h>

#include <string>
#include <vector>

#include "fabrics/link_rate.h"

namespace fabscan {

/// A port at the end of a link. If its node is outside the snapshot, only GUID and number are
/// known.
struct LinkedPort {
  u_int64_t guid;  // of the node
  phys_port_t number;
  const IBNode* node = nullptr;
  const IBPort* port = nullptr;

  /// The name of the node; its GUID if it is outside.
  std::string name() const;
};

struct Link {
  LinkedPort first;
  LinkedPort second;
  LinkRate rate;
};

/// Every link once: in natural order of the nodes, then by port; the end that comes first is
/// `first`.
std::vector<Link> LinksOf(const Fabscan& fabscan);

}  // namespace fabscan

#endif
