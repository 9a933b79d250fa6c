#ifndef FABSCAN_FUZZ_SCRATCH_FOLDER_H
#define FABSCAN_FUZZ_SCRATCH_FOLDER_H

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "fabscan/fabscan_sim_info_dump.h"
#include "fuzz/require.h"

namespace fabscan {

/// A directory of this process for generated files, removed at exit.
class ScratchFolder {
 public:
  ScratchFolder() {
    const char* memory = "/dev/shm";
    const std::string base =
        ::access(memory, W_OK) == 0 ? memory : std::filesystem::temp_directory_path().string();
    std::string name = base + "/fabscan-fuzz-XXXXXX";
    Require(::mkdtemp(name.data()) != nullptr, "a scratch directory can be created");
    path_ = name;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  /// What `Generate` writes for the fabric.
  std::string Generated(Fabscan& fabscan, const std::set<std::uint64_t>& guids) const {
    fabscan.setOutputFolder(path_);
    Require(SimInfoDumpCPP(fabscan).Generate("Fuzz", guids) == 0, "the file opens");
    Require(fabscan.lastError().empty(), "the file is written");
    std::ifstream file(fabscan.outputPath(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::string path_;
};

}  // namespace fabscan

#endif
