#ifndef FABSCAN_CLI_REPORT_H
#define FABSCAN_CLI_REPORT_H

#include <string>
#include <string_view>

namespace fabscan {

/// Writes text to standard error. Never throws: if standard error cannot be written, there is
/// nowhere to report it.
void PrintMessage(std::string_view text) noexcept;
/// Prints `fabscan: error: MESSAGE` to standard error, without control characters: the message may
/// contain text from devices and files.
void PrintError(std::string_view message);
/// The same with `fabscan: warning: `.
void PrintWarning(std::string_view message);
/// The lines that these print.
std::string ErrorLine(std::string_view message);
std::string WarningLine(std::string_view message);
/// Prints the error line for lack of memory, without allocating.
void PrintOutOfMemory() noexcept;

/// Makes std::cout remember why a write failed. Must be called before anything is printed.
void KeepStandardOutputErrors();
/// Flushes standard output. Throws CommandError if any output was lost, or ClosedPipe.
void RequireStandardOutput();

/// The system's message for `error_number` (an errno value).
std::string CauseText(int error_number);
/// `PLACE: cannot ACTION: CAUSE; REMEDY`, for a failed write to a file or a stream.
std::string WriteErrorText(std::string_view place, std::string_view action, int error_number);

}  // namespace fabscan

#endif
