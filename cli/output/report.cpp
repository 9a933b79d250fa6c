#include "report.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <system_error>

#include "terminal.h"

namespace fabscan {

namespace {

void PrintLine(std::string_view kind, std::string_view message) {
  const std::string line = fmt::format("fabscan: {}: {}\n", kind, WithoutControls(message));
  // Results come before what is said of them when both go to the same place.
  FlushStandardOutput();
  // Nothing is left to tell of a standard error that cannot be written.
  static_cast<void>(std::fwrite(line.data(), 1, line.size(), stderr));
}

}  // namespace

void PrintError(std::string_view message) { PrintLine("error", message); }
void PrintWarning(std::string_view message) { PrintLine("warning", message); }

void PrintOutOfMemory() {
  FlushStandardOutput();
  constexpr std::string_view kLine =
      "fabscan: error: out of memory; choose fewer nodes with --guid, or use a larger machine\n";
  static_cast<void>(std::fwrite(kLine.data(), 1, kLine.size(), stderr));
}

int FlushStandardOutput() {
  static int first_failure = 0;
  errno = 0;
  std::cout.flush();
  const bool written = std::fflush(stdout) == 0 && std::ferror(stdout) == 0 && std::cout.good();
  if (!written && first_failure == 0) first_failure = errno != 0 ? errno : EIO;
  return first_failure;
}

std::string CauseText(int error_number) { return std::generic_category().message(error_number); }

}  // namespace fabscan
