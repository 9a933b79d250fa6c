#ifndef FABSCAN_CLI_COMMANDS_H
#define FABSCAN_CLI_COMMANDS_H

#include <string_view>

#include "cli/command.h"

namespace fabscan {

/// Every subcommand, in the order of the help text; ends with a row whose name is null.
extern const Command kCommands[];

/// Null if there is no such subcommand.
const Command* FindCommand(std::string_view name);

}  // namespace fabscan

#endif
