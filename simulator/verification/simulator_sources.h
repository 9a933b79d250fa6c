#ifndef FABSCAN_SIMULATOR_VERIFICATION_SIMULATOR_SOURCES_H
#define FABSCAN_SIMULATOR_VERIFICATION_SIMULATOR_SOURCES_H

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fabscan {

/// A file of the reference simulator. The sources are embedded in the program, so that it always
/// compiles against its own simulator.
struct SimulatorSource {
  const char* path;  // relative to the simulator's directory
  std::string_view text;
};

/// The last row's path is null.
extern const SimulatorSource kSimulatorSources[];

/// The text of the file; throws std::logic_error if it does not exist.
std::string_view SimulatorSourceText(std::string_view path);

/// A text and its replacement.
using Replacement = std::pair<std::string_view, std::string>;
/// Makes all replacements in one pass: replaced text is not replaced again.
std::string Replaced(std::string_view text, const std::vector<Replacement>& replacements);

/// A file of the example device with its name replaced by the prefix, as is, in lower case, and in
/// upper case.
std::string DeviceSource(std::string_view example_path, const std::string& prefix);

/// The prefix in lower case, as in the names of its files.
std::string LowerCase(std::string text);

}  // namespace fabscan

#endif
