#ifndef FABSCAN_DISCOVERY_LIVE_LOCAL_PORT_H
#define FABSCAN_DISCOVERY_LIVE_LOCAL_PORT_H

#include <string>

namespace fabscan {

/// A port of this host that can send queries.
struct LocalPort {
  std::string channel_adapter;
  int number = 0;
};

/// The port to use. For an empty name or number 0, selects the first port with an active link, or
/// else the first whose link is up. Throws DiscoveryError, with the list of ports, if the port does
/// not exist, is not an InfiniBand port, or cannot be used.
LocalPort ChooseLocalPort(const std::string& channel_adapter, unsigned number);

}  // namespace fabscan

#endif
