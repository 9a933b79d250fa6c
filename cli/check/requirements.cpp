#include "cli/check/requirements.h"

#include <algorithm>

#include "fabscan/capability_bits.h"
#include "fabscan/fabscan_sim_info_dump.h"

namespace fabscan {

namespace {

using Of = AttributeOf;
using Mask = GatingMask;
using On = RecordOwner;
using namespace generator;  // the bits

// clang-format off

const NeededRecord kReductionClass = {On::kNode, "IB_ClassPortInfo"};

const std::vector<u_int8_t> kReduction = {kIsWrenReductionManagementSupported};
const std::vector<u_int8_t> kPrivateLFT = {kIsPrivateLinearForwardingSupported,
                                           kIsPortSLToPrivateLFTMapSupported};

const std::vector<Requirement> kRequirements = {
    {"setNodeInfo",               Of::kAllNodes,   Mask::kNone, {}, {{On::kNode, "SMP_NodeInfo"}}},
    {"setPortInfo",               Of::kAllNodes,   Mask::kNone, {}, {{On::kPort0, "SMP_PortInfo"},
                                                                     {On::kRegularPort, "SMP_PortInfo"}}},
    {"setGMPCapability",          Of::kNotSpecial, Mask::kGMP,  {}, {}},
    {"setSMPCapability",          Of::kAllNodes,   Mask::kSMP,  {}, {}},
    {"setFWInfo",                 Of::kNotSpecial, Mask::kNone, {}, {{On::kNode, "VendorSpec_GeneralInfo"}}},
    {"setHWInfo",                 Of::kNotSpecial, Mask::kNone, {}, {{On::kNode, "VendorSpec_GeneralInfo"}}},
    {"setSWInfo",                 Of::kNotSpecial, Mask::kNone, {}, {{On::kNode, "VendorSpec_GeneralInfo"}}},
    {"setPortInfoExtended",       Of::kAllNodes,   Mask::kNone, {}, {{On::kAnyPort, "SMP_PortInfoExtended"}}},
    {"setExtendedNodeInfo",       Of::kAllNodes,   Mask::kSMP,  {kIsExtendedNodeInfoSupported},
                                                                {{On::kNode, "ib_extended_node_info"}}},
    {"setExtendedPortInfo",       Of::kAllNodes,   Mask::kSMP,  {kIsExtendedPortInfoSupported},
                                                                {{On::kRegularPort, "SMP_TarnExtPortInfo"}}},
    {"setArInfo",                 Of::kSwitches,   Mask::kSMP,  {kIsAdaptiveRoutingRev1Supported},
                                                                {{On::kNode, "adaptive_routing_info"}}},
    {"setRouterInfo",             Of::kRouters,    Mask::kNone, {}, {{On::kNode, "SMP_RouterInfo"}}},
    {"setExtendedSwitchInfo",     Of::kSwitches,   Mask::kNone, {}, {{On::kNode, "SMP_ExtendedSwitchInfo"}}},
    {"setSwitchInfo",             Of::kSwitches,   Mask::kNone, {}, {{On::kNode, "SMP_SwitchInfo"}}},
    {"setPrivateLftInfo",         Of::kSwitches,   Mask::kSMP,  kPrivateLFT,
                                                                {{On::kNode, "ib_private_lft_info"}}},
    {"setEnhancedCongestionInfo", Of::kNotSpecial, Mask::kSMP,  {kIsDCQCNSupported},
                                                                {{On::kNode, "CC_EnhancedCongestionInfo"}}},
    {"setCongestionSwitchGeneralSettings",
                                  Of::kSwitches,   Mask::kNone, {},
        {{On::kNode, "CC_EnhancedCongestionInfo", NeededRecord::kNoMonitor, "ver0"},
         {On::kNode, "CC_CongestionSwitchGeneralSettings"}}},
    {"setVSReductionManagerClassPortInfo",
                                  Of::kSwitches,   Mask::kSMP,  kReduction, {kReductionClass}},
    {"setWrenReductionPortInfo",  Of::kSwitches,   Mask::kSMP,  kReduction,
        {kReductionClass, {On::kRegularPort, "WrenReductionPortInfo"}}},
    {"setWrenReductionInfo",      Of::kSwitches,   Mask::kSMP,  kReduction,
        {{On::kNode, "WrenReductionInfo"}}},
    {"setWrenReductionCounters",  Of::kSwitches,   Mask::kSMP,  kReduction,
        {kReductionClass, {On::kRegularPort, "WrenReductionCounters", 0},
                          {On::kMarkedPort,  "WrenReductionCounters", 0}}},
    {"setWrenPushReductionCounters",
                                  Of::kSwitches,   Mask::kSMP,  kReduction,
        {kReductionClass, {On::kRegularPort, "WrenPushReductionCounters", 1},
                          {On::kMarkedPort,  "WrenPushReductionCounters", 1}}},
};

// clang-format on

}  // namespace

const std::vector<Requirement>& Requirements() { return kRequirements; }

const Requirement* FindRequirement(std::string_view function) {
  const auto found = std::find_if(kRequirements.begin(), kRequirements.end(),
                                  [&](const Requirement& row) { return row.function == function; });
  return found == kRequirements.end() ? nullptr : &*found;
}

std::string_view MaskKey(GatingMask mask) {
  switch (mask) {
    case GatingMask::kSMP:
      return "smpCapabilityMask";
    case GatingMask::kGMP:
      return "gmpCapabilityMask";
    case GatingMask::kNone:
      break;
  }
  return {};
}

std::string_view BitName(GatingMask mask, u_int8_t bit) {
  const auto& names =
      mask == GatingMask::kGMP ? SimInfoData::GMPCapMaskBits : SimInfoData::SMPCapMaskBits;
  const char* name = bit < names.size() ? names[bit] : nullptr;
  return name == nullptr ? "unnamed" : name;
}

}  // namespace fabscan
