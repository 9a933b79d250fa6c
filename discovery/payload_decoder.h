#ifndef FABSCAN_DISCOVERY_PAYLOAD_DECODER_H
#define FABSCAN_DISCOVERY_PAYLOAD_DECODER_H

#include <infiniband/fabscan/fabscan_types.h>
#include <infiniband/tessel/Fabric.h>

#include <string_view>

#include "discovery/payload.h"

namespace fabscan {

/// The records of the attributes, from the payloads that devices answered. This is the one place
/// that knows where a field lies on the wire; it needs no InfiniBand library, so that discovery
/// caches can be read anywhere. The tests hold it against the field functions of libibmad.
///
/// The management key of PortInfo is left behind here: no record has a field for it.
SMP_NodeInfo DecodeNodeInfo(const Payload& payload);
SMP_SwitchInfo DecodeSwitchInfo(const Payload& payload);
/// `LinkSpeedExtActive2`, `LinkSpeedExtSup2` and `LinkSpeedExtEnabled2` stay 0: where they lie is
/// not public. A port that uses them says so, see `HasSecondExtendedSpeeds`.
SMP_PortInfo DecodePortInfo(const Payload& payload);
SMP_PortInfoExtended DecodePortInfoExtended(const Payload& payload);

/// The text of a NodeDescription, of which `payload` is the bytes: up to the first zero byte,
/// without blanks at its end. The bytes are the device's, unchecked; they stay where they are.
std::string_view DescriptionText(std::string_view payload);

/// The device says in this PortInfo that the port answers PortInfoExtended.
bool HasPortInfoExtended(const Payload& port_info);
/// The device says that this port has the second set of extended speeds.
bool HasSecondExtendedSpeeds(const SMP_PortInfo& info);
/// The physical link is up.
bool IsLinked(const SMP_PortInfo& info);

/// The model's words for what the wire says; unknown for numbers that have no word.
IBNodeType NodeTypeOf(unsigned wire_value);
IBPortState PortStateOf(unsigned wire_value);

}  // namespace fabscan

#endif
