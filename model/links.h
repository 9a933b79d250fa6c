#ifndef FABSCAN_MODEL_LINKS_H
#define FABSCAN_MODEL_LINKS_H

#include <infiniband/tessel/Fabric.h>

#include <functional>
#include <optional>
#include <string>

namespace fabscan {

/// A port whose remote port contradicts another port, and how.
struct LinkContradiction {
  const IBNode* node;
  const IBPort* port;
  std::string text;  // with the remedy
};

/// The first contradiction, in the order in which the nodes were created. A link is named by both
/// of its ports, or by one of them if the other is not in the fabric. `is_complete` tells for which
/// nodes all ports are there; the ports of others are not compared.
std::optional<LinkContradiction> FindLinkContradiction(
    const IBFabric& fabric, const std::function<bool(const IBNode&)>& is_complete = {});

/// The port at the other end; null if there is none, or the fabric does not have it.
const IBPort* RemotePortIn(const IBFabric& fabric, const IBPort& port);

/// False if ports are up, and no port has a link: links were not collected, as in a snapshot of
/// version 1.
bool KnowsLinks(const IBFabric& fabric);

}  // namespace fabscan

#endif
