#include "fabrics/link_rate.h"

#include <gtest/gtest.h>

#include <string>

namespace fabscan {
namespace {

/// `4x NDR 400`.
std::string Text(u_int8_t width, u_int8_t speed, u_int8_t extended = 0, u_int8_t extended2 = 0) {
  SMP_PortInfo info = {};
  info.LinkWidthActive = width;
  info.LinkSpeedActive = speed;
  info.LinkSpeedExtActive = extended;
  info.LinkSpeedExtActive2 = extended2;
  const LinkRate rate = LinkRateOf(info);
  return std::string(rate.width_text()) + ' ' + std::string(rate.speed_text()) + ' ' +
         std::to_string(static_cast<int>(rate.gbps() * 10));
}

TEST(LinkRate, Widths) {
  EXPECT_EQ(Text(1, 1), "1x SDR 25");
  EXPECT_EQ(Text(2, 1), "4x SDR 100");
  EXPECT_EQ(Text(4, 1), "8x SDR 200");
  EXPECT_EQ(Text(8, 1), "12x SDR 300");
  EXPECT_EQ(Text(16, 1), "2x SDR 50");
  EXPECT_EQ(Text(3, 1), " SDR 0");  // several bits are no active width
}

TEST(LinkRate, SpeedsOfTheLaterSetsComeFirst) {
  EXPECT_EQ(Text(1, 2), "1x DDR 50");
  EXPECT_EQ(Text(1, 4), "1x QDR 100");
  EXPECT_EQ(Text(1, 4, 1), "1x FDR 140");
  EXPECT_EQ(Text(1, 4, 2), "1x EDR 250");
  EXPECT_EQ(Text(2, 4, 4), "4x HDR 2000");
  EXPECT_EQ(Text(2, 4, 8), "4x NDR 4000");
  EXPECT_EQ(Text(2, 4, 8, 1), "4x XDR 8000");
  EXPECT_EQ(Text(2, 0), "4x  0");
  EXPECT_EQ(Text(2, 1, 0, 2), "4x  0");  // a speed that has no name yet
}

TEST(LinkRate, WithoutPortInfoThePortsOwnValuesCount) {
  Fabscan fabscan;
  IBNode& node = fabscan.discovered_fabric.makeNode("S", 1, IB_SW_NODE, 1);
  IBPort& port_0 = fabscan.discovered_fabric.makePort(node, 0);
  IBPort& port = fabscan.discovered_fabric.makePort(node, 1);
  EXPECT_EQ(LidOf(fabscan, port), std::nullopt);
  EXPECT_EQ(LinkRateOf(fabscan, port).gbps(), 0);
  port.link_width = IB_LINK_WIDTH_4X;
  port.link_speed = IB_LINK_SPEED_HDR;
  port_0.lid = 7;
  EXPECT_EQ(LinkRateOf(fabscan, port).gbps(), 200);
  EXPECT_EQ(BaseLidOf(fabscan, node, port), 7);
  auto& info = fabscan.fabric_extended_info.put<SMP_PortInfo>(port);
  info.LID = 9;
  info.LinkWidthActive = 1;
  info.LinkSpeedActive = 1;
  EXPECT_EQ(LidOf(fabscan, port), 9);
  EXPECT_EQ(LinkRateOf(fabscan, port).gbps(), 2.5);
}

}  // namespace
}  // namespace fabscan
