#ifndef FABSCAN_SOURCE_WRITER_H
#define FABSCAN_SOURCE_WRITER_H

#include <sys/types.h>

#include <charconv>
#include <cstddef>
#include <cstring>
#include <exception>
#include <ostream>
#include <string_view>

/// Writes the digits of `value`, lower-case and without leading zeros, and returns their end. All
/// of `kMostHexDigits` bytes may be overwritten. Eight digits at a time, one in each byte of a
/// word.
inline constexpr std::size_t kMostHexDigits = 16;
inline char* PutHex(char* at, u_int64_t value) {
  const auto put_eight = [](char* to, u_int64_t digits) {
    digits = ((digits << 16U) | digits) & 0x0000ffff0000ffffU;
    digits = ((digits << 8U) | digits) & 0x00ff00ff00ff00ffU;
    digits = ((digits << 4U) | digits) & 0x0f0f0f0f0f0f0f0fU;
    const u_int64_t letters = ((digits + 0x0606060606060606U) >> 4U) & 0x0101010101010101U;
    digits += 0x3030303030303030U + letters * ('a' - '0' - 10);
    digits = __builtin_bswap64(digits);
    std::memcpy(to, &digits, sizeof digits);
  };
  const auto count = static_cast<unsigned>(67 - __builtin_clzll(value | 1U)) / 4;
  const u_int64_t first = value << (64 - 4 * count);
  put_eight(at, first >> 32U);
  if (count > 8) put_eight(at + 8, first & 0xffffffffU);
  return at + count;
}

/// Writes generated source to a stream: text, indents, numbers and line ends.
///
/// What is written is gathered and handed to the stream in large pieces; the rest on destruction.
/// Numbers are formatted here, so neither the stream's flags nor its locale have a say in the text,
/// and the stream keeps the state it came with.
class SourceWriter {
 public:
  explicit SourceWriter(std::ostream& out) noexcept : out_(out) {}
  SourceWriter(const SourceWriter&) = delete;
  SourceWriter& operator=(const SourceWriter&) = delete;
  /// Passes an exception of the stream on, as the stream's own operators would.
  ~SourceWriter() noexcept(false);

  SourceWriter& Text(std::string_view text) {
    if (text.size() > Room()) return LongText(text);
    if (!text.empty()) std::memcpy(next_, text.data(), text.size());
    next_ += text.size();
    return *this;
  }

  /// No blanks where `blanks` is negative.
  SourceWriter& Indent(int blanks) {
    const auto count = static_cast<std::size_t>(blanks);
    if (count > Room()) return LongIndent(blanks);
    std::memset(next_, ' ', count);
    next_ += count;
    return *this;
  }

  /// Lower-case digits without prefix or leading zeros.
  SourceWriter& Hex(u_int64_t value) {
    return Piece(kMostHexDigits, [value](char* at) { return PutHex(at, value); });
  }
  /// All sixteen digits of a GUID.
  SourceWriter& ZeroFilledHex(u_int64_t value) {
    for (int shift = 60; shift >= 0; shift -= 4) Hex((value >> shift) & 0xFU);
    return *this;
  }
  SourceWriter& Decimal(unsigned value) { return Number(value, 10); }
  SourceWriter& SignedDecimal(int value) { return Number(value, 10); }

  /// Throws std::bad_cast when the stream has no character-type facet.
  char LineEnd() {
    if (line_end_ == '\0') line_end_ = out_.widen('\n');
    return line_end_;
  }
  SourceWriter& EndLine() {
    const char line_end = LineEnd();
    MakeRoom(1);
    *next_++ = line_end;
    return *this;
  }

  /// Ends the line before and begins one at the indent.
  SourceWriter& Line(int indent) { return EndLine().Indent(indent); }

  SourceWriter& EndLineAndFlush() {
    EndLine();
    HandOver();
    out_.flush();
    return *this;
  }

  /// Makes room for up to `size` bytes at once. `put(at)` writes there, without further checks, and
  /// returns the end of what counts.
  template <class Put>
  SourceWriter& Piece(std::size_t size, Put put) {
    MakeRoom(size);
    next_ = put(next_);
    return *this;
  }

  static constexpr std::size_t kCapacity = 16384;

 private:
  static constexpr std::size_t kLongestNumber = 24;

  std::size_t Room() const { return static_cast<std::size_t>(buffer_ + kCapacity - next_); }

  void MakeRoom(std::size_t size) {
    if (size > Room()) HandOver();
  }

  template <class Integer>
  SourceWriter& Number(Integer value, int base) {
    return Piece(kLongestNumber,
                 [=](char* at) { return std::to_chars(at, at + kLongestNumber, value, base).ptr; });
  }

  SourceWriter& LongText(std::string_view text);
  SourceWriter& LongIndent(int blanks);
  void HandOver();

  std::ostream& out_;
  const int exceptions_before_ = std::uncaught_exceptions();
  char line_end_ = '\0';
  char* next_ = buffer_;
  char buffer_[kCapacity];
};

#endif
