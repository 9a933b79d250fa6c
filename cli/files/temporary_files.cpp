#include "cli/files/temporary_files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <system_error>

#include "cli/command.h"
#include "cli/output/report.h"

namespace fabscan {

namespace {

/// Whether the file system or the kernel does not support this type of move.
bool IsUnknownMove(int error_number) {
  return error_number == EINVAL || error_number == ENOSYS || error_number == ENOTSUP;
}

int MoveWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (!IsUnknownMove(errno)) return errno;
  if (::link(from.c_str(), to.c_str()) != 0) return errno;
  ::unlink(from.c_str());
  return 0;
}

}  // namespace

TemporaryFile::TemporaryFile() : cleanup_([this] { remove(); }) {}

TemporaryFile::~TemporaryFile() {
  const TerminationDeferred deferred;
  remove();
}

int TemporaryFile::Create(const std::string& directory) {
  static std::atomic<unsigned> number{0};
  constexpr mode_t kAsUmaskAllows = 0666;
  const TerminationDeferred deferred;
  for (;;) {
    path_ = fmt::format("{}/.fabscan-{}-{}", directory, ::getpid(), number++);
    const int file = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kAsUmaskAllows);
    if (file < 0 && errno == EEXIST) continue;  // left by an earlier process with this number
    if (file < 0) return errno;
    exists_ = true;
    ::close(file);
    return 0;
  }
}

int TemporaryFile::Replace(const std::string& target) {
  const TerminationDeferred deferred;
  if (::rename(path_.c_str(), target.c_str()) != 0) return errno;
  exists_ = false;
  return 0;
}

int TemporaryFile::MoveTo(const std::string& target) {
  const TerminationDeferred deferred;
  const int error_number = MoveWithoutReplacing(path_, target);
  if (error_number == 0) exists_ = false;
  return error_number;
}

void TemporaryFile::remove() noexcept {
  if (exists_) ::unlink(path_.c_str());
  exists_ = false;
}

TemporaryDirectory::TemporaryDirectory(const std::string& remedy) : cleanup_([this] { remove(); }) {
  const char* set = std::getenv("TMPDIR");
  const std::string parent = set != nullptr && *set != '\0' ? set : "/tmp";
  path_ = parent + "/fabscan-XXXXXX";
  const TerminationDeferred deferred;
  if (::mkdtemp(path_.data()) == nullptr) {
    throw CommandError(fmt::format("{}: cannot create a temporary directory: {}; set TMPDIR{}",
                                   parent, CauseText(errno), remedy));
  }
  exists_ = true;
}

TemporaryDirectory::~TemporaryDirectory() {
  remove();  // can take long; a signal may end the program meanwhile
  const TerminationDeferred deferred;
  exists_ = false;
}

void TemporaryDirectory::remove() noexcept {
  try {
    std::error_code ignored;
    if (exists_) std::filesystem::remove_all(path_, ignored);
  } catch (const std::bad_alloc&) {  // the rest stays in the temporary directory
  }
}

}  // namespace fabscan
