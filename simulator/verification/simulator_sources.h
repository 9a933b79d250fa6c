#ifndef FABSCAN_SIMULATOR_VERIFICATION_SIMULATOR_SOURCES_H
#define FABSCAN_SIMULATOR_VERIFICATION_SIMULATOR_SOURCES_H

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fabscan {

/// A file of the reference simulator. The sources are part of the program, so that it never
/// compiles against a simulator other than its own.
struct SimulatorSource {
  const char* path;  // relative to the simulator's folder
  std::string_view text;
};

/// The last row's path is null.
extern const SimulatorSource kSimulatorSources[];

/// The text of the file; throws std::logic_error when there is none.
std::string_view SimulatorSourceText(std::string_view path);

/// A text and what replaces it.
using Replacement = std::pair<std::string_view, std::string>;
/// The text with all replacements made in one pass: what replaces a text is not looked at again.
std::string Replaced(std::string_view text, const std::vector<Replacement>& replacements);

/// The example device's file, made a device of the prefix: its name stands in the prefix's letter
/// case, in lower case and in upper case.
std::string DeviceSource(std::string_view example_path, const std::string& prefix);

/// Letters of the prefix made small, as in the names of its files.
std::string LowerCase(std::string text);

}  // namespace fabscan

#endif
