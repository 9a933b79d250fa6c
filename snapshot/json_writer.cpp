#include "json_writer.h"

#include <utf8.h>

#include <algorithm>
#include <array>

namespace fabscan {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Whether a byte is a character that stands for itself.
constexpr std::array<bool, 256> MakePlain() {
  std::array<bool, 256> plain = {};
  for (std::size_t byte = 0x20; byte < 0x80; ++byte) plain[byte] = byte != '"' && byte != '\\';
  return plain;
}
constexpr std::array<bool, 256> kPlain = MakePlain();

bool IsPlain(char c) { return kPlain[static_cast<unsigned char>(c)]; }

}  // namespace

void JsonWriter::AppendEscaped(char c) {
  switch (c) {
    case '"':
      return Append("\\\"");
    case '\\':
      return Append("\\\\");
    case '\n':
      return Append("\\n");
    case '\t':
      return Append("\\t");
    default:
      Append("\\u00");
      Put(kHexDigits[static_cast<unsigned char>(c) >> 4U]);
      Put(kHexDigits[static_cast<unsigned char>(c) & 0xFU]);
  }
}

void JsonWriter::Hex(u_int64_t value, std::size_t digits) {
  Separate();
  Append("\"0x");
  std::size_t significant = 1;
  while (significant < 16 && value >> (4 * significant) != 0) ++significant;
  for (std::size_t i = std::max(significant, digits); i-- > 0;) {
    Put(i < 16 ? kHexDigits[value >> (4 * i) & 0xFU] : '0');
  }
  Put('"');
}

void JsonWriter::String(std::string_view text) {
  Separate();
  Put('"');
  while (!text.empty()) {
    const auto plain = static_cast<std::size_t>(
        std::find_if_not(text.begin(), text.end(), IsPlain) - text.begin());
    Append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) break;
    const char c = text.front();
    if (static_cast<unsigned char>(c) < 0x80) {
      AppendEscaped(c);
      text.remove_prefix(1);
      continue;
    }
    const std::size_t length = FirstCharacter(text).length;
    Append(length == 0 ? kReplacement : text.substr(0, length));
    text.remove_prefix(length == 0 ? 1 : length);
  }
  Put('"');
}

void JsonWriter::AppendLong(std::string_view text) {
  while (!text.empty()) {
    MakeRoom(1);
    const std::size_t taken = std::min(text.size(), buffer_.size() - size_);
    std::memcpy(buffer_.data() + size_, text.data(), taken);
    size_ += taken;
    text.remove_prefix(taken);
  }
}

void JsonWriter::Flush() {
  out_.write(buffer_.data(), static_cast<std::streamsize>(size_));
  size_ = 0;
}

}  // namespace fabscan
