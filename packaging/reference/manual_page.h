#ifndef FABSCAN_PACKAGING_MANUAL_PAGE_H
#define FABSCAN_PACKAGING_MANUAL_PAGE_H

#include <string>

#include "cli/command_line.h"

namespace fabscan {

/// The page fabscan(1): purpose, subcommands, exit status.
std::string ManualPage(const CommandLine& line);

/// The page of one subcommand, fabscan-NAME(1).
std::string ManualPage(const CLI::App& subcommand);

}  // namespace fabscan

#endif
