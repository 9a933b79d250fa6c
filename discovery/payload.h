#ifndef FABSCAN_DISCOVERY_PAYLOAD_H
#define FABSCAN_DISCOVERY_PAYLOAD_H

#include <endian.h>
#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace fabscan {

/// What a device answered for one subnet-management attribute: 64 bytes in wire order.
using Payload = std::array<u_int8_t, 64>;

/// The payload of 64 bytes, and the other way round.
inline Payload PayloadOf(std::string_view bytes) {
  Payload payload;
  std::memcpy(payload.data(), bytes.data(), payload.size());
  return payload;
}
inline std::string_view BytesOf(const Payload& payload) {
  return {reinterpret_cast<const char*>(payload.data()), payload.size()};
}

/// The unsigned number in bits `first_bit` to `first_bit + bits - 1` of a payload. Bit 0 is the
/// most significant bit of byte 0, as the architecture counts; `bits` is 1 to 64, and more than 57
/// begin with a byte.
inline u_int64_t ReadBits(const Payload& payload, unsigned first_bit, unsigned bits) {
  // Eight bytes that hold the number: from its first one on, or the last eight.
  constexpr unsigned kLast = std::tuple_size_v<Payload> - sizeof(u_int64_t);
  const unsigned byte = first_bit / 8 < kLast ? first_bit / 8 : kLast;
  u_int64_t word = 0;
  std::memcpy(&word, payload.data() + byte, sizeof word);
  return be64toh(word) << (first_bit - 8 * byte) >> (64 - bits);
}

}  // namespace fabscan

#endif
