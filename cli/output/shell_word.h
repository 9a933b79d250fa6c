#ifndef FABSCAN_CLI_SHELL_WORD_H
#define FABSCAN_CLI_SHELL_WORD_H

#include <string>
#include <string_view>

namespace fabscan {

/// `text` as one word of a shell command: unchanged if that is safe, otherwise in single quotes.
std::string ShellWord(std::string_view text);

}  // namespace fabscan

#endif
