#ifndef FABSCAN_UNCHECKED_WRITER_H
#define FABSCAN_UNCHECKED_WRITER_H

#include <sys/types.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <string_view>

/// What `SourceWriter::AtOnce` writes with: the parts of a SourceWriter, inlined wherever they are
/// used, so that a text known to the compiler becomes a few moves of constant size.

/// Writes the digits of `value`, lower-case and without leading zeros, and returns their end. All
/// of `kMostHexDigits` bytes may be overwritten. All digits at a time, one in each byte.
inline constexpr std::size_t kMostHexDigits = 16;
inline char* PutHex(char* at, u_int64_t value) {
  using Pairs = signed char __attribute__((vector_size(8)));
  using Digits = signed char __attribute__((vector_size(kMostHexDigits)));
  const auto count = static_cast<unsigned>(67 - __builtin_clzll(value | 1U)) / 4;
  const u_int64_t first = __builtin_bswap64(value << (64 - 4 * count));
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

/// A text with blanks behind it, so that copying it takes a constant number of bytes.
class PaddedText {
 public:
  static constexpr std::size_t kMost = 56;

  /// Null for a row without text. Too long a text does not compile.
  constexpr PaddedText(const char* text) : c_str_(text) {  // NOLINT(google-explicit-constructor)
    for (char& c : text_) c = ' ';
    if (text == nullptr) return;
    for (; text[size_] != '\0'; ++size_) text_[size_] = text[size_];
  }

  constexpr const char* c_str() const { return c_str_; }

  /// The text, then blanks up to `width`, which is at most `kMost`.
  char* Put(char* at, std::size_t width) const {
    std::memcpy(at, text_, kMost);
    return at + std::max<std::size_t>(size_, width);
  }

 private:
  const char* c_str_;
  char text_[kMost] = {};
  unsigned char size_ = 0;
};

/// An indent is made of this many blanks, of which those beyond it are written over.
inline constexpr int kWidestIndent = 16;

/// Into room that was made before.
class UncheckedWriter {
 public:
  UncheckedWriter(char* at, char line_end) : at_(at), line_end_(line_end) {}

  [[gnu::always_inline]] UncheckedWriter& Text(std::string_view text) {
    if (!text.empty()) std::memcpy(at_, text.data(), text.size());
    at_ += text.size();
    return *this;
  }
  [[gnu::always_inline]] UncheckedWriter& Padded(const PaddedText& text, std::size_t width) {
    at_ = text.Put(at_, width);
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

/// Adds up what an UncheckedWriter may write to; far too much where it does not know how to write.
class RoomMeter {
 public:
  static constexpr std::size_t kNoRoom = std::size_t{1} << 32U;

  [[gnu::always_inline]] RoomMeter& Text(std::string_view text) { return Add(text.size()); }
  [[gnu::always_inline]] RoomMeter& Padded(const PaddedText& /*text*/, std::size_t /*width*/) {
    return Add(PaddedText::kMost);
  }
  [[gnu::always_inline]] RoomMeter& Indent(int blanks) {
    return Add(blanks >= 0 && blanks <= kWidestIndent ? kWidestIndent : kNoRoom);
  }
  [[gnu::always_inline]] RoomMeter& Hex(u_int64_t /*value*/) { return Add(kMostHexDigits); }
  [[gnu::always_inline]] RoomMeter& Decimal(unsigned /*value*/) { return Add(kMostDecimalDigits); }
  [[gnu::always_inline]] RoomMeter& EndLine() { return Add(1); }
  [[gnu::always_inline]] RoomMeter& Line(int indent) { return EndLine().Indent(indent); }

  std::size_t Size() const { return size_; }

 private:
  [[gnu::always_inline]] RoomMeter& Add(std::size_t size) {
    size_ += size;
    return *this;
  }

  std::size_t size_ = 0;
};

#endif
