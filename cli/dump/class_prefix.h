#ifndef FABSCAN_CLI_CLASS_PREFIX_H
#define FABSCAN_CLI_CLASS_PREFIX_H

#include <string>
#include <string_view>

namespace fabscan {

/// Why `prefix` is not a valid class prefix; empty if it is. A prefix is a C++ identifier of ASCII
/// letters, digits and underscores, and neither a keyword nor reserved.
std::string_view FaultOfClassPrefix(std::string_view prefix);

/// Throws CommandError (kWrongUsage) for an invalid prefix.
void CheckClassPrefix(std::string_view prefix);

/// The prefix in lower case, which names the file and the header that it includes.
std::string LowerCasePrefix(std::string_view prefix);
/// The name of the generated file, without a directory.
std::string GeneratedFileName(std::string_view prefix);

}  // namespace fabscan

#endif
