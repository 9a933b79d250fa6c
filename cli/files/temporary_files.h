#ifndef FABSCAN_CLI_TEMPORARY_FILES_H
#define FABSCAN_CLI_TEMPORARY_FILES_H

#include <string>

#include "cli/terminal/termination.h"

namespace fabscan {

/// A temporary file in the directory of an output, named `.fabscan-PROCESS-NUMBER`. Removed by the
/// destructor and when a signal ends the program, unless it was moved.
class TemporaryFile {
 public:
  TemporaryFile();
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Each returns 0 or errno.

  /// Creates an empty file with the permissions according to the umask.
  int Create(const std::string& directory);
  /// Moves the file to `target`, replacing an existing file.
  int Replace(const std::string& target);
  /// Moves the file to `target`; EEXIST if it exists.
  int MoveTo(const std::string& target);

  const std::string& path() const { return path_; }

 private:
  void remove() noexcept;

  std::string path_;
  bool exists_ = false;
  CleanupAtTermination cleanup_;
};

/// A directory below TMPDIR (default: /tmp). The destructor removes it with its contents; so does
/// the program when a signal ends it.
class TemporaryDirectory {
 public:
  /// Throws CommandError if it cannot be created; `remedy` is appended to the advice to set TMPDIR.
  explicit TemporaryDirectory(const std::string& remedy = "");
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::string& path() const { return path_; }

 private:
  void remove() noexcept;

  std::string path_;
  bool exists_ = false;
  CleanupAtTermination cleanup_;
};

}  // namespace fabscan

#endif
