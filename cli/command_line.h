#ifndef FABSCAN_CLI_COMMAND_LINE_H
#define FABSCAN_CLI_COMMAND_LINE_H

#include <CLI/CLI.hpp>
#include <functional>
#include <map>

#include "command.h"

namespace fabscan {

/// The words that the command understands: every subcommand with its options, what help says of
/// them, and what each runs. The command parses with it; its reference is written from it.
struct CommandLine {
  CommandLine();

  CLI::App app;
  std::map<const CLI::App*, std::function<ExitStatus()>> actions;
};

}  // namespace fabscan

#endif
