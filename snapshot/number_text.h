#ifndef FABSCAN_SNAPSHOT_NUMBER_TEXT_H
#define FABSCAN_SNAPSHOT_NUMBER_TEXT_H

#include <endian.h>
#include <sys/types.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

// Numbers in the form of snapshots. They are written to a buffer with space for the longest number.
// Each function returns the end of its text, and may overwrite the rest of that space.

namespace fabscan {

/// The longest text of a number: `"0x`, 16 digits, `"`.
inline constexpr std::size_t kNumberBytes = 20;

/// The digits of a number below 1,000, and their number.
struct SmallNumber {
  char digits[3];
  u_int8_t count;
};

constexpr std::array<SmallNumber, 1000> MakeSmallNumbers() {
  std::array<SmallNumber, 1000> all = {};
  for (std::size_t value = 0; value < all.size(); ++value) {
    SmallNumber& number = all[value];
    for (unsigned unit = value < 10 ? 1 : value < 100 ? 10 : 100; unit > 0; unit /= 10) {
      number.digits[number.count++] = static_cast<char>('0' + value / unit % 10);
    }
  }
  return all;
}

inline constexpr auto kSmallNumbers = MakeSmallNumbers();

struct DigitPair {
  char digits[2];
};

/// All pairs of digits: those of 0 to base * base - 1.
template <std::size_t kBase>
constexpr std::array<DigitPair, kBase * kBase> MakePairs() {
  constexpr char kDigits[] = "0123456789abcdef";
  std::array<DigitPair, kBase* kBase> all = {};
  for (unsigned value = 0; value < all.size(); ++value) {
    all[value] = {{kDigits[value / kBase], kDigits[value % kBase]}};
  }
  return all;
}

inline constexpr auto kDecimalPairs = MakePairs<10>();
inline constexpr auto kHexPairs = MakePairs<16>();

inline char* PutPair(char* at, const DigitPair& pair) {
  std::memcpy(at, &pair, sizeof pair);
  return at + sizeof pair;
}

/// A number below 1,000.
inline char* PutSmall(char* at, u_int32_t value) {
  const SmallNumber& number = kSmallNumbers[value];
  std::memcpy(at, &number, sizeof number);  // all four bytes, in one move
  return at + number.count;
}

inline char* PutDecimal(char* at, u_int32_t value) {
  if (value < kSmallNumbers.size()) return PutSmall(at, value);
  const u_int32_t front = value / 100;
  at = front < kSmallNumbers.size() ? PutSmall(at, front) : PutDecimal(at, front);
  return PutPair(at, kDecimalPairs[value % 100]);
}

/// `"0x..."`, with at least `digits` digits, 1 to 16.
inline char* PutHex(char* at, u_int64_t value, unsigned digits = 1) {
  *at++ = '"';
  *at++ = '0';
  *at++ = 'x';
  const auto significant = static_cast<unsigned>(67 - __builtin_clzll(value | 1U)) / 4;
  const unsigned count = std::max(significant, digits);
  value <<= 64 - 4 * count;
  for (unsigned i = 0; i < count; i += 2) {
    PutPair(at + i, kHexPairs[static_cast<std::size_t>(value >> 56U)]);
    value <<= 8U;
  }
  at[count] = '"';
  return at + count + 1;
}

// ---------- Parsing ----------

// Most bytes of a large snapshot are hexadecimal digits, so they are parsed in groups of eight:
// each byte of a word is one digit, the first digit the lowest byte.

/// The number of eight hexadecimal digits. Sets `valid` to false if one is not a digit.
inline u_int64_t EightHexDigits(u_int64_t digits, bool& valid) {
  constexpr u_int64_t kEach = 0x0101010101010101;
  const u_int64_t lower = digits | (0x20 * kEach);  // does not change 0 to 9
  // The top bit of a byte of `From(c)` is set if that digit is c or a later character.
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
  digits = le64toh(digits);
  if (count < 8) {
    // Shifts the digits to the end of the word, after zeros.
    digits <<= 8 * (8 - count);
    digits |= 0x3030303030303030 >> (8 * count);
  }
  return EightHexDigits(digits, valid);
}

/// Parses hexadecimal digits; at least eight bytes after the text must be readable. Returns false
/// if the text is empty, contains other characters, or does not fit 64 bits.
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
