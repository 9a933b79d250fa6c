#include "discovery/payload_decoder.h"

namespace fabscan {

namespace {

constexpr u_int32_t kCapabilityMask2Supported = 1U << 15U;  // of CapMsk
constexpr u_int32_t kPortInfoExtendedSupported = 1U << 1U;  // of CapMsk2
constexpr u_int8_t kLinkUp = 5;                             // of PortPhysicalState

constexpr Place PlaceOf(const RecordTable& table, std::string_view name) {
  return FindField(table, name)->place;
}

constexpr Place kCapMsk = PlaceOf(TableOf<SMP_PortInfo>::value, "CapMsk");
constexpr Place kCapMsk2 = PlaceOf(TableOf<SMP_PortInfo>::value, "CapMsk2");

bool HasCapability2(u_int64_t mask, u_int64_t mask2, u_int32_t bit) {
  return (mask & kCapabilityMask2Supported) != 0 && (mask2 & bit) != 0;
}

}  // namespace

std::string_view DescriptionText(std::string_view payload) {
  const std::string_view text = payload.substr(0, payload.find('\0'));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

bool HasPortInfoExtended(const Payload& port_info) {
  return HasCapability2(ReadBits(port_info.data(), kCapMsk), ReadBits(port_info.data(), kCapMsk2),
                        kPortInfoExtendedSupported);
}

bool IsLinked(const SMP_PortInfo& info) { return info.PortPhysicalState == kLinkUp; }

IBNodeType NodeTypeOf(unsigned wire_value) {
  switch (wire_value) {
    case IB_CA_NODE:
      return IB_CA_NODE;
    case IB_SW_NODE:
      return IB_SW_NODE;
    case IB_RTR_NODE:
      return IB_RTR_NODE;
    default:
      return IB_UNKNOWN_NODE_TYPE;
  }
}

IBPortState PortStateOf(unsigned wire_value) {
  return wire_value <= IB_PORT_STATE_ACTIVE ? static_cast<IBPortState>(wire_value)
                                            : IB_UNKNOWN_PORT_STATE;
}

}  // namespace fabscan
