#ifndef FABSCAN_PACKAGING_OPTIONS_H
#define FABSCAN_PACKAGING_OPTIONS_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace fabscan {

// Properties of command-line definitions that the reference needs.

std::vector<const CLI::App*> SubcommandsOf(const CLI::App& app);
std::vector<const CLI::Option*> PositionalsOf(const CLI::App& app);
/// Options with a name, `--help` first.
std::vector<const CLI::Option*> NamedOptionsOf(const CLI::App& app);

/// `-h`, `--help`: the names as typed.
std::vector<std::string> NamesOf(const CLI::Option& option);

bool TakesValue(const CLI::Option& option);

/// The name of the value in the help text: FILE, NAME, INT.
std::string ValueWord(const CLI::Option& option);

enum class ValueKind { kFile, kFolder, kOther };
/// How a shell completes the value.
ValueKind KindOfValue(const CLI::Option& option);

}  // namespace fabscan

#endif
