#ifndef FABSCAN_FABRICS_LINK_RATE_H
#define FABSCAN_FABRICS_LINK_RATE_H

#include <infiniband/fabscan/fabscan_types.h>

#include <string_view>

namespace fabscan {

/// The width and speed that a link uses.
struct LinkRate {
  std::string_view width;  // "4x"; empty if it is not known
  std::string_view speed;  // of a lane: "NDR"; likewise
  unsigned lanes = 0;
  double lane_gbps = 0;  // gigabits per second, as the architecture names the speed: NDR is 100

  double gbps() const { return lanes * lane_gbps; }
};

/// From the active width and speeds of the port. The second set of extended speeds precedes the
/// first, and that the other speeds.
LinkRate LinkRateOf(const SMP_PortInfo& info);

}  // namespace fabscan

#endif
