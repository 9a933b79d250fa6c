#ifndef FABSCAN_SOURCE_WRITER_H
#define FABSCAN_SOURCE_WRITER_H

#include <sys/types.h>

#include <charconv>
#include <cstring>
#include <exception>
#include <ostream>
#include <string_view>

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

  SourceWriter& Indent(int blanks) {
    const auto count = static_cast<std::size_t>(blanks);
    MakeRoom(count);
    std::memset(next_, ' ', count);
    next_ += count;
    return *this;
  }

  /// Lower-case digits without prefix or leading zeros.
  SourceWriter& Hex(u_int64_t value) { return Number(value, 16); }
  /// All sixteen digits of a GUID.
  SourceWriter& ZeroFilledHex(u_int64_t value) {
    for (int shift = 60; shift >= 0; shift -= 4) Hex((value >> shift) & 0xFU);
    return *this;
  }
  SourceWriter& Decimal(unsigned value) { return Number(value, 10); }
  SourceWriter& SignedDecimal(int value) { return Number(value, 10); }

  /// Throws std::bad_cast when the stream has no character-type facet.
  SourceWriter& EndLine() {
    if (line_end_ == '\0') line_end_ = out_.widen('\n');
    MakeRoom(1);
    *next_++ = line_end_;
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

 private:
  static constexpr std::size_t kCapacity = 16384;
  static constexpr std::size_t kLongestNumber = 24;

  std::size_t Room() const { return static_cast<std::size_t>(buffer_ + kCapacity - next_); }

  void MakeRoom(std::size_t size) {
    if (size > Room()) HandOver();
  }

  template <class Integer>
  SourceWriter& Number(Integer value, int base) {
    MakeRoom(kLongestNumber);
    next_ = std::to_chars(next_, buffer_ + kCapacity, value, base).ptr;
    return *this;
  }

  SourceWriter& LongText(std::string_view text);
  void HandOver();

  std::ostream& out_;
  const int exceptions_before_ = std::uncaught_exceptions();
  char line_end_ = '\0';
  char* next_ = buffer_;
  char buffer_[kCapacity];
};

#endif
