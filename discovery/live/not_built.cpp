#include "discovery/live/live_discovery.h"

namespace fabscan {

LiveFindings DiscoverLive(const LiveOptions& /*options*/) {
  throw DiscoveryError(
      "this fabscan was built without the InfiniBand libraries; install libibnetdisc-dev, "
      "libibmad-dev and libibumad-dev, then configure and build it again");
}

}  // namespace fabscan
