// Which line each function writes if one of its conditions does not hold, for nodes of every type,
// special or not, with few ports or many.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "testing/every_emitter.h"

namespace fabscan {
namespace {

/// What the conditions ask about a node.
struct Traits {
  IBNodeType type = IB_SW_NODE;
  IBSpecialPortType special = IB_NOT_SPECIAL_PORT;
  phys_port_t ports = 1;
  unsigned missing_bit = 0;  // the SMP capability that the node does not report; 0xFF: none
  u_int8_t congestion_version0 = 0;
  bool has_class_port_info = false;
};

struct Condition {
  bool (*holds)(const Traits&);
  const char* line;  // for a node named N
};

bool IsSwitch(const Traits& node) { return node.type == IB_SW_NODE; }
bool IsRouter(const Traits& node) { return node.type == IB_RTR_NODE; }
bool IsNotSpecial(const Traits& node) { return node.special == IB_NOT_SPECIAL_PORT; }
template <unsigned... kBits>
bool Supports(const Traits& node) {
  return ((node.missing_bit != kBits) && ...);
}

const Condition kSwitch = {IsSwitch, "// The node=N is not a switch"};
const Condition kReduction = {Supports<55>,
                              "// The node=N does not support Wren Reduction Management"};
const Condition kReductionClass = {[](const Traits& node) { return node.has_class_port_info; },
                                   "#error \"Failed to get WrenClassPortInfo mad for the node=N"};

struct Row {
  const char* function;
  std::vector<Condition> conditions;
};
const Row kRows[] = {
    {"setGMPCapability",
     {{IsNotSpecial, "// The node=N is special and it should not support GMP capabilities."}}},
    {"setFWInfo",
     {{IsNotSpecial, "// The node=N is special and it should not support VS General Info mad."}}},
    {"setHWInfo",
     {{IsNotSpecial, "// The node=N is special and it should not support VS General Info mad."}}},
    {"setSWInfo",
     {{IsNotSpecial, "// The node=N is special and it should not support VS GeneralInfo mad."}}},
    {"setExtendedNodeInfo",
     {{Supports<13>, "// The ExtendedNodeInfo mad is not supported on the node=N"}}},
    {"setExtendedPortInfo",
     {{Supports<9>, "// The ExtendedPortInfo mad is not supported on the node=N"}}},
    {"setArInfo", {kSwitch, {Supports<2>, "#error \"The node=N does not support AR\""}}},
    {"setRouterInfo", {{IsRouter, "// The node=N is not a router"}}},
    {"setExtendedSwitchInfo", {kSwitch}},
    {"setSwitchInfo", {kSwitch}},
    {"setPrivateLftInfo",
     {kSwitch, {Supports<0, 12>, "#error \"The node=N does not support Private LFT\""}}},
    {"setEnhancedCongestionInfo",
     {{IsNotSpecial,
       "// The node=N is special and it should not support Enhanced Congestion Control"},
      {Supports<44>, "#error \"The node=N does not support Enhanced Congestion Control\""}}},
    {"setCongestionSwitchGeneralSettings",
     {kSwitch,
      {[](const Traits& node) { return node.congestion_version0 != 0; },
       "#error \"The node=N does not support any version of Congestion Control attributes\""}}},
    {"setVSReductionManagerClassPortInfo", {kSwitch, kReduction}},
    {"setWrenReductionPortInfo", {kSwitch, kReduction, kReductionClass}},
    {"setWrenReductionInfo", {kSwitch, kReduction}},
    {"setWrenReductionCounters", {kSwitch, kReduction, kReductionClass}},
    {"setWrenPushReductionCounters", {kSwitch, kReduction, kReductionClass}},
};

void ExpectLines(const Traits& traits) {
  FabricBuilder fabric;
  IBNode& node = fabric.Node("N", traits.type, traits.ports);
  node.setSpecialNodeType(traits.special);
  capability_mask_t mask = {{~0U, ~0U, ~0U, ~0U}};
  if (traits.missing_bit != 0xFF) {
    mask.mask[traits.missing_bit / 32] &= ~(1U << traits.missing_bit % 32);
  }
  fabric.fabscan.capability_module.put(node, false, mask);
  fabric.Put<CC_EnhancedCongestionInfo>(node).ver0 = traits.congestion_version0;
  if (traits.has_class_port_info) fabric.Put<IB_ClassPortInfo>(node);

  for (const Row& row : kRows) {
    const std::string body =
        fabric.Body(generator::FindGeneratedFunction(row.function)->emitter, node);
    const char* expected = nullptr;
    for (const Condition& condition : row.conditions) {
      if (expected == nullptr && !condition.holds(traits)) expected = condition.line;
    }
    if (expected != nullptr) {
      ASSERT_EQ(body, expected) << row.function;
      continue;
    }
    for (const Condition& condition : row.conditions) {
      ASSERT_NE(body, condition.line) << row.function;
    }
  }
}

TEST(Conditions, WriteTheirLinesForEveryNode) {
  Traits node;
  for (const auto type : {IB_SW_NODE, IB_RTR_NODE, IB_CA_NODE, IB_UNKNOWN_NODE_TYPE}) {
    for (const auto special :
         {IB_NOT_SPECIAL_PORT, IB_SPECIAL_PORT_AN, IB_SPECIAL_PORT_ETH_GATEWAY}) {
      for (const unsigned ports : {1U, 64U, 65U, 255U}) {
        for (const unsigned missing_bit : {0U, 2U, 9U, 12U, 13U, 44U, 55U, 0xFFU}) {
          node.type = type;
          node.special = special;
          node.ports = static_cast<phys_port_t>(ports);
          node.missing_bit = missing_bit;
          node.has_class_port_info = !node.has_class_port_info;
          ExpectLines(node);
          node.congestion_version0 = node.congestion_version0 == 0 ? 0xFF : 0;
          ExpectLines(node);
          if (HasFatalFailure()) return;
        }
      }
    }
  }
}

}  // namespace
}  // namespace fabscan
