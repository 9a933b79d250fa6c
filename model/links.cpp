#include "model/links.h"

#include <set>
#include <utility>

#include "model/guid_text.h"
#include "model/harmless_name.h"
#include "model/suggestion.h"

namespace fabscan {

namespace {

/// Checks one port after another.
class LinkCheck {
 public:
  LinkCheck(const IBFabric& fabric, const std::function<bool(const IBNode&)>& is_complete)
      : fabric_(fabric), is_complete_(is_complete) {}

  /// What contradicts the port's link; empty if nothing does.
  std::string Of(const IBNode& node, const IBPort& port) {
    const std::optional<RemotePort> remote = port.getRemotePort();
    if (!remote) return {};
    if (port.num == 0) return "port 0 of a switch has no link; remove it";
    if (remote->number == 0) return "a link does not end at port 0; correct the number";
    if (*remote == RemotePort{node.guid, port.num}) {
      return "the port is its own peer; correct or remove it";
    }
    const IBNode* other = fabric_.getNodeByGuid(remote->node_guid);
    if (other == nullptr) return OfMissing(*remote);
    if (remote->number > other->numPorts) {
      return Name(*other) + " has " + std::to_string(other->numPorts) + " ports, not a port " +
             std::to_string(remote->number) + "; correct one of the two";
    }
    if (is_complete_ && !is_complete_(*other)) return {};
    const IBPort* there = other->getPort(remote->number);
    if (there == nullptr) return OfMissing(*remote);
    return OfBoth(node, port, *other, *there);
  }

 private:
  static std::string Name(const IBNode& node) { return Quoted(OriginalName(node.name)); }

  /// Ports that are not there can still be named only once.
  std::string OfMissing(const RemotePort& remote) {
    if (missing_.insert({remote.node_guid, remote.number}).second) return {};
    return "port " + std::to_string(remote.number) + " of " + GuidText(remote.node_guid) +
           " is the peer of another port too; correct one of the two";
  }

  std::string OfBoth(const IBNode& node, const IBPort& port, const IBNode& other,
                     const IBPort& there) const {
    const std::optional<RemotePort> back = there.getRemotePort();
    if (back == RemotePort{node.guid, port.num}) return {};
    const std::string which = "port " + std::to_string(there.num) + " of " + Name(other);
    if (!back) return which + " has no peer; add this port there, or remove the peer here";
    const IBNode* third = fabric_.getNodeByGuid(back->node_guid);
    return which + " has another peer, port " + std::to_string(back->number) + " of " +
           (third == nullptr ? GuidText(back->node_guid) : Name(*third)) +
           "; correct one of the two";
  }

  const IBFabric& fabric_;
  const std::function<bool(const IBNode&)>& is_complete_;
  std::set<std::pair<u_int64_t, phys_port_t>> missing_;  // remote ports that the fabric lacks
};

}  // namespace

std::optional<LinkContradiction> FindLinkContradiction(
    const IBFabric& fabric, const std::function<bool(const IBNode&)>& is_complete) {
  LinkCheck check(fabric, is_complete);
  for (const IBNode& node : fabric.nodes()) {
    for (const IBPort* port : node.Ports) {
      if (port == nullptr) continue;
      std::string text = check.Of(node, *port);
      if (!text.empty()) return LinkContradiction{&node, port, std::move(text)};
    }
  }
  return std::nullopt;
}

const IBPort* RemotePortIn(const IBFabric& fabric, const IBPort& port) {
  const std::optional<RemotePort> remote = port.getRemotePort();
  if (!remote) return nullptr;
  const IBNode* node = fabric.getNodeByGuid(remote->node_guid);
  return node == nullptr ? nullptr : node->getPort(remote->number);
}

bool KnowsLinks(const IBFabric& fabric) {
  bool is_any_up = false;
  for (const IBNode& node : fabric.nodes()) {
    for (const IBPort* port : node.Ports) {
      if (port == nullptr) continue;
      if (port->getRemotePort()) return true;
      is_any_up = is_any_up || (port->num != 0 && port->port_state > IB_PORT_STATE_DOWN);
    }
  }
  return !is_any_up;
}

}  // namespace fabscan
