#ifndef FABSCAN_DISCOVERY_PAYLOAD_H
#define FABSCAN_DISCOVERY_PAYLOAD_H

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "records/field.h"

namespace fabscan {

/// What a device answered for one subnet-management attribute, in wire order.
using Payload = std::array<u_int8_t, kSmpDataBytes>;

/// The payload of 64 bytes, and the other way round.
inline Payload PayloadOf(std::string_view bytes) {
  Payload payload;
  std::memcpy(payload.data(), bytes.data(), payload.size());
  return payload;
}
inline std::string_view BytesOf(const Payload& payload) {
  return {reinterpret_cast<const char*>(payload.data()), payload.size()};
}

}  // namespace fabscan

#endif
