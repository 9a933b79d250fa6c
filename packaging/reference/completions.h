#ifndef FABSCAN_PACKAGING_COMPLETIONS_H
#define FABSCAN_PACKAGING_COMPLETIONS_H

#include <CLI/CLI.hpp>
#include <string>

namespace fabscan {

// Shell completions: subcommands, their options, files and directories.

std::string BashCompletion(const CLI::App& app);
std::string ZshCompletion(const CLI::App& app);
std::string FishCompletion(const CLI::App& app);

}  // namespace fabscan

#endif
