#ifndef FABSCAN_BENCH_SCRATCH_FOLDER_H
#define FABSCAN_BENCH_SCRATCH_FOLDER_H

#include <cstdlib>
#include <filesystem>
#include <string>

namespace fabscan {

/// A new folder in `parent`, removed with all that is in it.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::filesystem::path& parent) {
    std::string name = (parent / "bench-XXXXXX").string();
    path_ = ::mkdtemp(name.data());
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// One in the working folder, removed at the end of the program.
inline const std::filesystem::path& ScratchFolder() {
  static const TemporaryFolder folder(std::filesystem::current_path());
  return folder.path();
}

}  // namespace fabscan

#endif
