#include "cli/commands.h"

namespace fabscan {

#define FABSCAN_COMMAND(name, add, summary) std::function<ExitStatus()> add(CLI::App& app);
#include "commands.inc"
#undef FABSCAN_COMMAND

const Command kCommands[] = {
#define FABSCAN_COMMAND(name, add, summary) {name, summary, add},
#include "commands.inc"
#undef FABSCAN_COMMAND
    {nullptr, nullptr, nullptr},
};

const Command* FindCommand(std::string_view name) {
  for (const Command* command = kCommands; command->name != nullptr; ++command) {
    if (name == command->name) return command;
  }
  return nullptr;
}

}  // namespace fabscan
