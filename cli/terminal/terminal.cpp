#include "cli/terminal/terminal.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "model/harmless_name.h"

namespace fabscan {

namespace {

struct Character {
  std::string_view bytes;
  bool is_control;  // also of bytes that are not UTF-8, and of what is invisible
  std::size_t width;
};

/// Removes the first character from `rest`.
Character NextCharacter(std::string_view& rest) {
  utf8proc_int32_t character = 0;
  const utf8proc_ssize_t size =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(rest.data()),
                       static_cast<utf8proc_ssize_t>(rest.size()), &character);
  const bool valid = size > 0;
  const std::string_view bytes = rest.substr(0, valid ? static_cast<std::size_t>(size) : 1);
  rest.remove_prefix(bytes.size());
  if (!valid || IsDeceptive(static_cast<char32_t>(character))) return {bytes, true, 1};
  return {bytes, false, static_cast<std::size_t>(utf8proc_charwidth(character))};
}

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

constexpr std::string_view kCodes[] = {"",        "\x1b[1m",  "\x1b[32m",
                                       "\x1b[2m", "\x1b[33m", "\x1b[31m"};
constexpr std::string_view kPlainAgain = "\x1b[0m";
constexpr std::string_view kEllipsis = "\u2026";

}  // namespace

Terminal StandardOutput() {
  Terminal terminal;
  if (::isatty(STDOUT_FILENO) != 1) return terminal;
  const char* kind = std::getenv("TERM");
  terminal.colour = !IsSet("NO_COLOR") && kind != nullptr && std::string_view(kind) != "dumb";
  terminal.width = WidthOf(STDOUT_FILENO);
  return terminal;
}

std::size_t WidthOf(int file) {
  struct winsize size {};
  return ::ioctl(file, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::string Painted(std::string_view text, Style style, const Terminal& terminal) {
  if (!terminal.colour || style == Style::kPlain || text.empty()) return std::string(text);
  std::string painted(kCodes[static_cast<std::size_t>(style)]);
  painted += text;
  painted += kPlainAgain;
  return painted;
}

std::string WithoutControls(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const Character character = NextCharacter(text);
    if (!character.is_control) {
      shown += character.bytes;
      continue;
    }
    for (const char byte : character.bytes) {
      fmt::format_to(std::back_inserter(shown), "\\x{:02x}", static_cast<unsigned char>(byte));
    }
  }
  return shown;
}

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) width += NextCharacter(text).width;
  return width;
}

std::string Cut(std::string_view text, std::size_t width) {
  if (DisplayWidth(text) <= width || width == 0) return std::string(text);
  std::string_view rest = text;
  std::size_t kept = 0;
  std::size_t columns = 0;
  while (!rest.empty()) {
    const Character character = NextCharacter(rest);
    columns += character.width;
    if (columns + 1 > width) break;
    kept += character.bytes.size();
  }
  return std::string(text.substr(0, kept)) += kEllipsis;
}

std::vector<std::string> Wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> lines(1);
  std::size_t used = 0;  // columns of the last line
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    const std::string_view word = text.substr(begin, end - begin);
    const std::size_t columns = DisplayWidth(word);
    if (lines.back().empty()) {
      used = columns;
    } else if (used + 1 + columns <= width || width == 0) {
      lines.back() += ' ';
      used += 1 + columns;
    } else {
      lines.emplace_back();
      used = columns;
    }
    lines.back() += word;
    begin = end + 1;
  }
  return lines;
}

std::string Beside(std::string_view head, std::string_view text, std::size_t width) {
  const std::size_t indent = DisplayWidth(head);
  std::string beside(head);
  for (const std::string& line : Wrapped(text, width > indent ? width - indent : width)) {
    if (beside.size() > head.size()) beside += '\n' + std::string(indent, ' ');
    beside += line;
  }
  return beside + '\n';
}

std::string Paragraph(std::string_view text, const Terminal& terminal) {
  std::string paragraph;
  for (const std::string& line : Wrapped(text, terminal.width)) paragraph += line + '\n';
  return paragraph;
}

}  // namespace fabscan
