#include "commands.h"

#include <algorithm>
#include <vector>

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

std::size_t EditDistance(std::string_view from, std::string_view to) {
  const std::size_t width = to.size() + 1;
  std::vector<std::size_t> table((from.size() + 1) * width);
  const auto at = [&](std::size_t row, std::size_t column) -> std::size_t& {
    return table[row * width + column];
  };
  for (std::size_t i = 0; i <= from.size(); ++i) at(i, 0) = i;
  for (std::size_t j = 0; j <= to.size(); ++j) at(0, j) = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t change = from[i - 1] == to[j - 1] ? 0U : 1U;
      at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + change});
      if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
        at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
      }
    }
  }
  return at(from.size(), to.size());
}

}  // namespace fabscan
