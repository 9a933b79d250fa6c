#ifndef FABSCAN_SNAPSHOT_JSON_WRITER_H
#define FABSCAN_SNAPSHOT_JSON_WRITER_H

#include <sys/types.h>

#include <charconv>
#include <cstddef>
#include <cstring>
#include <ostream>
#include <string_view>
#include <vector>

namespace fabscan {

/// Writes JSON text through a buffer of its own: commas by itself, no blanks, no locale.
class JsonWriter {
 public:
  static constexpr std::size_t kBufferBytes = std::size_t{1} << 20U;

  explicit JsonWriter(std::ostream& out) : out_(out), buffer_(kBufferBytes) {}

  void BeginObject() { Open('{'); }
  void EndObject() { Close('}'); }
  void BeginArray() { Open('['); }
  void EndArray() { Close(']'); }
  /// Names the next value of an object. `key` needs no escapes.
  void Key(std::string_view key) {
    Separate();
    Put('"');
    Append(key);
    Append("\":");
    fresh_ = true;
  }
  /// The same for a literal, whose size the compiler knows.
  template <std::size_t kSize>
  void Key(const char (&key)[kSize]) {
    char* at = BeginValue(kSize + 2);
    *at++ = '"';
    std::memcpy(at, key, kSize - 1);
    at[kSize - 1] = '"';
    at[kSize] = ':';
    EndValue(at + kSize + 1);
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
    Append(value ? std::string_view("true") : std::string_view("false"));
  }
  /// Text that is not UTF-8 has its bad bytes replaced by U+FFFD.
  void String(std::string_view text);

  /// Begins a value of at most `size` bytes, no more than `kBufferBytes`, which the caller writes
  /// from the returned place on.
  char* BeginValue(std::size_t size) {
    Separate();
    MakeRoom(size);
    return buffer_.data() + size_;
  }
  /// Ends it before `end`.
  void EndValue(const char* end) { size_ = static_cast<std::size_t>(end - buffer_.data()); }

  void EndLine() {
    Put('\n');
    fresh_ = true;
  }
  void Flush();

 private:
  void Separate() {
    if (!fresh_) Put(',');
    fresh_ = false;
  }
  void Open(char bracket) {
    Separate();
    Put(bracket);
    fresh_ = true;
  }
  void Close(char bracket) {
    Put(bracket);
    fresh_ = false;
  }
  void Digits(u_int64_t value, int base) {
    char digits[20];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, base).ptr;
    Append({digits, static_cast<std::size_t>(end - digits)});
  }
  void MakeRoom(std::size_t size) {
    if (buffer_.size() - size_ < size) Flush();
  }
  void Put(char c) {
    MakeRoom(1);
    buffer_[size_++] = c;
  }
  void Append(std::string_view text) {
    if (buffer_.size() - size_ < text.size()) return AppendLong(text);
    std::memcpy(buffer_.data() + size_, text.data(), text.size());
    size_ += text.size();
  }
  void AppendLong(std::string_view text);
  void AppendEscaped(char c);

  std::ostream& out_;
  std::vector<char> buffer_;
  std::size_t size_ = 0;  // of what is in the buffer
  bool fresh_ = true;     // nothing stands before the next value that a comma would follow
};

}  // namespace fabscan

#endif
