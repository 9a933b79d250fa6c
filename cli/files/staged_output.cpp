#include "cli/files/staged_output.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "cli/command.h"
#include "cli/files/file_system.h"
#include "cli/output/closed_pipe.h"
#include "cli/output/report.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/termination.h"

namespace fabscan {

namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& action, int error_number) {
  throw CommandError(WriteErrorText(path, action, error_number));
}

constexpr char kAdviseForce[] = "--force replaces it";

/// The target of a symbolic link at `path`; `path` itself if it is not a link.
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
  throw CommandError(fmt::format("cannot create files in {}: {}; use another directory", name,
                                 CauseText(error_number)));
}

}  // namespace

StagedOutput::StagedOutput(const std::string& path, bool force,
                           std::shared_ptr<NewDirectories> directories)
    : path_(path), target_(path), force_(force), directories_(std::move(directories)) {
  is_stream_ = OpenStream();
  if (is_stream_) return;
  target_ = FollowLink(path_);
  RefuseTarget();
  const std::string directory = DirectoryOf(target_);
  directories_->Make(directory);
  const int error_number = staged_.Create(directory);
  if (error_number != 0) RefuseDirectory(directory, error_number);
}

std::vector<std::unique_ptr<StagedOutput>> StagedOutput::Several(
    const std::vector<std::string>& paths, bool force) {
  const auto directories = std::make_shared<NewDirectories>();
  std::vector<std::unique_ptr<StagedOutput>> outputs;
  outputs.reserve(paths.size());
  for (const std::string& path : paths) {
    outputs.push_back(std::unique_ptr<StagedOutput>(new StagedOutput(path, force, directories)));
  }
  return outputs;
}

/// Whether the path is a stream. If so, opens it, so that its reader gets the end of file even if
/// nothing is written.
bool StagedOutput::OpenStream() {
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

void StagedOutput::RefuseTarget() const {
  const std::string name = NameOf(target_);
  struct stat status {};
  const bool exists = ::stat(target_.c_str(), &status) == 0;
  if (name.empty() || name == "." || name == ".." || (exists && S_ISDIR(status.st_mode))) {
    throw CommandError(fmt::format("{}: is a directory; specify a file in it", path_));
  }
  if (!exists) return;
  if (!S_ISREG(status.st_mode)) {
    throw CommandError(fmt::format("{}: is not a regular file; use another path", path_));
  }
  if (!force_) throw CommandError(fmt::format("{}: exists; {}", path_, kAdviseForce));
}

std::ostream& StagedOutput::stream() {
  if (file_) return file_->stream();
  if (is_stream_) return std::cout;
  const int file = ::open(StagedPath().c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
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

void StagedOutput::Commit() {
  Finish();
  if (is_stream_) return;
  {
    Progress progress;
    progress.Watch("syncing " + path_ + " to disk", [this] {
      const int error_number = Synchronise(StagedPath());
      if (error_number != 0) Fail(path_, "write", error_number);
    });
  }
  PrepareMove();
  const std::string directory = DirectoryOf(target_);
  RequireStandardOutput();
  FinishDespiteSignals();
  const int error_number = MoveIntoPlace();
  if (error_number != 0) throw CommandError(MoveErrorText(error_number));
  // The file is already in place: ignore file systems that cannot synchronise directories.
  Synchronise(directory);
}

void StagedOutput::CommitAll(const std::vector<std::unique_ptr<StagedOutput>>& outputs) {
  std::set<std::string> directories;
  std::map<dev_t, std::string> file_systems;  // by number, a directory on each
  for (const auto& output : outputs) {
    output->Finish();
    if (output->is_stream_) continue;
    const std::string directory = DirectoryOf(output->target_);
    struct stat status {};
    if (directories.insert(directory).second && ::stat(directory.c_str(), &status) == 0) {
      file_systems.emplace(status.st_dev, directory);
    }
  }
  {
    Progress progress;
    // Synchronising all files together is much faster than one by one.
    progress.Watch("syncing files to disk", [&file_systems] {
      for (const auto& [device, directory] : file_systems) {
        const int error_number = SynchroniseFileSystem(directory);
        if (error_number != 0) Fail(directory, "write", error_number);
      }
    });
  }
  for (const auto& output : outputs) output->PrepareMove();
  RequireStandardOutput();
  FinishDespiteSignals();
  std::size_t moved = 0;
  for (const auto& output : outputs) {
    const int error_number = output->MoveIntoPlace();
    if (error_number != 0) {
      std::string text = fmt::format("{}; {} of {} files are in place",
                                     output->MoveErrorText(error_number), moved, outputs.size());
      for (std::size_t i = 0; i < moved; ++i) text += (i == 0 ? ": " : ", ") + outputs[i]->path_;
      throw CommandError(text);
    }
    ++moved;
  }
  for (const std::string& directory : directories) Synchronise(directory);
}

/// What can fail before anything is moved.
void StagedOutput::PrepareMove() {
  if (is_stream_ || !force_) return;
  RefuseTarget();  // it may have become a directory
  const int error_number = CopyMode(StagedPath(), target_);
  if (error_number != 0) throw CommandError(MoveErrorText(error_number));
}

/// Returns 0 or errno. Allocates nothing, so that only the system can refuse it.
int StagedOutput::MoveIntoPlace() {
  if (is_stream_) return 0;
  return force_ ? staged_.Replace(target_) : staged_.MoveTo(target_);
}

std::string StagedOutput::MoveErrorText(int error_number) const {
  if (!force_ && error_number == EEXIST) {
    return fmt::format("{}: cannot create: {}; {}", path_, CauseText(EEXIST), kAdviseForce);
  }
  return WriteErrorText(path_, force_ ? "replace" : "create", error_number);
}

}  // namespace fabscan
