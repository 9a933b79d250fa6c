#include "json_writer.h"

#include <utf8.h>

namespace fabscan {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

void AppendEscaped(std::string& to, char c) {
  switch (c) {
    case '"':
      to += "\\\"";
      return;
    case '\\':
      to += "\\\\";
      return;
    case '\n':
      to += "\\n";
      return;
    case '\t':
      to += "\\t";
      return;
    default:
      to += "\\u00";
      to += kHexDigits[static_cast<unsigned char>(c) >> 4U];
      to += kHexDigits[static_cast<unsigned char>(c) & 0xFU];
  }
}

bool NeedsEscape(char c) { return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\'; }

}  // namespace

void JsonWriter::Hex(u_int64_t value, std::size_t digits) {
  Separate();
  buffer_ += "\"0x";
  const std::size_t start = buffer_.size();
  Digits(value, 16);
  const std::size_t written = buffer_.size() - start;
  if (written < digits) buffer_.insert(start, digits - written, '0');
  buffer_ += '"';
}

void JsonWriter::String(std::string_view text) {
  Separate();
  buffer_ += '"';
  while (!text.empty()) {
    const char c = text.front();
    if (static_cast<unsigned char>(c) < 0x80) {
      if (NeedsEscape(c)) {
        AppendEscaped(buffer_, c);
      } else {
        buffer_ += c;
      }
      text.remove_prefix(1);
      continue;
    }
    const std::size_t length = FirstCharacter(text).length;
    buffer_ += length == 0 ? kReplacement : text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  buffer_ += '"';
}

void JsonWriter::Flush() {
  out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  buffer_.clear();
}

}  // namespace fabscan
