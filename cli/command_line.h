#ifndef FABSCAN_CLI_COMMAND_LINE_H
#define FABSCAN_CLI_COMMAND_LINE_H

#include <CLI/CLI.hpp>
#include <cstddef>
#include <functional>
#include <map>
#include <string>

#include "cli/command.h"

namespace fabscan {

/// The text below the options: wraps paragraphs to `width` columns; keeps indented lines, such as
/// commands to copy, unchanged.
std::string NotesText(const std::string& notes, std::size_t width);

/// The command-line parser: every subcommand with its options, help texts and action. The manual
/// pages and completions are generated from it.
struct CommandLine {
  CommandLine();

  CLI::App app;
  std::map<const CLI::App*, std::function<ExitStatus()>> actions;
};

}  // namespace fabscan

#endif
