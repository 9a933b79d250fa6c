#ifndef FABSCAN_CLI_OPTION_FILE_H
#define FABSCAN_CLI_OPTION_FILE_H

#include <cstddef>
#include <string>

namespace fabscan {

/// A small file that an option names, such as one with a key.
struct OptionFile {
  const std::string& path;  // - is standard input
  const char* content;      // for messages: "the key"
  const char* option;       // for messages: "--key-file"
  std::size_t max_bytes;    // a larger file is an error
};

/// The content of the file. Throws CommandError with path, cause and remedy.
std::string ReadOptionFile(const OptionFile& file);

}  // namespace fabscan

#endif
