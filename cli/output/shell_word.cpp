#include "cli/output/shell_word.h"

namespace fabscan {

std::string ShellWord(std::string_view text) {
  constexpr std::string_view kSafe =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_@%+=:,./-";
  if (!text.empty() && text.find_first_not_of(kSafe) == std::string_view::npos) {
    return std::string(text);
  }
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
