#include "model/utf8.h"

namespace fabscan {

namespace {

/// Properties of a lead byte: number of bytes, mask of its bits, smallest code of this length.
struct Form {
  unsigned char mask;
  unsigned char lead;
  std::size_t length;
  char32_t smallest;
};

constexpr Form kForms[] = {
    {0x80, 0x00, 1, 0x0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
};

constexpr bool IsSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

}  // namespace

Utf8Character FirstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  for (const Form& form : kForms) {
    if ((lead & form.mask) != form.lead) continue;
    if (text.size() < form.length) return {};
    char32_t code = lead & static_cast<unsigned char>(~form.mask);
    for (std::size_t i = 1; i < form.length; ++i) {
      const auto next = static_cast<unsigned char>(text[i]);
      if ((next & 0xC0U) != 0x80U) return {};
      code = (code << 6U) | (next & 0x3FU);
    }
    if (code < form.smallest || code > 0x10FFFF || IsSurrogate(code)) return {};
    return {code, form.length};
  }
  return {};
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    if (static_cast<unsigned char>(text.front()) < 0x80) {
      text.remove_prefix(1);
      continue;
    }
    const std::size_t length = FirstCharacter(text).length;
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace fabscan
