#include "snapshot/json_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "model/utf8.h"

namespace fabscan {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Whether a byte is a character that needs no escape.
constexpr std::array<bool, 256> MakePlain() {
  std::array<bool, 256> plain = {};
  for (std::size_t byte = 0x20; byte < 0x80; ++byte) plain[byte] = byte != '"' && byte != '\\';
  return plain;
}
constexpr std::array<bool, 256> kPlain = MakePlain();

bool IsPlain(char c) { return kPlain[static_cast<unsigned char>(c)]; }

/// Eight times the same byte.
constexpr u_int64_t Eight(unsigned char byte) { return 0x0101010101010101U * byte; }

/// Whether eight bytes are plain: the highest bit of each byte marks one that is not.
bool EightArePlain(const char* bytes) {
  u_int64_t eight = 0;
  std::memcpy(&eight, bytes, sizeof eight);
  const auto zero = [](u_int64_t word) { return (word - Eight(1)) & ~word; };
  const u_int64_t wrong =
      eight | (eight - Eight(0x20)) | zero(eight ^ Eight('"')) | zero(eight ^ Eight('\\'));
  return (wrong & Eight(0x80)) == 0;
}

bool AllPlain(std::string_view text) {
  if (text.size() < sizeof(u_int64_t)) return std::all_of(text.begin(), text.end(), IsPlain);
  const char* const last = text.data() + text.size() - sizeof(u_int64_t);
  for (const char* at = text.data(); at < last; at += sizeof(u_int64_t)) {
    if (!EightArePlain(at)) return false;
  }
  return EightArePlain(last);
}

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
    default: {
      const DigitPair& pair = kHexPairs[static_cast<unsigned char>(c)];
      Append("\\u00");
      Append({pair.digits, sizeof pair.digits});
    }
  }
}

void JsonWriter::Number(u_int64_t value) {
  AtOnce([&](JsonPiece& to) {
    value <= std::numeric_limits<u_int32_t>::max()
        ? to.Number(static_cast<u_int32_t>(value))
        : to.Value(std::to_chars(to.Begin(), to.end() + kNumberBytes, value).ptr);
  });
}

bool JsonWriter::IsWord(std::string_view text) {
  return text.size() < kMostAtOnce / 2 && AllPlain(text);
}

void JsonWriter::String(std::string_view text) {
  if (IsWord(text)) {
    return AtOnce([&](JsonPiece& to) { to.Word(text); });
  }
  AtOnce([](JsonPiece& to) { to.Begin(); });
  Append("\"");
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
  Append("\"");
}

void JsonWriter::Raw(std::string_view json) {
  AtOnce([](JsonPiece& to) { to.Begin(); });
  Append(json);
}

void JsonWriter::Append(std::string_view text) {
  while (!text.empty()) {
    if (size_ >= kPieceBytes) WritePiece();
    const std::size_t taken = std::min(text.size(), kMostAtOnce);
    std::memcpy(buffer_.data() + size_, text.data(), taken);
    size_ += taken;
    text.remove_prefix(taken);
  }
}

void JsonWriter::WritePiece() {
  out_.write(buffer_.data(), kPieceBytes);
  size_ -= kPieceBytes;
  std::memcpy(buffer_.data(), buffer_.data() + kPieceBytes, size_);
}

void JsonWriter::Flush() {
  out_.write(buffer_.data(), static_cast<std::streamsize>(size_));
  size_ = 0;
}

}  // namespace fabscan
