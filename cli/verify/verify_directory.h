#ifndef FABSCAN_CLI_VERIFY_DIRECTORY_H
#define FABSCAN_CLI_VERIFY_DIRECTORY_H

#include <optional>
#include <string>

#include "cli/files/temporary_files.h"

namespace fabscan {

/// The directory that generated files are compiled in: one that is kept, or a temporary one.
class VerifyDirectory {
 public:
  /// `keep` names the directory to keep, created if missing; empty asks for a temporary one. Throws
  /// CommandError if it cannot be created or is not empty.
  explicit VerifyDirectory(const std::string& keep);

  const std::string& path() const { return temporary_ ? temporary_->path() : kept_; }

 private:
  std::string kept_;
  std::optional<TemporaryDirectory> temporary_;
};

}  // namespace fabscan

#endif
