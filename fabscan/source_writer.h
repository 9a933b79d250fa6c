#ifndef FABSCAN_SOURCE_WRITER_H
#define FABSCAN_SOURCE_WRITER_H

#include <sys/types.h>

#include <charconv>
#include <cstddef>
#include <cstring>
#include <ostream>
#include <string_view>

#include "chunked_buffer.h"
#include "template.h"
#include "unchecked_writer.h"

namespace fabscan::generator {

/// Writes generated source to a stream: text, indents, numbers and line ends.
///
/// What is written reaches the stream in large chunks; the last one on destruction. If the stream
/// ends in a ChunkedBuffer, text is appended there at once. Numbers are formatted here, so neither
/// the stream's flags nor its locale influence the text, and the stream keeps its state.
class SourceWriter {
 public:
  explicit SourceWriter(std::ostream& out) : out_(out), chunked_(ChunkedBuffer::Of(out)) {
    if (chunked_ != nullptr) {
      UseChunk();
    } else {
      UseOwnBuffer();
    }
  }
  SourceWriter(const SourceWriter&) = delete;
  SourceWriter& operator=(const SourceWriter&) = delete;
  /// Passes an exception of the stream on, as the stream's own operators would.
  ~SourceWriter() noexcept(false) {
    if (chunked_ != nullptr) {
      chunked_->Advance(next_);
    } else {
      Finish();
    }
  }

  SourceWriter& Text(std::string_view text) {
    if (text.size() > Available()) return LongText(text);
    if (!text.empty()) std::memcpy(next_, text.data(), text.size());
    next_ += text.size();
    return *this;
  }
  /// No blanks if `blanks` is negative.
  SourceWriter& Indent(int blanks) {
    const auto count = static_cast<std::size_t>(blanks);
    if (count > Available()) return LongIndent(blanks);
    std::memset(next_, ' ', count);
    next_ += count;
    return *this;
  }

  /// Lower-case digits without prefix or leading zeros.
  SourceWriter& Hex(u_int64_t value) {
    return Number(kMostHexDigits, [value](char* at) { return PutHex(at, value); });
  }
  SourceWriter& Decimal(unsigned value) {
    return Number(kMostDecimalDigits, [value](char* at) { return PutDecimal(at, value); });
  }
  SourceWriter& SignedDecimal(int value) {
    return Number(kLongestNumber,
                  [value](char* at) { return std::to_chars(at, at + kLongestNumber, value).ptr; });
  }

  /// Throws std::bad_cast when the stream has no character-type facet.
  SourceWriter& EndLine() {
    if (line_end_ == '\0') line_end_ = out_.widen('\n');
    Reserve(1);
    *next_++ = line_end_;
    return *this;
  }

  /// Ends the line before and begins one at the indent.
  SourceWriter& Line(int indent) { return EndLine().Indent(indent); }

  /// Everything written so far reaches the stream, and the stream is flushed.
  SourceWriter& Flush() {
    FlushBuffer();
    out_.flush();
    return *this;
  }

  /// Continues the line with the template; `values` fill its holes.
  template <const Template& kTemplate, class... Values>
  SourceWriter& Emit(int indent, const Values&... values) {
    return Append(Filled<kTemplate, false>(values...), indent);
  }
  /// The same on a new line.
  template <const Template& kTemplate, class... Values>
  SourceWriter& EmitLines(int indent, const Values&... values) {
    return Append(Filled<kTemplate>(values...), indent);
  }

  /// Appends what fills a hole of a template, or a filled template.
  template <class Value>
  SourceWriter& Append(const Value& value, int indent) {
    if constexpr (Value::kMostBytes == kUnbounded) {
      value.Write(*this, indent);
    } else {
      Compose(value, indent);
    }
    return *this;
  }

  static constexpr std::size_t kCapacity = 16384;

 private:
  static constexpr std::size_t kLongestNumber = 24;
  static constexpr std::size_t kMostAtOnce = ChunkedBuffer::kSlack;
  static_assert(kMostAtOnce <= kCapacity);

  std::size_t Available() const { return static_cast<std::size_t>(end_ - next_); }

  void Reserve(std::size_t size) {
    if (size > Available()) FlushBuffer();
  }

  /// Reserves `size` bytes for `format(at)`, which returns the end of what it wrote.
  template <class Format>
  SourceWriter& Number(std::size_t size, Format format) {
    Reserve(size);
    next_ = format(next_);
    return *this;
  }

  /// Reserves the most that the value can need, once, and then writes without checks.
  template <class Value>
  void Compose(const Value& value, int indent) {
    static_assert(Value::kMostBytes <= kMostAtOnce && Value::kDepth <= kWidestIndent);
    if (indent < 0 || indent > kWidestIndent - Value::kDepth || !KnowsLineEnd()) {
      WriteChecked(value, indent);
      return;
    }
    Reserve(Value::kMostBytes);
    next_ = WriteUnchecked(value, indent, next_, line_end_);
  }

  /// Flat, so that the address to write to stays in a register.
  template <class Value>
  [[gnu::flatten]] static char* WriteUnchecked(const Value& value, int indent, char* at,
                                               char line_end) {
    UncheckedWriter to(at, line_end);
    value.Write(to, indent);
    return to.End();
  }
  template <class Value>
  [[gnu::cold, gnu::noinline]] void WriteChecked(const Value& value, int indent) {
    value.Write(*this, indent);
  }

  bool KnowsLineEnd() { return line_end_ != '\0' || FindLineEnd(); }
  bool FindLineEnd();

  SourceWriter& LongText(std::string_view text);
  SourceWriter& LongIndent(int blanks);
  void UseChunk() {
    next_ = chunked_->Next();
    end_ = chunked_->End();
  }
  void UseOwnBuffer();
  void FlushBuffer();
  void FlushChunk();
  void Finish();

  char* next_;
  char* end_;
  char line_end_ = '\0';
  std::ostream& out_;
  ChunkedBuffer* const chunked_;
  int exceptions_before_ = 0;
  char own_buffer_[kCapacity];
};

}  // namespace fabscan::generator

#endif
