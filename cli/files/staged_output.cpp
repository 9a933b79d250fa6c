#include "staged_output.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <mutex>
#include <set>
#include <thread>

#include "command.h"
#include "ending_signals.h"
#include "progress.h"
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
/// Threads that put files on disk besides the one that asks, and from how many files on.
constexpr std::size_t kMostHelpers = 7;
constexpr std::size_t kFilesForAHelper = 64;

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

/// Whether the file system, or the kernel, does not know this kind of move.
bool UnknownHere(int error_number) {
  return error_number == EINVAL || error_number == ENOSYS || error_number == ENOTSUP;
}

/// Moves `from` to `to` unless there is something. 0 or errno.
int MoveWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (!UnknownHere(errno)) return errno;
  if (::link(from.c_str(), to.c_str()) != 0) return errno;
  ::unlink(from.c_str());
  return 0;
}

/// Exchanges the two files. 0 or errno; then both are where they were.
int Exchange(const std::string& one, const std::string& other) {
  if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0) return 0;
  if (!UnknownHere(errno)) return errno;
  const std::string aside = one + ".aside";
  if (::link(other.c_str(), aside.c_str()) != 0) return errno;
  int error_number = 0;
  if (::rename(one.c_str(), other.c_str()) != 0) {
    error_number = errno;
    ::unlink(aside.c_str());
  } else if (::rename(aside.c_str(), one.c_str()) != 0) {
    error_number = errno;
    static_cast<void>(::rename(aside.c_str(), other.c_str()));
  }
  return error_number;
}

}  // namespace

StagedOutput::StagedOutput(const std::string& path, bool force)
    : StagedOutput(path, force, nullptr) {}

StagedOutput::StagedOutput(const std::string& path, bool force, const StagedOutput* before)
    : path_(path), target_(path), force_(force) {
  if (isStandardOutput()) return;
  target_ = FollowLink(path_);
  refuseTarget();
  makeFolder(before);
}

std::vector<std::unique_ptr<StagedOutput>> StagedOutput::Several(
    const std::vector<std::string>& paths, bool force) {
  std::vector<std::unique_ptr<StagedOutput>> outputs;
  outputs.reserve(paths.size());
  for (const std::string& path : paths) {
    const StagedOutput* before = outputs.empty() ? nullptr : outputs.back().get();
    outputs.push_back(std::unique_ptr<StagedOutput>(new StagedOutput(path, force, before)));
  }
  return outputs;
}

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

void StagedOutput::makeFolder(const StagedOutput* before) {
  const std::string parent = FolderOf(target_);
  if (before != nullptr && FolderOf(before->target_) == parent) {
    folder_ = before->folder_;
  } else {
    const int error_number = folder_->Make(parent + "/.fabscan-XXXXXX");
    if (error_number != 0) Fail(parent, "write there", error_number, kAdviseFolder);
  }
  staged_path_ = folder() + '/' + NameOf(path_);  // which a link may lead to under another name
}

std::ostream& StagedOutput::stream() {
  if (isStandardOutput()) return std::cout;
  if (!file_.is_open()) {
    errno = 0;
    file_.open(stagedPath(), std::ios::binary | std::ios::trunc);
    if (!file_.is_open()) Fail(path_, "write", errno, kAdviseSpace);
  }
  return file_;
}

