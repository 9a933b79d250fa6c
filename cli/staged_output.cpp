#include "staged_output.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "cleanup_on_signal.h"
#include "command.h"
#include "report.h"

namespace fabscan {

namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& action, int error_number,
                       const char* advice) {
  throw CommandError(
      fmt::format("{}: cannot {}: {}; {}", path, action, CauseText(error_number), advice));
}

constexpr char kAdviseSpace[] = "free some space, or write elsewhere";
constexpr char kAdviseForce[] = "--force replaces it";
constexpr char kAdviseFolder[] = "name a folder that exists and that you may write";

/// The path that a symbolic link at `path` leads to; `path` itself where there is none.
std::string FollowLink(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
  const std::unique_ptr<char, decltype(&std::free)> target(::realpath(path.c_str(), nullptr),
                                                           &std::free);
  if (!target) Fail(path, "follow the link", errno, "remove it, or write elsewhere");
  return target.get();
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

/// Makes what was written to `path`, a file or a folder, survive a loss of power. 0 or errno.
int Synchronise(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return errno;
  const int error_number = ::fsync(file) == 0 ? 0 : errno;
  ::close(file);
  return error_number;
}

/// Moves `from` to `to` unless there is something. 0 or errno.
int MoveWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  const bool unknown_here = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
  if (!unknown_here) return errno;
  if (::link(from.c_str(), to.c_str()) != 0) return errno;
  ::unlink(from.c_str());
  return 0;
}

}  // namespace

StagedOutput::StagedOutput(const std::string& path, bool force)
    : path_(path), target_(path), force_(force) {
  if (isStandardOutput()) return;
  target_ = FollowLink(path_);
  refuseTarget();
  makeFolder();
}

StagedOutput::~StagedOutput() { removeFolder(); }

void StagedOutput::refuseTarget() const {
  const std::string name = NameOf(target_);
  struct stat status {};
  if (name.empty() || name == "." || name == "..") {
    throw CommandError(fmt::format("{}: names a folder; name a file in it", path_));
  }
  if (::stat(target_.c_str(), &status) != 0) return;
  if (!S_ISREG(status.st_mode)) {
    throw CommandError(fmt::format("{}: exists and is no regular file; write elsewhere", path_));
  }
  if (!force_) throw CommandError(fmt::format("{}: exists; {}", path_, kAdviseForce));
}

void StagedOutput::makeFolder() {
  const std::string parent = FolderOf(target_);
  std::string folder = parent + "/.fabscan-XXXXXX";
  staged_path_ = folder + '/' + NameOf(target_);
  // Once the folder is there nothing may throw: no destructor would remove it.
  const SignalsHeld held;
  if (::mkdtemp(folder.data()) == nullptr) Fail(parent, "write there", errno, kAdviseFolder);
  staged_path_.replace(0, folder.size(), folder);
  folder_.swap(folder);
  RemoveOnSignal(staged_path_, folder_);
}

std::ostream& StagedOutput::stream() {
  if (isStandardOutput()) return std::cout;
  if (!file_.is_open()) {
    errno = 0;
    file_.open(staged_path_, std::ios::binary | std::ios::trunc);
    if (!file_.is_open()) Fail(path_, "write", errno, kAdviseSpace);
  }
  return file_;
}

void StagedOutput::finishStream() {
  std::ostream& out = stream();
  errno = 0;
  out.flush();
  int error_number = errno;
  bool written = out.good();
  if (!isStandardOutput()) {
    file_.close();
    if (written && !file_.good()) {
      written = false;
      error_number = errno;
    }
  }
  if (!written) {
    Fail(isStandardOutput() ? "standard output" : path_, "write",
         error_number != 0 ? error_number : ENOSPC, kAdviseSpace);
  }
}

void StagedOutput::Commit() {
  if (isStandardOutput() || file_.is_open()) finishStream();
  if (isStandardOutput()) return;
  if (const int error_number = Synchronise(staged_path_); error_number != 0) {
    Fail(path_, "write", error_number, kAdviseSpace);
  }
  moveIntoPlace();
  removeFolder();
  // The file is in place by now: a file system that cannot synchronise folders is no failure.
  Synchronise(FolderOf(target_));
}

void StagedOutput::moveIntoPlace() {
  if (force_) {
    if (::rename(staged_path_.c_str(), target_.c_str()) == 0) return;
    Fail(path_, "replace", errno, "write elsewhere");
  }
  const int error_number = MoveWithoutReplacing(staged_path_, target_);
  if (error_number == 0) return;
  Fail(path_, "create", error_number, error_number == EEXIST ? kAdviseForce : "write elsewhere");
}

void StagedOutput::removeFolder() {
  if (folder_.empty()) return;
  const SignalsHeld held;
  ::unlink(staged_path_.c_str());
  ::rmdir(folder_.c_str());
  ForgetOnSignal(folder_);
  folder_.clear();
}

}  // namespace fabscan
