#ifndef FABSCAN_CLI_SCRATCH_DIRECTORY_H
#define FABSCAN_CLI_SCRATCH_DIRECTORY_H

#include <string>

#include "cli/files/private_folder.h"

namespace fabscan {

/// A temporary directory for files; removed with this object, or when a signal ends the program.
class ScratchDirectory {
 public:
  /// Throws CommandError when it cannot be made.
  ScratchDirectory();

  const std::string& path() const { return folder_.path(); }

 private:
  PrivateFolder folder_;
};

}  // namespace fabscan

#endif
