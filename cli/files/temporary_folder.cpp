#include "cli/files/temporary_folder.h"

#include <fmt/format.h>

#include <cstdlib>

#include "cli/command.h"
#include "cli/output/report.h"

namespace fabscan {

std::string TemporaryFolder() {
  const char* set = std::getenv("TMPDIR");
  return set != nullptr && *set != '\0' ? set : "/tmp";
}

void RefuseTemporaryFolder(int error_number, const char* else_do) {
  throw CommandError(fmt::format("{}: cannot make a temporary directory: {}; set TMPDIR{}",
                                 TemporaryFolder(), CauseText(error_number), else_do));
}

}  // namespace fabscan
