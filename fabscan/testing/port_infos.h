#ifndef FABSCAN_TESTING_PORT_INFOS_H
#define FABSCAN_TESTING_PORT_INFOS_H

#include <fabscan_sim_info_dump.h>

#include "fabric_builder.h"

namespace fabscan {

inline constexpr auto kGeneratePortInfo =
    static_cast<FabricBuilder::Emitter>(&SimInfoDumpCPP::GeneratePortInfo);

inline constexpr char kNoZeroOrRegular[] =
    "#error \"Failed to dump PortInfo MAD. Zero and a regular ports must be provided.\"";
inline constexpr char kNoRecord[] =
    "#error \"Failed to dump PortInfo MAD. Null pointer is provided.\"";

/// A record that differs from the others in every field.
inline SMP_PortInfo Info(unsigned k) {
  constexpr u_int32_t kCapMsk[] = {0x02514868, 0x0000000a, 0xf0000003, 0x00000007};
  constexpr u_int16_t kCapMsk2[] = {0x1403, 0x0, 0x8011, 0x2};
  SMP_PortInfo info = {};
  info.CapMsk = kCapMsk[k];
  info.CapMsk2 = kCapMsk2[k];
  info.LinkWidthSup = static_cast<u_int8_t>(0x11 + k);
  info.LinkSpeedExtSup2 = static_cast<u_int8_t>(0x21 + k);
  info.LinkSpeedExtSup = static_cast<u_int8_t>(0x31 + k);
  info.LinkSpeedSup = static_cast<u_int8_t>(0x41 + k);
  info.MTUCap = static_cast<u_int8_t>(0x51 + k);
  return info;
}

inline void PutInfo(FabricBuilder& fabric, const IBNode& node, std::size_t port, unsigned k) {
  fabric.PutAt<SMP_PortInfo>(node, port) = Info(k);
}

}  // namespace fabscan

#endif
