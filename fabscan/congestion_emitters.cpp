#include "body.h"
#include "fabscan_sim_info_dump.h"

namespace fabscan::generator {
namespace {

// clang-format off

constexpr Target kEnhancedCongestionInfo = {"CC_EnhancedCongestionInfo",
                                            "&m_node->enhancedCongestionInfo"};
constexpr Field<CC_EnhancedCongestionInfo> kEnhancedCongestionInfoFields[] = {
    FABSCAN_FIELD(CC_EnhancedCongestionInfo, ver1),
    FABSCAN_FIELD(CC_EnhancedCongestionInfo, ver0),
    FABSCAN_FIELD(CC_EnhancedCongestionInfo, CC_Capability_Mask),
};

constexpr Target kSwitchGeneralSettings = {"CC_CongestionSwitchGeneralSettings",
                                           "&m_node->congSWGeneralInfo"};
constexpr Field<CC_CongestionSwitchGeneralSettings> kSwitchGeneralSettingsFields[] = {
    FABSCAN_FIELD(CC_CongestionSwitchGeneralSettings, cap_total_buffer_size),
    FABSCAN_FIELD(CC_CongestionSwitchGeneralSettings, cap_cc_profile_step_size),
};

// clang-format on

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

// The quotes of the "Failed to get" lines stay open.
// clang-format off

void SimInfoDumpCPP::GenerateEnhancedCongestionInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(IsNotSpecial,
                        "// The node=$ is special and it should not support Enhanced Congestion Control")
      .Unless(Supports<kIsDCQCNSupported>,
                        "#error \"The node=$ does not support Enhanced Congestion Control\"")
      .Block<kEnhancedCongestionInfo, kEnhancedCongestionInfoFields>(FABSCAN_STORED(getCCEnhancedCongestionInfo),
                        "#error \"Failed to get CC_EnhancedCongestionInfo mad for the node=$");
}

void SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings(std::ostream& out, const IBNode& node) const {
  const CC_EnhancedCongestionInfo* info = nullptr;
  const auto has_version_0 = [&info](Fabscan&, const IBNode&) { return info->ver0 != 0; };  // 1 does not count
  Body(out, m_fabscan, node)
      .Unless(IsSwitch, "// The node=$ is not a switch")
      .Need(info, FABSCAN_STORED(getCCEnhancedCongestionInfo),
                        "#error \"Failed to get CC_EnhancedCongestionInfo mad for the node=$. "
                        "Cannot check supported version of Congestion Control attributes")
      .Unless(has_version_0,
                        "#error \"The node=$ does not support any version of Congestion Control attributes\"")
      .Block<kSwitchGeneralSettings, kSwitchGeneralSettingsFields>(FABSCAN_STORED(getCCSwitchGeneralSettings),
                        "#error \"Failed to get CC_CongestionSwitchGeneralSettings mad for the node=$");
}

// clang-format on
