#ifndef FABSCAN_CLI_DIRECTORIES_H
#define FABSCAN_CLI_DIRECTORIES_H

#include <string>
#include <vector>

#include "cli/terminal/termination.h"

namespace fabscan {

/// Directories that are created for output files. The destructor removes those that are empty; so
/// does the program when a signal ends it.
class NewDirectories {
 public:
  NewDirectories();
  ~NewDirectories();
  NewDirectories(const NewDirectories&) = delete;
  NewDirectories& operator=(const NewDirectories&) = delete;

  /// Creates the directory and its parents if missing; an empty path is the current directory.
  /// Throws CommandError with path and cause.
  void Make(const std::string& path);

 private:
  void remove() noexcept;

  std::vector<std::string> created_;  // parents first
  CleanupAtTermination cleanup_;
};

}  // namespace fabscan

#endif
