#ifndef FABSCAN_MODEL_UTF8_H
#define FABSCAN_MODEL_UTF8_H

#include <cstddef>
#include <string_view>

namespace fabscan {

/// One character of UTF-8 text. `length` is 0 if the text does not begin with a well-formed
/// character; overlong forms and surrogates are malformed.
struct Utf8Character {
  char32_t code = 0;
  std::size_t length = 0;
};

/// The first character of `text`, which is not empty.
Utf8Character FirstCharacter(std::string_view text);

/// Whether the whole text is well-formed UTF-8.
bool IsUtf8(std::string_view text);

}  // namespace fabscan

#endif
