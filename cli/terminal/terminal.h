#ifndef FABSCAN_CLI_TERMINAL_H
#define FABSCAN_CLI_TERMINAL_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// The capabilities of standard output.
struct Terminal {
  bool colour = false;
  std::size_t width = 0;  // in columns; 0: no limit
};

/// The standard output of the process. Has colour and a width only on a terminal; no colour if
/// NO_COLOR is set and not empty, or TERM is "dumb".
Terminal StandardOutput();

/// The columns of the terminal `file`; 0 if it is not a terminal or the width is unknown.
std::size_t WidthOf(int file);

enum class Style { kPlain, kHead, kGood, kQuiet, kWarning, kBad };

/// `text` in this style, if the terminal has colour.
std::string Painted(std::string_view text, Style style, const Terminal& terminal);

/// `text` made safe for a terminal: control and invisible characters (see `IsDeceptive`), and bytes
/// that are not UTF-8, become `\xNN`.
std::string WithoutControls(std::string_view text);

/// The columns of UTF-8 text. Each invalid byte has one column.
std::size_t DisplayWidth(std::string_view text);

/// `text` if it fits `width` columns; otherwise its beginning with an ellipsis.
std::string Cut(std::string_view text, std::size_t width);

/// The text in lines of at most `width` columns (0: no limit), broken at blanks if possible.
std::vector<std::string> Wrapped(std::string_view text, std::size_t width);

/// `head` with the text to its right, in lines of at most `width` columns (0: no limit), each with
/// a line end.
std::string Beside(std::string_view head, std::string_view text, std::size_t width);

/// One paragraph that fits the terminal, with a line end.
std::string Paragraph(std::string_view text, const Terminal& terminal);

}  // namespace fabscan

#endif
