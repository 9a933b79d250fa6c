#ifndef FABSCAN_CLI_PRIVATE_FOLDER_H
#define FABSCAN_CLI_PRIVATE_FOLDER_H

#include <atomic>
#include <string>

namespace fabscan {

/// A folder for one file, which nobody else uses. Both go with this object, and when SIGINT,
/// SIGTERM or SIGHUP ends the program. Any number of them at a time; one thread makes and ends
/// them.
class PrivateFolder {
 public:
  PrivateFolder() = default;
  ~PrivateFolder() { Remove(); }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  /// Makes the folder; `pattern` is its path, with XXXXXX at its end for letters that are free.
  /// 0 or errno. The file `name` in it is left to the caller.
  int Make(const std::string& pattern, const std::string& name);
  bool there() const { return there_; }
  const std::string& path() const { return path_; }
  const std::string& file() const { return file_; }
  /// Removes the folder, with the file where it is still there.
  void Remove() noexcept;

 private:
  friend struct AllPrivateFolders;
  void note() noexcept;
  void forget() noexcept;

  std::string path_;
  std::string file_;
  bool there_ = false;
  std::atomic<PrivateFolder*> next_{nullptr};
  PrivateFolder* previous_ = nullptr;
};

}  // namespace fabscan

#endif
