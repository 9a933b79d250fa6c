#ifndef FABSCAN_CLI_REPORT_H
#define FABSCAN_CLI_REPORT_H

#include <string>
#include <string_view>

namespace fabscan {

/// One line on standard error, `fabscan: error: MESSAGE`, without controls: the message may hold
/// text from devices and files.
void PrintError(std::string_view message);
/// The same with `fabscan: warning: `.
void PrintWarning(std::string_view message);
/// The error line for a lack of memory, printed without any.
void PrintOutOfMemory();

/// Writes out what is pending on standard output. 0, or the errno of the first write that failed.
int FlushStandardOutput();

/// What the system says of `error_number` (an errno value).
std::string CauseText(int error_number);

}  // namespace fabscan

#endif
