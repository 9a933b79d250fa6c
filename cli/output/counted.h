#ifndef FABSCAN_CLI_COUNTED_H
#define FABSCAN_CLI_COUNTED_H

#include <fmt/format.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace fabscan {

/// `1 node`, `2 nodes`; `plural` is for nouns without a regular plural.
inline std::string Counted(std::size_t count, std::string_view noun, std::string_view plural = {}) {
  if (count == 1) return fmt::format("1 {}", noun);
  return plural.empty() ? fmt::format("{} {}s", count, noun) : fmt::format("{} {}", count, plural);
}

}  // namespace fabscan

#endif
