#ifndef FABSCAN_SNAPSHOT_HEX_NUMBER_H
#define FABSCAN_SNAPSHOT_HEX_NUMBER_H

#include <sys/types.h>

#include <cstddef>
#include <cstring>
#include <string_view>

namespace fabscan {

// Most of a large snapshot's bytes are hexadecimal digits, so they are taken eight at a time: each
// byte of a word holds one digit.

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first digit is the lowest byte");

/// The number of eight hexadecimal digits. `valid` becomes false where one of them is none.
inline u_int64_t EightHexDigits(u_int64_t digits, bool& valid) {
  constexpr u_int64_t kEach = 0x0101010101010101;
  const u_int64_t lower = digits | (0x20 * kEach);  // leaves 0 to 9 as they are
  // The top bit of a byte of `From(c)` says whether that digit is c or a later character.
  const auto from = [&](u_int64_t c) { return lower + (0x80 - c) * kEach; };
  const u_int64_t decimal = from('0') & ~from('9' + 1);
  const u_int64_t letter = from('a') & ~from('f' + 1);
  valid &= (((decimal | letter) & ~digits) & (0x80 * kEach)) == 0x80 * kEach;

  u_int64_t value = (lower & (0x0F * kEach)) + 9 * ((lower >> 6U) & kEach);
  value = __builtin_bswap64(value);
  value = (value | (value >> 4U)) & 0x00FF00FF00FF00FF;
  value = (value | (value >> 8U)) & 0x0000FFFF0000FFFF;
  return (value | (value >> 16U)) & 0xFFFFFFFF;
}

/// The number of one to eight digits, at an address from which eight bytes can be read.
inline u_int64_t UpToEightHexDigits(const char* at, std::size_t count, bool& valid) {
  u_int64_t digits = 0;
  std::memcpy(&digits, at, sizeof digits);
  if (count < 8) {
    // Moves the digits to the end of the word, behind zeros.
    digits <<= 8 * (8 - count);
    digits |= 0x3030303030303030 >> (8 * count);
  }
  return EightHexDigits(digits, valid);
}

/// Takes the number of hexadecimal digits; at least eight bytes after the text can be read. False
/// where the text is empty, holds something else, or does not fit 64 bits.
inline bool ReadHexDigits(std::string_view text, u_int64_t& number) {
  while (text.size() > 16 && text.front() == '0') text.remove_prefix(1);
  if (text.empty() || text.size() > 16) return false;
  bool valid = true;
  if (text.size() <= 8) {
    number = UpToEightHexDigits(text.data(), text.size(), valid);
  } else {
    const std::size_t high = text.size() - 8;
    number = UpToEightHexDigits(text.data(), high, valid) << 32U;
    number |= UpToEightHexDigits(text.data() + high, 8, valid);
  }
  return valid;
}

}  // namespace fabscan

#endif
