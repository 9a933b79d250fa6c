#include "cli/output/report.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <system_error>

#include "cli/command.h"
#include "cli/output/closed_pipe.h"
#include "cli/output/output_buffer.h"
#include "cli/terminal/terminal.h"

namespace fabscan {

namespace {

/// Never destroyed: std::cout is flushed after all objects of this program are destroyed.
OutputBuffer& StandardOutputBuffer() {
  static auto& buffer = *new OutputBuffer(STDOUT_FILENO);
  return buffer;
}

/// 0, or the errno value of the first write that failed.
int FlushStandardOutput() noexcept {
  std::cout.flush();
  if (std::cout.good()) return 0;
  const int error_number = StandardOutputBuffer().ErrorNumber();
  return error_number != 0 ? error_number : EIO;
}

std::string Line(std::string_view kind, std::string_view message) {
  return fmt::format("fabscan: {}: {}\n", kind, WithoutControls(message));
}

void PrintLine(const std::string& line) {
  // Results come before messages if both have the same destination.
  static_cast<void>(FlushStandardOutput());
  PrintMessage(line);
}

}  // namespace

void PrintMessage(std::string_view text) noexcept {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

std::string ErrorLine(std::string_view message) { return Line("error", message); }
std::string WarningLine(std::string_view message) { return Line("warning", message); }

void PrintError(std::string_view message) { PrintLine(ErrorLine(message)); }
void PrintWarning(std::string_view message) { PrintLine(WarningLine(message)); }

void PrintOutOfMemory() noexcept {
  static_cast<void>(FlushStandardOutput());
  PrintMessage(
      "fabscan: error: out of memory; choose fewer nodes with --guid, or use a larger machine\n");
}

void KeepStandardOutputErrors() { std::cout.rdbuf(&StandardOutputBuffer()); }

void RequireStandardOutput() {
  const int error_number = FlushStandardOutput();
  if (error_number == 0) return;
  ThrowIfClosedPipe(error_number);
  throw CommandError(WriteErrorText("standard output", "write", error_number));
}

std::string CauseText(int error_number) { return std::generic_category().message(error_number); }

std::string WriteErrorText(std::string_view place, std::string_view action, int error_number) {
  const bool is_full = error_number == ENOSPC || error_number == EDQUOT;
  return fmt::format("{}: cannot {}: {}; {}write elsewhere", place, action, CauseText(error_number),
                     is_full ? "free some space, or " : "");
}

}  // namespace fabscan
