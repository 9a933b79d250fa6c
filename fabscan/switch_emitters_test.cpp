// The functions that only a switch has.

#include <gtest/gtest.h>

#include <string>

#include "generated_functions.h"
#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

using generator::FindGeneratedFunction;

constexpr const char* kSwitchFunctions[] = {
    "setArInfo",
    "setExtendedSwitchInfo",
    "setSwitchInfo",
    "setPrivateLftInfo",
    "setCongestionSwitchGeneralSettings",
    "setVSReductionManagerClassPortInfo",
    "setWrenReductionPortInfo",
    "setWrenReductionInfo",
    "setWrenReductionCounters",
    "setWrenPushReductionCounters",
};

class SwitchFunction : public ::testing::TestWithParam<const char*> {
 protected:
  /// What the function is for a node that has every record and supports everything.
  std::string BodyOf(IBNode& node) {
    fabric_.fabscan.capability_module.put(node, false, {{~0U, ~0U, ~0U, ~0U}});
    Put<SMP_SwitchInfo, SMP_ExtendedSwitchInfo, ib_private_lft_info, adaptive_routing_info,
        CC_EnhancedCongestionInfo, CC_CongestionSwitchGeneralSettings, IB_ClassPortInfo,
        WrenReductionInfo>(node);
    fabric_.Put<CC_EnhancedCongestionInfo>(node).ver0 = 1;
    node.Ports[2]->setSpecialPort(true);
    for (const IBPort* port : {node.Ports[1], node.Ports[2]}) {
      Put<WrenReductionPortInfo, WrenPushReductionCounters>(*port);
      auto& store = fabric_.fabscan.fabric_extended_info;
      store.putMonitors(*port, 0);
      store.putMonitors(*port, 1);
      store.putCounters(*port, 0);
    }
    return fabric_.Body(FindGeneratedFunction(GetParam())->emitter, node);
  }

  FabricBuilder fabric_;

 private:
  template <class... Records, class Owner>
  void Put(const Owner& owner) {
    (fabric_.Put<Records>(owner), ...);
  }
};

INSTANTIATE_TEST_SUITE_P(Emitters, SwitchFunction, ::testing::ValuesIn(kSwitchFunctions),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_P(SwitchFunction, HasABlockForASwitch) {
  EXPECT_NE(BodyOf(fabric_.Switch("S1", 2)).find("mad_buffer"), std::string::npos);
}

TEST_P(SwitchFunction, IsACommentForEveryOtherNode) {
  EXPECT_EQ(BodyOf(fabric_.Adapter("H1", 2)), "// The node=H1 is not a switch");
  EXPECT_EQ(BodyOf(fabric_.Router("R1", 2)), "// The node=R1 is not a switch");
  EXPECT_EQ(BodyOf(fabric_.Node("U1", IB_UNKNOWN_NODE_TYPE, 2)), "// The node=U1 is not a switch");
  IBNode& special = fabric_.Special("A1", IB_SPECIAL_PORT_AN, 2);
  EXPECT_EQ(BodyOf(special), "// The node=A1 is not a switch");
}

}  // namespace
}  // namespace fabscan
