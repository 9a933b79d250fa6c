#ifndef FABSCAN_DISCOVERY_PAYLOAD_H
#define FABSCAN_DISCOVERY_PAYLOAD_H

#include <sys/types.h>

#include <array>
#include <cstddef>

namespace fabscan {

/// What a device answered for one subnet-management attribute: 64 bytes in wire order.
using Payload = std::array<u_int8_t, 64>;

/// The unsigned number in bits `first_bit` to `first_bit + bits - 1` of a payload. Bit 0 is the
/// most significant bit of byte 0, as the architecture counts; `bits` is 1 to 64.
constexpr u_int64_t ReadBits(const Payload& payload, unsigned first_bit, unsigned bits) {
  u_int64_t value = 0;
  for (unsigned bit = first_bit; bit < first_bit + bits; ++bit) {
    value = value << 1U | (payload[bit / 8] >> (7 - bit % 8) & 1U);
  }
  return value;
}

}  // namespace fabscan

#endif
