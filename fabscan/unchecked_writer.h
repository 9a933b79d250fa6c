#ifndef FABSCAN_UNCHECKED_WRITER_H
#define FABSCAN_UNCHECKED_WRITER_H

#include <sys/types.h>

#include <charconv>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace fabscan::generator {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ || __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__,
              "the digits of a number are written in the order of its bytes");

/// Writes the digits of `value`, lower-case and without leading zeros, and returns their end. All
/// of `kMostHexDigits` bytes may be overwritten. All digits at a time, one in each byte.
inline constexpr std::size_t kMostHexDigits = 16;
inline char* PutHex(char* at, u_int64_t value) {
  using Pairs = signed char __attribute__((vector_size(8)));
  using Digits = signed char __attribute__((vector_size(kMostHexDigits)));
  const auto count = static_cast<unsigned>(67 - __builtin_clzll(value | 1U)) / 4;
  const u_int64_t left = value << (64 - 4 * count);
  const u_int64_t first = __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__ ? left : __builtin_bswap64(left);
  const u_int64_t halves[] = {(first >> 4U) & 0x0f0f0f0f0f0f0f0fU, first & 0x0f0f0f0f0f0f0f0fU};
  Pairs high;
  Pairs low;
  std::memcpy(&high, &halves[0], sizeof high);
  std::memcpy(&low, &halves[1], sizeof low);
  const Digits digits =
      __builtin_shufflevector(high, low, 0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15);
  const Digits text = digits + '0' + ((digits > 9) & ('a' - '0' - 10));
  std::memcpy(at, &text, sizeof text);
  return at + count;
}

/// The same in decimal; port numbers and set indices are short.
inline constexpr std::size_t kMostDecimalDigits = 10;
[[gnu::noinline]] inline char* PutLongDecimal(char* at, unsigned value) {
  return std::to_chars(at, at + kMostDecimalDigits, value).ptr;
}
inline char* PutDecimal(char* at, unsigned value) {
  if (value >= 100) return PutLongDecimal(at, value);
  if (value >= 10) *at++ = static_cast<char>('0' + value / 10);
  *at++ = static_cast<char>('0' + value % 10);
  return at;
}

/// The most that an UncheckedWriter indents; so many blanks are written for each indent.
inline constexpr int kWidestIndent = 16;

/// Appends to memory that was reserved before. Its functions are those of a SourceWriter, inlined
/// wherever they are used, so that a text known to the compiler becomes a few moves of constant
/// size.
class UncheckedWriter {
 public:
  UncheckedWriter(char* at, char line_end) : at_(at), line_end_(line_end) {}

  [[gnu::always_inline]] UncheckedWriter& Text(std::string_view text) {
    if (!text.empty()) std::memcpy(at_, text.data(), text.size());
    at_ += text.size();
    return *this;
  }
  [[gnu::always_inline]] UncheckedWriter& Indent(int blanks) {
    std::memset(at_, ' ', kWidestIndent);
    at_ += blanks;
    return *this;
  }
  [[gnu::always_inline]] UncheckedWriter& Hex(u_int64_t value) {
    at_ = PutHex(at_, value);
    return *this;
  }
  [[gnu::always_inline]] UncheckedWriter& Decimal(unsigned value) {
    at_ = PutDecimal(at_, value);
    return *this;
  }
  [[gnu::always_inline]] UncheckedWriter& EndLine() {
    *at_++ = line_end_;
    return *this;
  }
  [[gnu::always_inline]] UncheckedWriter& Line(int indent) { return EndLine().Indent(indent); }

  char* End() const { return at_; }

 private:
  char* at_;
  char line_end_;
};

}  // namespace fabscan::generator

#endif
