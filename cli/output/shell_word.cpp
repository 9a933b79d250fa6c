#include "cli/output/shell_word.h"

#include <fmt/format.h>

#include <iterator>

#include "cli/terminal/terminal.h"

namespace fabscan {

namespace {

/// With an escape for each byte of a character that a terminal may interpret, and for each other
/// that is not ASCII: `$'a\033b'`.
std::string EscapedWord(std::string_view text) {
  std::string word = "$'";
  for (const char c : text) {
    if (c < ' ' || c > '~') {
      fmt::format_to(std::back_inserter(word), "\\{:03o}", static_cast<unsigned char>(c));
    } else {
      if (c == '\'' || c == '\\') word += '\\';
      word += c;
    }
  }
  return word + '\'';
}

}  // namespace

std::string ShellWord(std::string_view text) {
  constexpr std::string_view kSafe =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_@%+=:,./-";
  if (!text.empty() && text.find_first_not_of(kSafe) == std::string_view::npos) {
    return std::string(text);
  }
  if (WithoutControls(text) != text) return EscapedWord(text);
  std::string word = "'";
  for (const char c : text) {
    if (c == '\'') {
      word += "'\\''";
    } else {
      word += c;
    }
  }
  return word + '\'';
}

}  // namespace fabscan
