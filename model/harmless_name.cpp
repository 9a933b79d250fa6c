#include "model/harmless_name.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "model/utf8.h"

namespace fabscan {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

struct CodeRange {
  char32_t first;
  char32_t last;
};

// The characters with these properties in Unicode 15.1, in order. Perl, which knows an older
// Unicode, prints most of them:
//   perl -e 'for (0..0x10FFFF) { printf "%X\n", $_ if chr =~
//     /[\p{Cc}\p{Cf}\p{Zl}\p{Zp}\p{Default_Ignorable_Code_Point}]/ }'
constexpr CodeRange kDeceptive[] = {
    {0x00, 0x1F},       {0x7F, 0x9F},       {0xAD, 0xAD},       {0x34F, 0x34F},
    {0x600, 0x605},     {0x61C, 0x61C},     {0x6DD, 0x6DD},     {0x70F, 0x70F},
    {0x890, 0x891},     {0x8E2, 0x8E2},     {0x115F, 0x1160},   {0x17B4, 0x17B5},
    {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},   {0x2060, 0x206F},
    {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB},   {0x110BD, 0x110BD}, {0x110CD, 0x110CD}, {0x13430, 0x1343F},
    {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF},
};

constexpr bool IsInDeceptiveRange(char32_t code) {
  for (const CodeRange& range : kDeceptive) {
    if (code <= range.last) return code >= range.first;
  }
  return false;
}

/// The value of an upper-case hexadecimal digit, or -1.
constexpr int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

constexpr bool ReadsAsEscape(std::string_view text) {
  return text.size() >= 3 && text[0] == kEscapeMark && DigitValue(text[1]) >= 0 &&
         DigitValue(text[2]) >= 0;
}

/// Whether the character at the start of `rest` is hazardous in source after `before`.
constexpr bool IsHazard(char before, std::string_view rest, char32_t code) {
  switch (rest.front()) {
    case '\\':
    case '"':
      return true;
    case '*':
      return before == '/';
    case '?':
      return before == '?';
    case kEscapeMark:
      return ReadsAsEscape(rest);
    default:
      return IsInDeceptiveRange(code);
  }
}

/// Whether an ASCII character is safe after any other; an escape may follow.
constexpr bool IsPlain(char c) {
  const char rest[] = {c, '0', '0'};
  for (char before = ' '; before <= '~'; ++before) {
    if (IsHazard(before, {rest, sizeof rest}, static_cast<unsigned char>(c))) return false;
  }
  return true;
}

/// Bytes that need no further check: nearly all bytes of a name.
constexpr std::array<bool, 256> MakePlain() {
  std::array<bool, 256> plain = {};
  for (char c = ' '; c <= '~'; ++c) plain[static_cast<unsigned char>(c)] = IsPlain(c);
  return plain;
}
constexpr std::array<bool, 256> kPlain = MakePlain();

std::size_t PlainLength(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() && kPlain[static_cast<unsigned char>(text[length])]) ++length;
  return length;
}

void AppendEscaped(std::string& to, std::string_view bytes) {
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    to += kEscapeMark;
    to += kDigits[value >> 4U];
    to += kDigits[value & 0xFU];
  }
}

}  // namespace

bool IsDeceptive(char32_t code) { return IsInDeceptiveRange(code); }

std::string HarmlessName(std::string_view device_name) {
  if (PlainLength(device_name) == device_name.size()) return std::string(device_name);
  std::string harmless;
  harmless.reserve(device_name.size());
  for (std::string_view rest = device_name; !rest.empty();) {
    if (const std::size_t plain = PlainLength(rest)) {
      harmless.append(rest.substr(0, plain));
      rest.remove_prefix(plain);
      continue;
    }
    const Utf8Character character = FirstCharacter(rest);
    const std::size_t length = std::max<std::size_t>(character.length, 1);
    const char before = harmless.empty() ? '\0' : harmless.back();
    if (character.length == 0 || IsHazard(before, rest, character.code)) {
      AppendEscaped(harmless, rest.substr(0, length));
    } else {
      harmless.append(rest.substr(0, length));
    }
    rest.remove_prefix(length);
  }
  return harmless;
}

std::string OriginalName(std::string_view harmless_name) {
  if (harmless_name.find(kEscapeMark) == std::string_view::npos) return std::string(harmless_name);
  std::string original;
  original.reserve(harmless_name.size());
  for (std::string_view rest = harmless_name; !rest.empty();) {
    if (ReadsAsEscape(rest)) {
      original += static_cast<char>(DigitValue(rest[1]) * 16 + DigitValue(rest[2]));
      rest.remove_prefix(3);
    } else {
      original += rest.front();
      rest.remove_prefix(1);
    }
  }
  return original;
}

}  // namespace fabscan
