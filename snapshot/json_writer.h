#ifndef FABSCAN_SNAPSHOT_JSON_WRITER_H
#define FABSCAN_SNAPSHOT_JSON_WRITER_H

#include <sys/types.h>

#include <charconv>
#include <ostream>
#include <string>
#include <string_view>

namespace fabscan {

/// Writes JSON text through a buffer of its own: commas by itself, no blanks, no locale.
class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out) : out_(out) { buffer_.reserve(kFlushAt + kFlushAt / 4); }

  void BeginObject() { Open('{'); }
  void EndObject() { Close('}'); }
  void BeginArray() { Open('['); }
  void EndArray() { Close(']'); }
  /// Names the next value of an object. `key` needs no escapes.
  void Key(std::string_view key) {
    Separate();
    buffer_ += '"';
    buffer_ += key;
    buffer_ += "\":";
    fresh_ = true;
  }

  void Number(u_int64_t value) {
    Separate();
    Digits(value, 10);
  }
  /// `"0x..."`, with at least `digits` digits.
  void Hex(u_int64_t value, std::size_t digits = 1);
  void Bool(bool value) {
    Separate();
    buffer_ += value ? "true" : "false";
  }
  /// Text that is not UTF-8 has its bad bytes replaced by U+FFFD.
  void String(std::string_view text);

  void EndLine() {
    buffer_ += '\n';
    fresh_ = true;
    if (buffer_.size() >= kFlushAt) Flush();
  }
  void Flush();

 private:
  static constexpr std::size_t kFlushAt = std::size_t{1} << 18U;

  void Separate() {
    if (!fresh_) buffer_ += ',';
    fresh_ = false;
  }
  void Open(char bracket) {
    Separate();
    buffer_ += bracket;
    fresh_ = true;
  }
  void Close(char bracket) {
    buffer_ += bracket;
    fresh_ = false;
  }
  void Digits(u_int64_t value, int base) {
    char digits[20];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, base).ptr;
    buffer_.append(digits, static_cast<std::size_t>(end - digits));
  }

  std::ostream& out_;
  std::string buffer_;
  bool fresh_ = true;  // nothing stands before the next value that a comma would follow
};

}  // namespace fabscan

#endif
