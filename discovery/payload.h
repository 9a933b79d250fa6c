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
  const unsigned end = first_bit + bits;
  for (unsigned bit = first_bit; bit < end;) {
    const unsigned in_byte = 8 - bit % 8;  // bits from here to the end of the byte
    const unsigned taken = in_byte < end - bit ? in_byte : end - bit;
    const unsigned piece = (payload[bit / 8] >> (in_byte - taken)) & ((1U << taken) - 1);
    value = value << taken | piece;
    bit += taken;
  }
  return value;
}

}  // namespace fabscan

#endif
