#ifndef FABSCAN_DISCOVERY_LIVE_LOCAL_PORT_H
#define FABSCAN_DISCOVERY_LIVE_LOCAL_PORT_H

#include <string>

namespace fabscan {

/// A port of this host that queries can leave by.
struct LocalPort {
  std::string channel_adapter;
  int number = 0;
};

/// The port that the user means; an empty name or number 0 leaves the choice to us: the first port
/// whose link is active, or else the first whose link is up. Throws DiscoveryError, with the ports
/// that there are, when there is no such port, it is no InfiniBand port, or may not be used.
LocalPort ChooseLocalPort(const std::string& channel_adapter, unsigned number);

}  // namespace fabscan

#endif
