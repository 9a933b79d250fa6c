#ifndef FABSCAN_BENCH_SCRATCH_DIRECTORY_H
#define FABSCAN_BENCH_SCRATCH_DIRECTORY_H

#include <cstdlib>
#include <filesystem>
#include <string>

namespace fabscan {

/// A new directory in `parent`, removed with all that is in it.
class TemporaryDirectory {
 public:
  explicit TemporaryDirectory(const std::filesystem::path& parent) {
    std::string name = (parent / "bench-XXXXXX").string();
    path_ = ::mkdtemp(name.data());
  }
  ~TemporaryDirectory() { std::filesystem::remove_all(path_); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// One in the current directory, removed at the end of the program.
inline const std::filesystem::path& ScratchDirectory() {
  static const TemporaryDirectory directory(std::filesystem::current_path());
  return directory.path();
}

/// One in a file system in memory, so that the kernel does not write other files to the disk
/// meanwhile; without one, in the current directory.
inline const std::filesystem::path& DirectoryInMemory() {
  static const char kShared[] = "/dev/shm";
  static const TemporaryDirectory directory(
      std::filesystem::is_directory(kShared) ? kShared : std::filesystem::current_path());
  return directory.path();
}

}  // namespace fabscan

#endif
