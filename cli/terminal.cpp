#include "terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cwchar>

namespace fabscan {

namespace {

/// Has the C library read text as UTF-8 while it lives, whatever the user's locale.
class ReadingUtf8 {
 public:
  ReadingUtf8() {
    static const locale_t utf8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    before_ = ::uselocale(utf8);
  }
  ~ReadingUtf8() { ::uselocale(before_); }
  ReadingUtf8(const ReadingUtf8&) = delete;
  ReadingUtf8& operator=(const ReadingUtf8&) = delete;

 private:
  locale_t before_;
};

/// Takes the first character off `rest`; returns its columns, and its bytes in `size`.
std::size_t TakeCharacter(std::string_view& rest, std::size_t& size) {
  std::mbstate_t state{};
  wchar_t character = 0;
  const std::size_t taken = std::mbrtowc(&character, rest.data(), rest.size(), &state);
  const bool valid = taken != 0 && taken <= rest.size();
  size = valid ? taken : 1;
  rest.remove_prefix(size);
  const int width = valid ? ::wcwidth(character) : 1;
  return width < 0 ? 1 : static_cast<std::size_t>(width);
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

std::size_t DisplayWidth(std::string_view text) {
  const ReadingUtf8 utf8;
  std::size_t width = 0;
  for (std::size_t size = 0; !text.empty();) width += TakeCharacter(text, size);
  return width;
}

std::string Cut(std::string_view text, std::size_t width) {
  if (DisplayWidth(text) <= width || width == 0) return std::string(text);
  const ReadingUtf8 utf8;
  std::string_view rest = text;
  std::size_t kept = 0;
  std::size_t columns = 0;
  for (std::size_t size = 0; !rest.empty(); kept += size) {
    columns += TakeCharacter(rest, size);
    if (columns + 1 > width) break;
  }
  return std::string(text.substr(0, kept)) += kEllipsis;
}

std::vector<std::string> Wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> lines(1);
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    const std::string word(text.substr(begin, end - begin));
    std::string& line = lines.back();
    if (line.empty()) {
      line = word;
    } else if (DisplayWidth(line) + 1 + DisplayWidth(word) <= width || width == 0) {
      line += ' ' + word;
    } else {
      lines.push_back(word);
    }
    begin = end + 1;
  }
  return lines;
}

std::string Paragraph(std::string_view text, const Terminal& terminal) {
  std::string paragraph;
  for (const std::string& line : Wrapped(text, terminal.width)) paragraph += line + '\n';
  return paragraph;
}

}  // namespace fabscan