void StagedOutput::finishStream() {
  if (!isStandardOutput() && !file_.is_open()) return;
  std::ostream& out = stream();
  if (out.good()) errno = 0;  // else it tells of the write that failed: what followed wrote nothing
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

void StagedOutput::putOnDisk() {
  finishStream();
  if (isStandardOutput()) return;
  const int error_number = Synchronise(stagedPath());
  if (error_number != 0) Fail(path_, "write", error_number, kAdviseSpace);
}

void StagedOutput::Commit() {
  finishStream();  // before anything else: errno tells which write failed
  if (isStandardOutput()) return;
  {
    Progress progress;
    progress.Watch("putting " + path_ + " on disk", [this] { putOnDisk(); });
  }
  moveIntoPlace();
  if (folder_.use_count() == 1) folder_->Remove();
  // The file is in place by now: a file system that cannot synchronise folders is no failure.
  Synchronise(FolderOf(target_));
}

/// On several threads: a file system writes together what is waited for at the same time.
void StagedOutput::PutAllOnDisk(const std::vector<std::unique_ptr<StagedOutput>>& outputs) {
  std::atomic<std::size_t> next{0};
  std::atomic<std::size_t> done{0};
  std::mutex mutex;  // of what follows
  std::exception_ptr failure;
  const auto work = [&] {
    for (std::size_t i = next++; i < outputs.size(); i = next++) {
      try {
        outputs[i]->putOnDisk();
        ++done;
      } catch (...) {
        next = outputs.size();
        const std::lock_guard lock(mutex);
        if (!failure) failure = std::current_exception();
      }
    }
  };
  constexpr char kWhat[] = "files put on disk";
  Progress progress;
  progress.Watch(
      kWhat, outputs.size(), [&done] { return done.load(); },
      [&] {
        std::vector<std::thread> helpers;
        helpers.reserve(kMostHelpers);
        try {
          const SignalsHeld held;  // in the new threads as well: a signal is for this one
          const std::size_t useful = std::min(kMostHelpers, outputs.size() / kFilesForAHelper);
          while (helpers.size() < useful) helpers.emplace_back(work);
        } catch (const std::exception&) {  // fewer do it as well
        }
        work();
        for (std::thread& helper : helpers) helper.join();
      });
  if (failure) std::rethrow_exception(failure);
  progress.Show(kWhat, done, outputs.size());
}

void StagedOutput::CommitAll(const std::vector<std::unique_ptr<StagedOutput>>& outputs) {
  PutAllOnDisk(outputs);
  Progress progress;
  MoveAllIntoPlace(outputs, progress);
  std::set<std::string> folders;
  for (const auto& output : outputs) {
    if (!output->isStandardOutput()) folders.insert(FolderOf(output->target_));
  }
  for (const std::string& folder : folders) Synchronise(folder);
  const auto remove = [&outputs] {
    for (const auto& output : outputs) output->folder_->Remove();
  };
  const bool replaced = std::any_of(outputs.begin(), outputs.end(),
                                    [](const auto& output) { return output->exchanged_; });
  if (!replaced) return remove();
  progress.Watch("removing what was there before", remove);
}

/// In one step for signals.
void StagedOutput::MoveAllIntoPlace(const std::vector<std::unique_ptr<StagedOutput>>& outputs,
                                    Progress& progress) {
  constexpr char kWhat[] = "files moved into place";
  const SignalsHeld held;
  std::size_t moved = 0;
  try {
    for (; moved < outputs.size(); ++moved) {
      progress.Show(kWhat, moved, outputs.size());
      if (!outputs[moved]->isStandardOutput()) outputs[moved]->exchangeWithTarget();
    }
    progress.Show(kWhat, moved, outputs.size());
  } catch (...) {  // also where memory runs out
    while (moved-- > 0) outputs[moved]->takeBack();
    throw;
  }
}

void StagedOutput::moveIntoPlace() {
  if (force_) {
    if (::rename(stagedPath().c_str(), target_.c_str()) == 0) return;
    Fail(path_, "replace", errno, "write elsewhere");
  }
  const int error_number = MoveWithoutReplacing(stagedPath(), target_);
  if (error_number == 0) return;
  Fail(path_, "create", error_number, error_number == EEXIST ? kAdviseForce : "write elsewhere");
}

/// As `moveIntoPlace`, but what was there is kept in the folder until that goes.
void StagedOutput::exchangeWithTarget() {
  if (!force_ || ::access(target_.c_str(), F_OK) != 0) return moveIntoPlace();
  refuseTarget();  // what came to be there meanwhile
  const int error_number = Exchange(stagedPath(), target_);
  if (error_number != 0) Fail(path_, "replace", error_number, "write elsewhere");
  exchanged_ = true;
}

void StagedOutput::takeBack() {
  if (isStandardOutput()) return;
  if (exchanged_) {
    static_cast<void>(::rename(stagedPath().c_str(), target_.c_str()));
  } else {
    ::unlink(target_.c_str());
  }
}

}  // namespace fabscan
