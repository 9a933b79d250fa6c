#ifndef FABSCAN_CLI_DIRECTORIES_H
#define FABSCAN_CLI_DIRECTORIES_H

#include <string>
#include <vector>

namespace fabscan {

/// Directories that are created for output files. The destructor removes the created ones that are
/// empty, unless `Keep` was called.
class NewDirectories {
 public:
  NewDirectories() = default;
  ~NewDirectories();
  NewDirectories(const NewDirectories&) = delete;
  NewDirectories& operator=(const NewDirectories&) = delete;

  /// Creates the directory and its parents if missing; an empty path is the current directory.
  /// Throws CommandError with path and cause.
  void Make(const std::string& path);
  void Keep() { created_.clear(); }

 private:
  std::vector<std::string> created_;  // parents first
};

}  // namespace fabscan

#endif
