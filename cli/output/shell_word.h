#ifndef FABSCAN_CLI_SHELL_WORD_H
#define FABSCAN_CLI_SHELL_WORD_H

#include <string>
#include <string_view>

namespace fabscan {

/// `text` as one word of a shell's command line: as it stands where that is safe, else in single
/// quotes.
std::string ShellWord(std::string_view text);

}  // namespace fabscan

#endif
