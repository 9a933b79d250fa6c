#include "fuzz/compiled_text.h"

#include <algorithm>
#include <cstddef>

namespace fabscan {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\r'; }

/// The strictest interpretation: joins lines if any compiler does.
std::string Joined(std::string_view source) {
  std::string text;
  for (std::size_t i = 0; i < source.size(); ++i) {
    const std::size_t width = source.substr(i, 3) == "?\?/" ? 3 : 1;
    if (width == 3 || source[i] == '\\') {
      std::size_t end = i + width;
      while (end < source.size() && IsBlank(source[end])) ++end;
      if (end < source.size() && source[end] == '\n') {
        i = end;
        continue;
      }
    }
    text += source[i];
  }
  return text;
}

/// The end of the literal that begins at `at`.
std::size_t EndOfLiteral(std::string_view text, std::size_t at) {
  const bool raw = text[at] == '"' && at > 0 && text[at - 1] == 'R';
  if (raw) {
    const std::size_t open = text.find('(', at);
    if (open == std::string_view::npos) return text.size();
    const std::string close = ')' + std::string(text.substr(at + 1, open - at - 1)) + '"';
    const std::size_t end = text.find(close, open);
    return end == std::string_view::npos ? text.size() : end + close.size();
  }
  for (std::size_t i = at + 1; i < text.size() && text[i] != '\n'; ++i) {
    if (text[i] == text[at]) return i + 1;
    if (text[i] == '\\') ++i;
  }
  return at + 1;
}

}  // namespace

std::string CompiledText(std::string_view source) {
  const std::string joined = Joined(source);
  const std::string_view text = joined;
  std::string left;
  const auto blank = [&] {
    if (!left.empty() && left.back() != ' ') left += ' ';
  };
  for (std::size_t i = 0; i < text.size();) {
    const std::string_view two = text.substr(i, 2);
    if (two == "//") {
      // For some compilers, a carriage return ends a line.
      i = std::min(text.find_first_of("\n\r", i), text.size());
    } else if (two == "/*") {
      const std::size_t end = text.find("*/", i + 2);
      i = end == std::string_view::npos ? text.size() : end + 2;
      blank();
    } else if (text[i] == '"' || text[i] == '\'') {
      const std::size_t end = EndOfLiteral(text, i);
      left += text.substr(i, end - i);
      i = end;
    } else {
      if (IsBlank(text[i]) || text[i] == '\n') {
        blank();
      } else {
        left += text[i];
      }
      ++i;
    }
  }
  return left;
}

}  // namespace fabscan
