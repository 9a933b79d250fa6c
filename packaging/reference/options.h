#ifndef FABSCAN_PACKAGING_OPTIONS_H
#define FABSCAN_PACKAGING_OPTIONS_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace fabscan {

// What the reference needs to know of a command line's definitions.

std::vector<const CLI::App*> SubcommandsOf(const CLI::App& app);
std::vector<const CLI::Option*> PositionalsOf(const CLI::App& app);
/// Those with a name, `--help` first.
std::vector<const CLI::Option*> NamedOptionsOf(const CLI::App& app);

/// `-h`, `--help`: as they are typed.
std::vector<std::string> NamesOf(const CLI::Option& option);

bool TakesValue(const CLI::Option& option);

/// What help calls the value: FILE, NAME, INT.
std::string ValueWord(const CLI::Option& option);

enum class ValueKind { kFile, kFolder, kOther };
/// What a shell can complete for the value.
ValueKind KindOfValue(const CLI::Option& option);

}  // namespace fabscan

#endif
