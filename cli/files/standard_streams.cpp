#include "standard_streams.h"

#include "command.h"

namespace fabscan {

void TakeStandardInput() {
  static bool taken = false;
  if (taken) {
    throw CommandError("standard input: can be read only once; name a file in place of one -",
                       kWrongUsage);
  }
  taken = true;
}

std::string InputName(const std::string& path) {
  return IsStandardStream(path) ? "standard input" : path;
}

std::string OutputName(const std::string& path) {
  return IsStandardStream(path) ? "standard output" : path;
}

}  // namespace fabscan
