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
  RequireStandardOutput();
  MoveIntoPlace();
  // The file is already in place: ignore file systems that cannot synchronise directories.
  Synchronise(DirectoryOf(target_));
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
  Progress progress;
  // Synchronising all files together is much faster than one by one.
  progress.Watch("syncing files to disk", [&file_systems] {
    for (const auto& [device, directory] : file_systems) {
      const int error_number = SynchroniseFileSystem(directory);
      if (error_number != 0) Fail(directory, "write", error_number);
    }
  });
  RequireStandardOutput();
  constexpr char kWhat[] = "files moved into place";
  for (std::size_t moved = 0; moved < outputs.size(); ++moved) {
    progress.Show(kWhat, moved, outputs.size());
    if (outputs[moved]->is_stream_) continue;
    try {
      outputs[moved]->MoveIntoPlace();
    } catch (const CommandError& error) {
      throw CommandError(
          fmt::format("{}; {} of {} files are in place", error.what(), moved, outputs.size()));
    }
  }
  progress.Show(kWhat, outputs.size(), outputs.size());
  for (const std::string& directory : directories) Synchronise(directory);
}

void StagedOutput::MoveIntoPlace() {
  if (force_) {
    RefuseTarget();  // it may have become a directory
    int error_number = CopyMode(StagedPath(), target_);
    if (error_number == 0) error_number = staged_.Replace(target_);
    if (error_number != 0) Fail(path_, "replace", error_number);
    return directories_->Keep();
  }
  const int error_number = staged_.MoveTo(target_);
  if (error_number == EEXIST) {
    throw CommandError(
        fmt::format("{}: cannot create: {}; {}", path_, CauseText(EEXIST), kAdviseForce));
  }
  if (error_number != 0) Fail(path_, "create", error_number);
  directories_->Keep();
}

}  // namespace fabscan
