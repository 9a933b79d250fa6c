#ifndef FABSCAN_SNAPSHOT_NUMBER_TEXT_H
#define FABSCAN_SNAPSHOT_NUMBER_TEXT_H

#include <sys/types.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

// Numbers as a snapshot has them, put at a place in a buffer where there is room for the longest.
// Each function returns the end of its text; what is behind it in that room may be overwritten.

namespace fabscan {

/// The longest text of a number: `"0x`, 16 digits, `"`.
inline constexpr std::size_t kNumberBytes = 20;

/// The digits of a number below 1,000, and how many there are.
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

/// `"0x..."`, with at least `digits` digits, of which there are 1 to 16.
inline char* PutHex(char* at, u_int64_t value, unsigned digits = 1) {
  *at++ = '"';
  *at++ = '0';
  *at++ = 'x';
  const auto significant = static_cast<unsigned>(67 - __builtin_clzll(value | 1U)) / 4;
  const unsigned count = std::max(significant, digits);
  value <<= 64 - 4 * count;
  for (unsigned i = 0; i < count; i += 2) {
    PutPair(at + i, kHexPairs[value >> 56U]);
    value <<= 8U;
  }
  at[count] = '"';
  return at + count + 1;
}

}  // namespace fabscan

#endif
