#include "attribute_block.h"
#include "capability_bits.h"
#include "fabscan_sim_info_dump.h"
#include "node_gates.h"

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

// The quotes of the "Failed to get" lines stay open.

void SimInfoDumpCPP::GenerateEnhancedCongestionInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (node.isSpecialNode()) {
    WriteDiagnostic(writer, "// The node=", node.name,
                    " is special and it should not support Enhanced Congestion Control");
    return;
  }
  if (!m_fabscan.capability_module.IsSupportedSMPCapability(&node, kIsDCQCNSupported)) {
    WriteDiagnostic(writer, "#error \"The node=", node.name,
                    " does not support Enhanced Congestion Control\"");
    return;
  }
  const CC_EnhancedCongestionInfo* record =
      m_fabscan.fabric_extended_info.getCCEnhancedCongestionInfo(node.createIndex);
  if (record == nullptr) {
    WriteDiagnostic(
        writer, "#error \"Failed to get CC_EnhancedCongestionInfo mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kEnhancedCongestionInfo, kEnhancedCongestionInfoFields>(writer, *record);
}

void SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings(std::ostream& out,
                                                             const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesAsNotSwitch(writer, node)) return;
  const CC_EnhancedCongestionInfo* info =
      m_fabscan.fabric_extended_info.getCCEnhancedCongestionInfo(node.createIndex);
  if (info == nullptr) {
    WriteDiagnostic(writer,
                    "#error \"Failed to get CC_EnhancedCongestionInfo mad for the node=", node.name,
                    ". Cannot check supported version of Congestion Control attributes");
    return;
  }
  // Version 1 alone does not count.
  if (info->ver0 == 0) {
    WriteDiagnostic(writer, "#error \"The node=", node.name,
                    " does not support any version of Congestion Control attributes\"");
    return;
  }
  const CC_CongestionSwitchGeneralSettings* record =
      m_fabscan.fabric_extended_info.getCCSwitchGeneralSettings(node.createIndex);
  if (record == nullptr) {
    WriteDiagnostic(
        writer,
        "#error \"Failed to get CC_CongestionSwitchGeneralSettings mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kSwitchGeneralSettings, kSwitchGeneralSettingsFields>(writer, *record);
}
