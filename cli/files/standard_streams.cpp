#include "cli/files/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <string_view>
#include <system_error>

#include "cli/command.h"
#include "cli/terminal/terminal.h"

namespace fabscan {

void OpenClosedStandardStreams() {
  // Reading or writing them still fails, as it does without this.
  constexpr int kModes[] = {O_WRONLY, O_RDONLY, O_WRONLY};
  for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(file, F_GETFD) >= 0) continue;
    static_cast<void>(::open("/dev/null", kModes[file]));  // gets the lowest free number, `file`
  }
}

std::optional<int> OpenFileNamed(const std::string& path) {
  if (path == "-" || path == "/dev/stdout") return STDOUT_FILENO;
  if (path == "/dev/stderr") return STDERR_FILENO;
  for (const std::string_view prefix : {"/dev/fd/", "/proc/self/fd/"}) {
    if (path.compare(0, prefix.size(), prefix) != 0) continue;
    int file = -1;
    const char* const end = path.data() + path.size();
    const auto [rest, error] = std::from_chars(path.data() + prefix.size(), end, file);
    if (error == std::errc() && rest == end && file >= 0) return file;
  }
  return std::nullopt;
}

void TakeStandardInput() {
  static bool taken = false;
  if (taken) {
    throw CommandError("standard input: can be read only once; use a file instead of one -",
                       kWrongUsage);
  }
  taken = true;
}

std::string InputName(const std::string& path) {
  return IsStandardStream(path) ? "standard input" : WithoutControls(path);
}

std::string OutputName(const std::string& path) {
  return IsStandardOutput(path) ? "standard output" : WithoutControls(path);
}

}  // namespace fabscan
