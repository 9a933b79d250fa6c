#ifndef FABSCAN_CLI_COMMANDS_H
#define FABSCAN_CLI_COMMANDS_H

#include <string_view>

#include "cli/command.h"

namespace fabscan {

/// Every subcommand, in the order that help shows them; the last row is followed by one whose name
/// is null.
extern const Command kCommands[];

/// Null when there is no such subcommand.
const Command* FindCommand(std::string_view name);

}  // namespace fabscan

#endif
