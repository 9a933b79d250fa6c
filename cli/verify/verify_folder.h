#ifndef FABSCAN_CLI_VERIFY_FOLDER_H
#define FABSCAN_CLI_VERIFY_FOLDER_H

#include <string>

namespace fabscan {

/// The folder that generated files are compiled in: one that is kept, or a temporary one that goes
/// with this object. SIGINT, SIGTERM and SIGHUP are noted while it lives rather than obeyed, so
/// that it goes then as well; `Interrupted` tells.
class VerifyFolder {
 public:
  /// `keep` names the folder to keep, made when it is not there; empty asks for a temporary one.
  /// Throws CommandError when it cannot be made or holds something.
  explicit VerifyFolder(const std::string& keep);
  /// Obeys the signal that came meanwhile.
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
