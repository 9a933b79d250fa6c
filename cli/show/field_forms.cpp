#include "cli/show/field_forms.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

#include "fabscan/fabscan_sim_info_dump.h"

namespace fabscan {

namespace {

struct Meaning {
  u_int64_t value;
  const char* text;
};

constexpr Meaning kMtus[] = {{1, "256"}, {2, "512"}, {3, "1024"}, {4, "2048"}, {5, "4096"}};
constexpr Meaning kNodeTypes[] = {{1, "CA"}, {2, "SW"}, {3, "RTR"}};
constexpr Meaning kPortStates[] = {
    {0, "no change"}, {1, "DOWN"}, {2, "INIT"}, {3, "ARM"}, {4, "ACTIVE"}};
constexpr Meaning kPhysicalStates[] = {{0, "no change"},      {1, "sleep"},    {2, "polling"},
                                       {3, "disabled"},       {4, "training"}, {5, "link up"},
                                       {6, "error recovery"}, {7, "phy test"}};
constexpr Meaning kDownStates[] = {{0, "no change"}, {1, "sleep"}, {2, "polling"}};
constexpr Meaning kVirtualLanes[] = {
    {1, "VL0"}, {2, "VL0-1"}, {3, "VL0-3"}, {4, "VL0-7"}, {5, "VL0-14"}};
constexpr Meaning kWidths[] = {{1, "1x"}, {2, "4x"}, {4, "8x"}, {8, "12x"}, {16, "2x"}};
constexpr Meaning kSpeeds[] = {{1, "SDR"}, {2, "DDR"}, {4, "QDR"}};
constexpr Meaning kExtendedSpeeds[] = {{1, "FDR"}, {2, "EDR"}, {4, "HDR"}, {8, "NDR"}};
constexpr Meaning kExtendedSpeeds2[] = {{1, "XDR"}};
// For one lane.
constexpr Meaning kActiveSpeeds[] = {{1, "2.5 Gb/s, SDR"}, {2, "5 Gb/s, DDR"}, {4, "10 Gb/s, QDR"}};
constexpr Meaning kActiveExtendedSpeeds[] = {{0, "no extended speed"},
                                             {1, "14.0625 Gb/s, FDR"},
                                             {2, "25.78125 Gb/s, EDR"},
                                             {4, "53.125 Gb/s, HDR"},
                                             {8, "106.25 Gb/s, NDR"}};
constexpr Meaning kActiveExtendedSpeeds2[] = {{0, "no extended speed"}, {1, "212.5 Gb/s, XDR"}};

/// The meaning of the value.
template <const auto& kMeanings>
std::string Single(u_int64_t value) {
  for (const Meaning& meaning : kMeanings) {
    if (meaning.value == value) return meaning.text;
  }
  return {};
}

/// The meanings of the bits of the value.
template <const auto& kMeanings>
std::string Several(u_int64_t value) {
  std::string text;
  for (const Meaning& meaning : kMeanings) {
    if ((value & meaning.value) != 0)
      text += fmt::format("{}{}", text.empty() ? "" : ", ", meaning.text);
  }
  return text;
}

/// The same for a field in which `kAll` (all bits) means everything that the port supports.
template <const auto& kMeanings, u_int64_t kAll>
std::string Enabled(u_int64_t value) {
  return value == kAll ? "all supported" : Several<kMeanings>(value);
}

}  // namespace

const std::vector<FieldForm>& AllFieldForms() {
  constexpr bool kHexadecimal = true;
  constexpr bool kDecimal = false;
  // clang-format off
  static const std::vector<FieldForm> forms = {
      {"SMP_NodeInfo", "NodeType", kDecimal, Single<kNodeTypes>},
      {"SMP_NodeInfo", "DeviceID", kHexadecimal},
      {"SMP_NodeInfo", "revision", kHexadecimal},
      {"SMP_NodeInfo", "VendorID", kHexadecimal},
      {"SMP_RouterInfo", "CapabilityMask", kHexadecimal},
      {"SMP_RouterInfo", "table_changes_bitmask", kHexadecimal},
      {"adaptive_routing_info", "enable_by_sl_mask", kHexadecimal},
      {"adaptive_routing_info", "by_transport_disable", kHexadecimal},
      {"adaptive_routing_info", "enable_by_sl_mask_hbf", kHexadecimal},
      {"adaptive_routing_info", "enable_by_vl_mask", kHexadecimal},
      {"adaptive_routing_info", "enable_by_vl_mask_hbf", kHexadecimal},
      {"HWInfo_Block_Element", "DeviceID", kHexadecimal},
      {"HWInfo_Block_Element", "DeviceHWRevision", kHexadecimal},
      {"HWInfo_Block_Element", "hw_dev_id", kHexadecimal},
      {"FWInfo_Block_Element", "BuildID", kHexadecimal},
      {"FWInfo_Block_Element", "INI_File_Version", kHexadecimal},
      {"SWInfo_Block_Element", "Reserved_Dword", kHexadecimal},
      {"GeneralInfoCapabilityMask", "capability0", kHexadecimal},
      {"GeneralInfoCapabilityMask", "capability1", kHexadecimal},
      {"GeneralInfoCapabilityMask", "capability2", kHexadecimal},
      {"GeneralInfoCapabilityMask", "capability3", kHexadecimal},
      {"CC_EnhancedCongestionInfo", "CC_Capability_Mask", kHexadecimal},
      {"IB_ClassPortInfo", "CapMsk", kHexadecimal},
      {"IB_ClassPortInfo", "CapMsk2", kHexadecimal},
      {"IB_ClassPortInfo", "RedirectPKey", kHexadecimal},
      {"IB_ClassPortInfo", "RedirectQP", kHexadecimal},
      {"IB_ClassPortInfo", "TrapPKey", kHexadecimal},
      {"IB_ClassPortInfo", "TrapQP", kHexadecimal},
      {"WrenReductionInfo", "capability_mask", kHexadecimal},
      {"SMP_PortInfo", "CapMsk", kHexadecimal, nullptr, &SimInfoData::PortInfoCapMaskBits},
      {"SMP_PortInfo", "DiagCode", kHexadecimal},
      {"SMP_PortInfo", "LinkWidthEnabled", kDecimal, Enabled<kWidths, 255>},
      {"SMP_PortInfo", "LinkWidthSup", kDecimal, Several<kWidths>},
      {"SMP_PortInfo", "LinkWidthActive", kDecimal, Single<kWidths>},
      {"SMP_PortInfo", "LinkSpeedSup", kDecimal, Several<kSpeeds>},
      {"SMP_PortInfo", "PortState", kDecimal, Single<kPortStates>},
      {"SMP_PortInfo", "PortPhysicalState", kDecimal, Single<kPhysicalStates>},
      {"SMP_PortInfo", "LinkDownDefaultState", kDecimal, Single<kDownStates>},
      {"SMP_PortInfo", "LinkSpeedActive", kDecimal, Single<kActiveSpeeds>},
      {"SMP_PortInfo", "LinkSpeedEnabled", kDecimal, Enabled<kSpeeds, 15>},
      {"SMP_PortInfo", "NeighborMTU", kDecimal, Single<kMtus>},
      {"SMP_PortInfo", "VLCap", kDecimal, Single<kVirtualLanes>},
      {"SMP_PortInfo", "MTUCap", kDecimal, Single<kMtus>},
      {"SMP_PortInfo", "OperationalVLs", kDecimal, Single<kVirtualLanes>},
      {"SMP_PortInfo", "LinkSpeedExtActive2", kDecimal, Single<kActiveExtendedSpeeds2>},
      {"SMP_PortInfo", "LinkSpeedExtSup2", kDecimal, Several<kExtendedSpeeds2>},
      {"SMP_PortInfo", "LinkSpeedExtEnabled2", kDecimal, Several<kExtendedSpeeds2>},
      {"SMP_PortInfo", "LinkSpeedExtActive", kDecimal, Single<kActiveExtendedSpeeds>},
      {"SMP_PortInfo", "LinkSpeedExtSup", kDecimal, Several<kExtendedSpeeds>},
      {"SMP_PortInfo", "LinkSpeedExtEnabled", kDecimal, Enabled<kExtendedSpeeds, 31>},
      {"SMP_PortInfo", "CapMsk2", kHexadecimal, nullptr, &SimInfoData::PortInfoCapMask2Bits},
      {"SMP_PortInfoExtended", "CapMsk", kHexadecimal},
      {"SMP_PortInfoExtended", "FDRFECModeSupported", kHexadecimal},
      {"SMP_PortInfoExtended", "EDRFECModeSupported", kHexadecimal},
      {"SMP_PortInfoExtended", "FDRFECModeEnabled", kHexadecimal},
      {"SMP_PortInfoExtended", "HDRFECModeSupported", kHexadecimal},
      {"SMP_PortInfoExtended", "EDRFECModeEnabled", kHexadecimal},
      {"SMP_PortInfoExtended", "NDRFECModeSupported", kHexadecimal},
      {"SMP_PortInfoExtended", "HDRFECModeEnabled", kHexadecimal},
      {"SMP_PortInfoExtended", "NDRFECModeEnabled", kHexadecimal},
      {"SMP_TarnExtPortInfo", "LinkSpeedSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "CapabilityMask", kHexadecimal},
      {"SMP_TarnExtPortInfo", "FDR10FECModeSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "FDRFECModeSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "EDR20FECModeSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "EDRFECModeSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "FDR10RetranSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "FDRRetranSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "EDR20RetranSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "EDRRetranSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "SpecialPortCapabilityMask", kHexadecimal},
      {"SMP_TarnExtPortInfo", "HDRFECModeSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "NDRFECModeSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "XDRFECModeSupported", kHexadecimal},
      {"SMP_TarnExtPortInfo", "LinkSpeedEnabled", kHexadecimal},
      {"WrenReductionPortInfo", "capability_mask", kHexadecimal},
      {"WrenReductionCounters", "counter_select", kHexadecimal},
      {"WrenPushReductionCounters", "counter_select", kHexadecimal},
  };
  // clang-format on
  return forms;
}

FieldForm FormOf(std::string_view record, std::string_view field) {
  const std::vector<FieldForm>& forms = AllFieldForms();
  const auto found = std::find_if(forms.begin(), forms.end(), [&](const FieldForm& form) {
    return form.record == record && form.field == field;
  });
  return found == forms.end() ? FieldForm{record, field} : *found;
}

}  // namespace fabscan
