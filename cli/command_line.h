#ifndef FABSCAN_CLI_COMMAND_LINE_H
#define FABSCAN_CLI_COMMAND_LINE_H

#include <CLI/CLI.hpp>
#include <cstddef>
#include <functional>
#include <map>
#include <string>

#include "cli/command.h"

namespace fabscan {

/// What stands below the options: paragraphs in lines of at most `width` columns; what is indented,
/// such as a command to copy, stays as it is.
std::string NotesText(const std::string& notes, std::size_t width);

/// The words that the command understands: every subcommand with its options, what help says of
/// them, and what each runs. The command parses with it; its reference is written from it.
struct CommandLine {
  CommandLine();

  CLI::App app;
  std::map<const CLI::App*, std::function<ExitStatus()>> actions;
};

}  // namespace fabscan

#endif
