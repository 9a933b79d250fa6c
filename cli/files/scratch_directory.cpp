#include "cli/files/scratch_directory.h"

#include "cli/files/temporary_folder.h"

namespace fabscan {

ScratchDirectory::ScratchDirectory() {
  const int error_number = folder_.Make(TemporaryFolder() + "/fabscan-XXXXXX");
  if (error_number != 0) RefuseTemporaryFolder(error_number);
}

}  // namespace fabscan
