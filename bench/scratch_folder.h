#ifndef FABSCAN_BENCH_SCRATCH_FOLDER_H
#define FABSCAN_BENCH_SCRATCH_FOLDER_H

#include <cstdlib>
#include <filesystem>
#include <string>

namespace fabscan {

/// A folder in the working one, removed at the end of the program.
inline const std::filesystem::path& ScratchFolder() {
  static const struct Scratch {
    Scratch() {
      std::string name = (std::filesystem::current_path() / "bench-XXXXXX").string();
      path = ::mkdtemp(name.data());
    }
    ~Scratch() { std::filesystem::remove_all(path); }
    std::filesystem::path path;
  } scratch;
  return scratch.path;
}

}  // namespace fabscan

#endif
