#ifndef FABSCAN_SOURCE_WRITER_H
#define FABSCAN_SOURCE_WRITER_H

#include <sys/types.h>

#include <charconv>
#include <cstddef>
#include <cstring>
#include <ostream>
#include <string_view>

#include "gathering_buffer.h"
#include "unchecked_writer.h"

/// Writes generated source to a stream: text, indents, numbers and line ends.
///
/// What is written is gathered and handed to the stream in large pieces; the rest on destruction.
/// Where the stream ends in a GatheringBuffer, text is gathered there at once. Numbers are
/// formatted here, so neither the stream's flags nor its locale have a say in the text, and the
/// stream keeps the state it came with.
class SourceWriter {
 public:
  explicit SourceWriter(std::ostream& out) : out_(out), gathering_(GatheringBuffer::Of(out)) {
    if (gathering_ != nullptr) {
      Borrow();
    } else {
      UseOwnRoom();
    }
  }
  SourceWriter(const SourceWriter&) = delete;
  SourceWriter& operator=(const SourceWriter&) = delete;
  /// Passes an exception of the stream on, as the stream's own operators would.
  ~SourceWriter() noexcept(false) {
    if (gathering_ != nullptr) {
      gathering_->Advance(next_);
    } else {
      Finish();
    }
  }

  SourceWriter& Text(std::string_view text) {
    if (text.size() > Room()) return LongText(text);
    if (!text.empty()) std::memcpy(next_, text.data(), text.size());
    next_ += text.size();
    return *this;
  }
  /// The text, then blanks up to `width`, which is at most PaddedText::kMost.
  SourceWriter& Padded(const PaddedText& text, std::size_t width) {
    return Piece(PaddedText::kMost, [&](char* at) { return text.Put(at, width); });
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
  SourceWriter& Decimal(unsigned value) {
    return Piece(kMostDecimalDigits, [value](char* at) { return PutDecimal(at, value); });
  }
  SourceWriter& SignedDecimal(int value) {
    return Piece(kLongestNumber,
                 [value](char* at) { return std::to_chars(at, at + kLongestNumber, value).ptr; });
  }

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

  /// `write(to)` says what is written with the functions above, from `Text` to `Line`; `to` is this
  /// writer, or one of the same functions that does not check for room, after room was made for all
  /// at once. It is called up to twice, so it must do nothing else, nor call what may throw.
  template <class Write>
  SourceWriter& AtOnce(const Write& write) {
    RoomMeter meter;
    write(meter);
    if (meter.Size() > kMostAtOnce || !KnowsLineEnd()) return Checked(write);
    MakeRoom(meter.Size());
    next_ = Unchecked(write, next_, line_end_);
    return *this;
  }

  static constexpr std::size_t kCapacity = 16384;

 private:
  static constexpr std::size_t kLongestNumber = 24;
  static constexpr std::size_t kMostAtOnce = GatheringBuffer::kSlack;
  static_assert(kMostAtOnce <= kCapacity);

  std::size_t Room() const { return static_cast<std::size_t>(end_ - next_); }

  void MakeRoom(std::size_t size) {
    if (size > Room()) HandOver();
  }

  /// Makes room for up to `size` bytes, which `put(at)` writes; it returns the end of what counts.
  template <class Put>
  SourceWriter& Piece(std::size_t size, Put put) {
    MakeRoom(size);
    next_ = put(next_);
    return *this;
  }

  /// Flat, so that the place to write to stays in a register.
  template <class Write>
  [[gnu::flatten]] static char* Unchecked(Write write, char* at, char line_end) {
    UncheckedWriter to(at, line_end);
    write(to);
    return to.End();
  }
  template <class Write>
  [[gnu::cold, gnu::noinline]] SourceWriter& Checked(const Write& write) {
    write(*this);
    return *this;
  }

  bool KnowsLineEnd() { return line_end_ != '\0' || FindLineEnd(); }
  bool FindLineEnd();

  SourceWriter& LongText(std::string_view text);
  SourceWriter& LongIndent(int blanks);
  void Borrow() {
    next_ = gathering_->Next();
    end_ = gathering_->RoomEnd();
  }
  void UseOwnRoom();
  void HandOver();
  void HandOverGathered();
  void Finish();

  char* next_;
  char* end_;
  char line_end_ = '\0';
  std::ostream& out_;
  GatheringBuffer* const gathering_;
  int exceptions_before_ = 0;
  char own_room_[kCapacity];
};

#endif
