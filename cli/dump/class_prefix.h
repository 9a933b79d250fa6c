#ifndef FABSCAN_CLI_CLASS_PREFIX_H
#define FABSCAN_CLI_CLASS_PREFIX_H

#include <string>
#include <string_view>

namespace fabscan {

/// Why `prefix` cannot name the class that holds the simulated devices; empty when it can. It is a
/// C++ identifier of ASCII letters, digits and underscores, neither a keyword nor reserved.
std::string_view FaultOfClassPrefix(std::string_view prefix);

/// Throws CommandError (wrong usage) for a prefix that has a fault.
void CheckClassPrefix(std::string_view prefix);

/// The prefix in lower case: it names the file, and the header that the file includes.
std::string LowerCasePrefix(std::string_view prefix);
/// The name of the generated file, without a folder.
std::string GeneratedFileName(std::string_view prefix);

}  // namespace fabscan

#endif
