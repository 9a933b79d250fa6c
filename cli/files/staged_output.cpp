#include "cli/files/staged_output.h"

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
#include <optional>
#include <set>
#include <thread>

#include "cli/command.h"
#include "cli/files/file_moves.h"
#include "cli/output/closed_pipe.h"
#include "cli/output/report.h"
#include "cli/terminal/ending_signals.h"
#include "cli/terminal/progress.h"

namespace fabscan {

namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& action, int error_number) {
  throw CommandError(WriteErrorText(path, action, error_number));
}

constexpr char kAdviseForce[] = "--force replaces it";
/// Threads that put files on disk besides the one that asks, and from how many files on.
constexpr std::size_t kMostHelpers = 7;
constexpr std::size_t kFilesForAHelper = 64;

/// The path that a symbolic link at `path` leads to; `path` itself where there is none.
std::string FollowLink(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
  const std::unique_ptr<char, decltype(&std::free)> target(::realpath(path.c_str(), nullptr),
                                                           &std::free);
  if (!target) Fail(path, "follow the link", errno);
  return target.get();
}

[[noreturn]] void RefuseDirectory(const std::string& directory, int error_number) {
  const std::string name = directory == "." ? "the current directory" : directory;
  throw CommandError(fmt::format("cannot create files in {}: {}", name,
                                 error_number == ENOENT
                                     ? "no such directory; create it first"
                                     : CauseText(error_number) + "; use another directory"));
}

}  // namespace

StagedOutput::StagedOutput(const std::string& path, bool force)
    : StagedOutput(path, force, nullptr) {}

StagedOutput::StagedOutput(const std::string& path, bool force, const StagedOutput* before)
    : path_(path), target_(path), force_(force) {
  is_stream_ = openStream();
  if (is_stream_) return;
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

/// Whether the path stands for a stream. It is open afterwards, so that whoever reads it sees its
/// end also when nothing is written.
bool StagedOutput::openStream() {
  int file = -1;
  if (const std::optional<int> named = OpenFileNamed(path_)) {
    if (named == STDOUT_FILENO) return true;
    file = ::fcntl(*named, F_DUPFD_CLOEXEC, 0);
  } else {
    struct stat status {};
    if (::stat(path_.c_str(), &status) != 0) return false;
    if (!S_ISFIFO(status.st_mode) && !S_ISCHR(status.st_mode)) return false;
    file = ::open(path_.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
  }
  if (file < 0) Fail(path_, "write", errno);
  file_ = std::make_unique<OutputFile>(file);
  return true;
}

void StagedOutput::refuseTarget() const {
  const std::string name = NameOf(target_);
  struct stat status {};
  const bool exists = ::stat(target_.c_str(), &status) == 0;
  if (name.empty() || name == "." || name == ".." || (exists && S_ISDIR(status.st_mode))) {
    throw CommandError(fmt::format("{}: is a directory; name a file in it", path_));
  }
  if (!exists) return;
  if (!S_ISREG(status.st_mode)) {
    throw CommandError(fmt::format("{}: is not a regular file; use another path", path_));
  }
  if (!force_) throw CommandError(fmt::format("{}: exists; {}", path_, kAdviseForce));
}

void StagedOutput::makeFolder(const StagedOutput* before) {
  const std::string parent = DirectoryOf(target_);
  if (before != nullptr && !before->is_stream_ && DirectoryOf(before->target_) == parent) {
    folder_ = before->folder_;
  } else {
    const int error_number = folder_->Make(parent + "/.fabscan-XXXXXX");
    if (error_number != 0) RefuseDirectory(parent, error_number);
  }
  staged_path_ = folder() + '/' + NameOf(path_);  // which a link may lead to under another name
}

std::ostream& StagedOutput::stream() {
  if (file_) return file_->stream();
  if (is_stream_) return std::cout;
  constexpr mode_t kAsUmaskHasIt = 0666;
  const int file =
      ::open(staged_path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kAsUmaskHasIt);
  if (file < 0) Fail(path_, "write", errno);
  file_ = std::make_unique<OutputFile>(file);
  return file_->stream();
}

void StagedOutput::Finish() {
  if (file_) {
    const int error_number = file_->Close();
    ThrowIfClosedPipe(error_number);
    if (error_number != 0) Fail(path_, "write", error_number);
  } else if (is_stream_) {
    RequireStandardOutput();
  }
}

void StagedOutput::putOnDisk() {
  Finish();
  if (is_stream_) return;
  const int error_number = Synchronise(staged_path_);
  if (error_number != 0) Fail(path_, "write", error_number);
}

void StagedOutput::Commit() {
  Finish();
  if (is_stream_) return RequireStandardOutput();
  {
    Progress progress;
    progress.Watch("putting " + path_ + " on disk", [this] { putOnDisk(); });
  }
  RequireStandardOutput();
  moveIntoPlace();
  if (folder_.use_count() == 1) folder_->Remove();
  // The file is in place by now: a file system that cannot synchronise directories is no failure.
  Synchronise(DirectoryOf(target_));
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
  RequireStandardOutput();
  Progress progress;
  MoveAllIntoPlace(outputs, progress);
  std::set<std::string> folders;
  for (const auto& output : outputs) {
    if (!output->is_stream_) folders.insert(DirectoryOf(output->target_));
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
      if (!outputs[moved]->is_stream_) outputs[moved]->exchangeWithTarget();
    }
    progress.Show(kWhat, moved, outputs.size());
  } catch (...) {  // also where memory runs out
    while (moved-- > 0) outputs[moved]->takeBack();
    throw;
  }
}

void StagedOutput::moveIntoPlace() {
  if (force_) {
    int error_number = CopyMode(staged_path_, target_);
    if (error_number == 0 && ::rename(staged_path_.c_str(), target_.c_str()) != 0) {
      error_number = errno;
    }
    if (error_number != 0) Fail(path_, "replace", error_number);
    return;
  }
  const int error_number = MoveWithoutReplacing(staged_path_, target_);
  if (error_number == EEXIST) {
    throw CommandError(
        fmt::format("{}: cannot create: {}; {}", path_, CauseText(EEXIST), kAdviseForce));
  }
  if (error_number != 0) Fail(path_, "create", error_number);
}

/// As `moveIntoPlace`, but what was there is kept in the directory until that goes.
void StagedOutput::exchangeWithTarget() {
  if (!force_ || ::access(target_.c_str(), F_OK) != 0) return moveIntoPlace();
  refuseTarget();  // what came to be there meanwhile
  int error_number = CopyMode(staged_path_, target_);
  if (error_number == 0) error_number = Exchange(staged_path_, target_);
  if (error_number != 0) Fail(path_, "replace", error_number);
  exchanged_ = true;
}

void StagedOutput::takeBack() {
  if (is_stream_) return;
  if (exchanged_) {
    static_cast<void>(::rename(staged_path_.c_str(), target_.c_str()));
  } else {
    ::unlink(target_.c_str());
  }
}

}  // namespace fabscan
