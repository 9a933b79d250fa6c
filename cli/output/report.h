#ifndef FABSCAN_CLI_REPORT_H
#define FABSCAN_CLI_REPORT_H

#include <string>
#include <string_view>

namespace fabscan {

/// Writes text to standard error. Never throws: nothing can be reported of a standard error that
/// does not accept it.
void PrintMessage(std::string_view text) noexcept;
/// One line on standard error, `fabscan: error: MESSAGE`, without controls: the message may hold
/// text from devices and files.
void PrintError(std::string_view message);
/// The same with `fabscan: warning: `.
void PrintWarning(std::string_view message);
/// The error line for a lack of memory, printed without any.
void PrintOutOfMemory() noexcept;

/// Makes std::cout keep the cause of a failed write. To be called before anything is printed.
void KeepStandardOutputErrors();
/// Writes out what is pending on standard output. Throws CommandError if any result did not get
/// there, or ClosedPipe.
void RequireStandardOutput();

/// What the system says of `error_number` (an errno value).
std::string CauseText(int error_number);
/// `PLACE: cannot ACTION: CAUSE; REMEDY`, of a write to a file or a stream.
std::string WriteErrorText(std::string_view place, std::string_view action, int error_number);

}  // namespace fabscan

#endif
