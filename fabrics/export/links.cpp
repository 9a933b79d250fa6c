#include "fabrics/export/links.h"

#include <set>
#include <utility>

#include "fabrics/natural_order.h"
#include "model/guid_text.h"

namespace fabscan {

namespace {

LinkedPort RemoteOf(const IBFabric& fabric, const RemotePort& remote) {
  const IBNode* node = fabric.getNodeByGuid(remote.node_guid);
  return {remote.node_guid, remote.number, node,
          node == nullptr ? nullptr : node->getPort(remote.number)};
}

/// Of the first of the two ports that knows it.
LinkRate RateOf(const Fabscan& fabscan, const IBPort* port, const IBPort* other) {
  for (const IBPort* end : {port, other}) {
    if (end == nullptr) continue;
    const LinkRate rate = LinkRateOf(fabscan, *end);
    if (rate.gbps() > 0) return rate;
  }
  return {};
}

}  // namespace

std::string LinkedPort::name() const { return node == nullptr ? GuidText(guid) : node->name; }

std::vector<Link> LinksOf(const Fabscan& fabscan) {
  const IBFabric& fabric = fabscan.discovered_fabric;
  std::vector<Link> links;
  std::set<std::pair<u_int64_t, phys_port_t>> seen;
  for (const IBNode* node : NodesInNaturalOrder(fabric)) {
    for (const IBPort* port : node->Ports) {
      if (port == nullptr || !port->getRemotePort()) continue;
      const LinkedPort remote = RemoteOf(fabric, *port->getRemotePort());
      seen.insert({node->guid, port->num});
      if (seen.count({remote.guid, remote.number}) != 0) continue;
      links.push_back(
          {{node->guid, port->num, node, port}, remote, RateOf(fabscan, port, remote.port)});
    }
  }
  return links;
}

}  // namespace fabscan
