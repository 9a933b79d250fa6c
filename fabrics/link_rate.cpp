#include "fabrics/link_rate.h"

namespace fabscan {

namespace {

struct Width {
  u_int8_t bit;
  std::string_view name;
  unsigned lanes;
};
constexpr Width kWidths[] = {
    {1, "1x", 1}, {2, "4x", 4}, {4, "8x", 8}, {8, "12x", 12}, {16, "2x", 2},
};

struct Speed {
  u_int8_t bit;
  std::string_view name;
  double gbps;
};
constexpr Speed kSpeeds[] = {{1, "SDR", 2.5}, {2, "DDR", 5}, {4, "QDR", 10}};
constexpr Speed kExtendedSpeeds[] = {
    {1, "FDR", 14}, {2, "EDR", 25}, {4, "HDR", 50}, {8, "NDR", 100}};
constexpr Speed kExtendedSpeeds2[] = {{1, "XDR", 200}};

template <std::size_t N>
void SetSpeed(LinkRate& rate, const Speed (&speeds)[N], u_int8_t active) {
  for (const Speed& speed : speeds) {
    if (speed.bit != active) continue;
    rate.speed = speed.name;
    rate.lane_gbps = speed.gbps;
  }
}

}  // namespace

LinkRate LinkRateOf(const SMP_PortInfo& info) {
  LinkRate rate;
  for (const Width& width : kWidths) {
    if (width.bit != info.LinkWidthActive) continue;
    rate.width = width.name;
    rate.lanes = width.lanes;
  }
  if (info.LinkSpeedExtActive2 != 0) {
    SetSpeed(rate, kExtendedSpeeds2, info.LinkSpeedExtActive2);
  } else if (info.LinkSpeedExtActive != 0) {
    SetSpeed(rate, kExtendedSpeeds, info.LinkSpeedExtActive);
  } else {
    SetSpeed(rate, kSpeeds, info.LinkSpeedActive);
  }
  return rate;
}

}  // namespace fabscan
