#ifndef FABSCAN_PACKAGING_COMPLETIONS_H
#define FABSCAN_PACKAGING_COMPLETIONS_H

#include <CLI/CLI.hpp>
#include <string>

namespace fabscan {

// What a shell offers for the command's words: subcommands, their options, files and folders.

std::string BashCompletion(const CLI::App& app);
std::string ZshCompletion(const CLI::App& app);
std::string FishCompletion(const CLI::App& app);

}  // namespace fabscan

#endif
