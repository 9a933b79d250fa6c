#ifndef FABSCAN_SIMULATOR_VERIFICATION_SIMULATOR_SOURCES_H
#define FABSCAN_SIMULATOR_VERIFICATION_SIMULATOR_SOURCES_H

#include <string>
#include <string_view>

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

/// The example device's file, made a device of the prefix: its name stands in the prefix's letter
/// case, in lower case and in upper case.
std::string DeviceSource(std::string_view example_path, const std::string& prefix);

/// Letters of the prefix made small, as in the names of its files.
std::string LowerCase(std::string text);

}  // namespace fabscan

#endif
