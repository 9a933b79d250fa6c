#ifndef FABSCAN_CLI_COMMANDS_H
#define FABSCAN_CLI_COMMANDS_H

#include <cstddef>
#include <string>
#include <string_view>

#include "command.h"

namespace fabscan {

/// Every subcommand, in the order that help shows them; the last row is followed by one whose name
/// is null.
extern const Command kCommands[];

/// Null when there is no such subcommand.
const Command* FindCommand(std::string_view name);

/// The one of `candidates` that `word` was probably meant to be; empty when none is near.
template <class Names>
std::string_view NearestName(std::string_view word, const Names& candidates);

/// How many single-letter changes, or swaps of neighbours, lead from one word to the other.
std::size_t EditDistance(std::string_view from, std::string_view to);

template <class Names>
std::string_view NearestName(std::string_view word, const Names& candidates) {
  std::size_t smallest = 1 + word.size() / 3;
  std::string_view nearest;
  for (std::string_view candidate : candidates) {
    const std::size_t distance = EditDistance(word, candidate);
    if (distance > smallest || (distance == smallest && !nearest.empty())) continue;
    smallest = distance;
    nearest = candidate;
  }
  return nearest;
}

}  // namespace fabscan

#endif
