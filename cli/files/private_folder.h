#ifndef FABSCAN_CLI_PRIVATE_FOLDER_H
#define FABSCAN_CLI_PRIVATE_FOLDER_H

#include <atomic>
#include <string>

namespace fabscan {

/// A directory for files, which nobody else uses. It goes with this object, and when SIGINT,
/// SIGTERM or SIGHUP or a library's `exit` ends the program, together with the files in it. Any
/// number of them at a time; one thread makes and ends them.
class PrivateFolder {
 public:
  PrivateFolder() = default;
  ~PrivateFolder() { Remove(); }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  /// Makes the directory; `pattern` is its path, with XXXXXX at its end for letters that are free.
  /// 0 or errno.
  int Make(const std::string& pattern);
  const std::string& path() const { return path_; }
  /// Removes the directory, with the files that are still there.
  void Remove() noexcept;

 private:
  friend struct AllPrivateFolders;
  void note() noexcept;
  void forget() noexcept;

  std::string path_;
  bool there_ = false;
  std::atomic<PrivateFolder*> next_{nullptr};
  PrivateFolder* previous_ = nullptr;
};

}  // namespace fabscan

#endif
