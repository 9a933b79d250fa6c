#ifndef FABSCAN_CLI_TERMINAL_H
#define FABSCAN_CLI_TERMINAL_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// What standard output shows.
struct Terminal {
  bool colour = false;
  std::size_t width = 0;  // in columns; 0: no limit
};

/// Of the process. Colour and a width only where standard output is a terminal; no colour where
/// NO_COLOR is set and not empty, or TERM is "dumb".
Terminal StandardOutput();

/// The columns of the terminal behind `file`; 0 where it is none, or does not tell.
std::size_t WidthOf(int file);

enum class Style { kPlain, kHead, kGood, kQuiet, kWarning, kBad };

/// `text` in this style, where the terminal has colour.
std::string Painted(std::string_view text, Style style, const Terminal& terminal);

/// `text` that a terminal shows and does not obey: control characters, and bytes that are no UTF-8,
/// stand as `\xNN`.
std::string WithoutControls(std::string_view text);

/// The columns that UTF-8 text takes. Bytes that are no character take one each.
std::size_t DisplayWidth(std::string_view text);

/// `text` if it fits `width` columns; otherwise its beginning with an ellipsis.
std::string Cut(std::string_view text, std::size_t width);

/// The text in lines of at most `width` columns (0: no limit), broken at blanks where there are
/// any.
std::vector<std::string> Wrapped(std::string_view text, std::size_t width);

/// `head` with the text beside it, in lines of at most `width` columns (0: no limit), each with a
/// line end.
std::string Beside(std::string_view head, std::string_view text, std::size_t width);

/// One paragraph that fits the terminal, with a line end.
std::string Paragraph(std::string_view text, const Terminal& terminal);

}  // namespace fabscan

#endif
