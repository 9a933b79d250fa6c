#ifndef FABSCAN_FABRICS_LINK_RATE_H
#define FABSCAN_FABRICS_LINK_RATE_H

#include <infiniband/fabscan/fabscan.h>

#include <optional>
#include <string_view>

namespace fabscan {

/// The width and speed that a link uses.
struct LinkRate {
  IBLinkWidth width = IB_UNKNOWN_LINK_WIDTH;
  IBLinkSpeed speed = IB_UNKNOWN_LINK_SPEED;  // of a lane

  std::string_view width_text() const;  // "4x"; empty if it is not known
  std::string_view speed_text() const;  // "NDR"; likewise
  /// Gigabits per second, as the architecture names the speeds: a lane of NDR has 100. 0 if one of
  /// the two is not known.
  double gbps() const;
};

/// From the active width and speeds. The second set of extended speeds precedes the first, and that
/// the other speeds.
LinkRate LinkRateOf(const SMP_PortInfo& info);
/// From PortInfo; without it, as a topology text reports.
LinkRate LinkRateOf(const Fabscan& fabscan, const IBPort& port);

/// The port's LID, from the same. Nothing if it was not collected.
std::optional<u_int16_t> LidOf(const Fabscan& fabscan, const IBPort& port);
/// The base LID of a port; on a switch that of its port 0.
std::optional<u_int16_t> BaseLidOf(const Fabscan& fabscan, const IBNode& node, const IBPort& port);

}  // namespace fabscan

#endif
