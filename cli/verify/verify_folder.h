#ifndef FABSCAN_CLI_VERIFY_FOLDER_H
#define FABSCAN_CLI_VERIFY_FOLDER_H

#include <string>

namespace fabscan {

/// The directory in which generated files are compiled: a kept one, or a temporary one that the
/// destructor removes. While this object exists, SIGINT, SIGTERM and SIGHUP are only recorded
/// (`Interrupted`), so that the directory is removed then too.
class VerifyFolder {
 public:
  /// `keep` is the directory to keep, created if missing; empty selects a temporary one. Throws
  /// CommandError if it cannot be created or is not empty.
  explicit VerifyFolder(const std::string& keep);
  /// Raises the recorded signal, if any.
  ~VerifyFolder();
  VerifyFolder(const VerifyFolder&) = delete;
  VerifyFolder& operator=(const VerifyFolder&) = delete;

  const std::string& path() const { return path_; }

  static bool Interrupted();

 private:
  std::string path_;
  bool temporary_;
};

}  // namespace fabscan

#endif
