#ifndef FABSCAN_CLI_TEMPORARY_FILES_H
#define FABSCAN_CLI_TEMPORARY_FILES_H

#include <string>

#include "cli/terminal/termination.h"

namespace fabscan {

/// A file in the directory of an output, under a name of its own, `.fabscan-PROCESS-NUMBER`.
/// Removed with this object and when a signal ends the program, unless it was moved before.
class TemporaryFile {
 public:
  TemporaryFile();
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Each returns 0 or errno.

  /// Creates the file, empty, with the permissions that the umask leaves.
  int Create(const std::string& directory);
  /// Moves the file to `target`, in place of a file there.
  int Replace(const std::string& target);
  /// Moves the file to `target`; EEXIST if there is something.
  int MoveTo(const std::string& target);

  const std::string& path() const { return path_; }

 private:
  void remove() noexcept;

  std::string path_;
  bool exists_ = false;
  CleanupAtTermination cleanup_;
};

/// A directory below TMPDIR (/tmp if that is not set). Removed with this object and when a signal
/// ends the program, with everything in it.
class TemporaryDirectory {
 public:
  /// Throws CommandError if it cannot be made; `remedy` follows the advice to set TMPDIR.
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
