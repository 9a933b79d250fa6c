#include "discovery/payload_decoder.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "discovery/attribute_fields.h"

namespace fabscan {

namespace {

constexpr u_int32_t kCapabilityMask2Supported = 1U << 15U;  // of CapMsk
constexpr u_int32_t kPortInfoExtendedSupported = 1U << 1U;  // of CapMsk2
constexpr u_int32_t kExtendedSpeeds2Supported = 1U << 11U;  // of CapMsk2
constexpr u_int8_t kLinkUp = 5;                             // of PortPhysicalState

/// Spelt out field by field, so that the compiler knows each one's place.
template <const auto& kFields, class Record, std::size_t... I>
void DecodeEach(const Payload& payload, Record& record, std::index_sequence<I...>) {
  (Decode(payload, kFields[I], record), ...);
}

template <class Record, const auto& kFields>
Record DecodeAll(const Payload& payload) {
  Record record = {};
  DecodeEach<kFields>(payload, record, std::make_index_sequence<std::size(kFields)>());
  return record;
}

template <class Record, std::size_t kCount>
constexpr const WireField<Record>& FieldNamed(const WireField<Record> (&fields)[kCount],
                                              std::string_view name) {
  std::size_t i = 0;
  while (fields[i].name != name) ++i;
  return fields[i];
}

bool HasCapability2(const SMP_PortInfo& info, u_int32_t bit) {
  return (info.CapMsk & kCapabilityMask2Supported) != 0 && (info.CapMsk2 & bit) != 0;
}

}  // namespace

SMP_NodeInfo DecodeNodeInfo(const Payload& payload) {
  return DecodeAll<SMP_NodeInfo, kNodeInfoFields>(payload);
}

SMP_SwitchInfo DecodeSwitchInfo(const Payload& payload) {
  return DecodeAll<SMP_SwitchInfo, kSwitchInfoFields>(payload);
}

SMP_PortInfo DecodePortInfo(const Payload& payload) {
  return DecodeAll<SMP_PortInfo, kPortInfoFields>(payload);
}

SMP_PortInfoExtended DecodePortInfoExtended(const Payload& payload) {
  return DecodeAll<SMP_PortInfoExtended, kPortInfoExtendedFields>(payload);
}

std::string_view DescriptionText(std::string_view payload) {
  const std::string_view text = payload.substr(0, payload.find('\0'));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

bool HasPortInfoExtended(const Payload& port_info) {
  static constexpr WireField<SMP_PortInfo> kMasks[] = {FieldNamed(kPortInfoFields, "CapMsk"),
                                                       FieldNamed(kPortInfoFields, "CapMsk2")};
  const auto info = DecodeAll<SMP_PortInfo, kMasks>(port_info);
  return HasCapability2(info, kPortInfoExtendedSupported);
}

bool HasSecondExtendedSpeeds(const SMP_PortInfo& info) {
  return HasCapability2(info, kExtendedSpeeds2Supported);
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
