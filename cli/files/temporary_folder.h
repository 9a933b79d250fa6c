#ifndef FABSCAN_CLI_TEMPORARY_FOLDER_H
#define FABSCAN_CLI_TEMPORARY_FOLDER_H

#include <string>

namespace fabscan {

/// Where temporary directories go: what TMPDIR names, or /tmp where it is not set or empty.
std::string TemporaryFolder();

/// Says that none can be made there, why, and what to do: `set TMPDIR`, and `else_do` after it.
[[noreturn]] void RefuseTemporaryFolder(int error_number, const char* else_do = "");

}  // namespace fabscan

#endif
