#include "cli/files/read_limits.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <string>

namespace fabscan {

namespace {

// The parser counts bytes in 32 bits; the store counts ports in 32 bits, with up to 256 per node.
constexpr std::size_t kLargestLine = (std::size_t{4} << 30U) - 256;
constexpr std::size_t kMostNodes = 16'000'000;

/// Parses the suffix of a number; CLI11's own message would list every suffix that it knows.
std::string TakeEnding(std::string& text) {
  const std::string given = text;
  try {
    return CLI::AsSizeValue(false)(text);
  } catch (const CLI::ValidationError&) {
    return fmt::format("'{}' is not a number; it may end in K, M or G", given);
  }
}

void AddLimit(CLI::App& app, const char* name, const char* what, std::size_t& limit,
              std::size_t largest) {
  app.add_option(name, limit, what)
      ->transform(CLI::Validator(TakeEnding, "", ""))
      ->check(CLI::Range(std::size_t{1}, largest).description(""))
      ->capture_default_str()
      ->type_name("N")
      ->group("Snapshot limits; N may end in K, M or G");
}

}  // namespace

void AddReadLimits(CLI::App& app, SnapshotReadOptions& options) {
  AddLimit(app, "--max-line-bytes", "A longer line is an error", options.max_line_bytes,
           kLargestLine);
  AddLimit(app, "--max-nodes", "More nodes are an error", options.max_nodes, kMostNodes);
}

}  // namespace fabscan
