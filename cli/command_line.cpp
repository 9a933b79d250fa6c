#include "command_line.h"

#include <fmt/format.h>
#include <version.h>

#include "commands.h"
#include "progress.h"

namespace fabscan {

CommandLine::CommandLine()
    : app("Turns what an InfiniBand fabric reported into C++ source for a fabric simulator.",
          "fabscan") {
  app.set_version_flag("--version", fmt::format("fabscan {}", kVersion));
  app.require_subcommand(1);
  app.get_formatter()->column_width(32);
  app.footer("'fabscan SUBCOMMAND --help' tells more, with an example.");

  for (const Command* command = kCommands; command->name != nullptr; ++command) {
    CLI::App* subcommand = app.add_subcommand(command->name, command->summary);
    actions[subcommand] = command->add(*subcommand);
    AddLoudnessOptions(*subcommand);
  }
}

}  // namespace fabscan
