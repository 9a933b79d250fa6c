#include "fabrics/link_rate.h"

#include "model/words.h"

namespace fabscan {

namespace {

struct ActiveSpeed {
  u_int8_t bit;
  IBLinkSpeed speed;
};
constexpr ActiveSpeed kSpeeds[] = {
    {1, IB_LINK_SPEED_SDR}, {2, IB_LINK_SPEED_DDR}, {4, IB_LINK_SPEED_QDR}};
constexpr ActiveSpeed kExtendedSpeeds[] = {
    {1, IB_LINK_SPEED_FDR}, {2, IB_LINK_SPEED_EDR}, {4, IB_LINK_SPEED_HDR}, {8, IB_LINK_SPEED_NDR}};
constexpr ActiveSpeed kExtendedSpeeds2[] = {{1, IB_LINK_SPEED_XDR}};

template <std::size_t N>
IBLinkSpeed SpeedOf(const ActiveSpeed (&speeds)[N], u_int8_t active) {
  for (const ActiveSpeed& speed : speeds) {
    if (speed.bit == active) return speed.speed;
  }
  return IB_UNKNOWN_LINK_SPEED;
}

unsigned LanesOf(IBLinkWidth width) {
  switch (width) {
    case IB_LINK_WIDTH_1X:
      return 1;
    case IB_LINK_WIDTH_2X:
      return 2;
    case IB_LINK_WIDTH_4X:
      return 4;
    case IB_LINK_WIDTH_8X:
      return 8;
    case IB_LINK_WIDTH_12X:
      return 12;
    case IB_UNKNOWN_LINK_WIDTH:
      break;
  }
  return 0;
}

constexpr double kLaneGbps[] = {0, 2.5, 5, 10, 14, 25, 50, 100, 200};  // by IBLinkSpeed

}  // namespace

std::string_view LinkRate::width_text() const { return WordFor(kLinkWidthWords, width); }
std::string_view LinkRate::speed_text() const { return WordFor(kLinkSpeedWords, speed); }
double LinkRate::gbps() const { return LanesOf(width) * kLaneGbps[speed]; }

LinkRate LinkRateOf(const SMP_PortInfo& info) {
  LinkRate rate;
  const auto width = static_cast<IBLinkWidth>(info.LinkWidthActive);
  if (LanesOf(width) != 0) rate.width = width;
  rate.speed = info.LinkSpeedExtActive2 != 0  ? SpeedOf(kExtendedSpeeds2, info.LinkSpeedExtActive2)
               : info.LinkSpeedExtActive != 0 ? SpeedOf(kExtendedSpeeds, info.LinkSpeedExtActive)
                                              : SpeedOf(kSpeeds, info.LinkSpeedActive);
  return rate;
}

LinkRate LinkRateOf(const Fabscan& fabscan, const IBPort& port) {
  const SMP_PortInfo* info = fabscan.fabric_extended_info.getSMPPortInfo(port.createIndex);
  return info == nullptr ? LinkRate{port.link_width, port.link_speed} : LinkRateOf(*info);
}

std::optional<u_int16_t> LidOf(const Fabscan& fabscan, const IBPort& port) {
  const SMP_PortInfo* info = fabscan.fabric_extended_info.getSMPPortInfo(port.createIndex);
  if (info != nullptr) return info->LID;
  if (port.lid != 0) return port.lid;
  return std::nullopt;
}

std::optional<u_int16_t> BaseLidOf(const Fabscan& fabscan, const IBNode& node, const IBPort& port) {
  const IBPort* managed = node.type == IB_SW_NODE ? node.getPort(0) : &port;
  return managed == nullptr ? std::nullopt : LidOf(fabscan, *managed);
}

}  // namespace fabscan
