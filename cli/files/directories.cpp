#include "cli/files/directories.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "cli/command.h"
#include "cli/output/report.h"

namespace fabscan {

NewDirectories::NewDirectories() : cleanup_([this] { remove(); }) {}

NewDirectories::~NewDirectories() {
  const TerminationDeferred deferred;
  remove();
}

void NewDirectories::remove() noexcept {
  for (auto path = created_.rbegin(); path != created_.rend(); ++path) ::rmdir(path->c_str());
  created_.clear();
}

void NewDirectories::Make(const std::string& path) {
  std::filesystem::path partial;
  for (const std::filesystem::path& name : std::filesystem::path(path)) {
    partial /= name;
    const TerminationDeferred deferred;
    created_.reserve(created_.size() + 1);  // nothing may throw after the directory is created
    std::string created = partial.string();
    if (::mkdir(created.c_str(), 0777) == 0) {
      created_.push_back(std::move(created));
      continue;
    }
    const int error_number = errno;
    struct stat status {};
    if (::stat(created.c_str(), &status) == 0) {
      if (S_ISDIR(status.st_mode)) continue;
      throw CommandError(fmt::format("{}: is not a directory; use another path", created));
    }
    throw CommandError(fmt::format("{}: cannot create the directory: {}; use another path", created,
                                   CauseText(error_number)));
  }
}

}  // namespace fabscan
