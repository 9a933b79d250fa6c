#include "cli/verify/verify_directory.h"

#include <fmt/format.h>

#include <filesystem>
#include <system_error>

#include "cli/command.h"

namespace fabscan {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(const std::string& path, const std::string& cause) {
  throw CommandError(
      fmt::format("{}: {}; use a new or empty directory that you can write to", path, cause));
}

void MakeKeptDirectory(const std::string& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (error) Refuse(path, "cannot create the directory: " + error.message());
  const bool empty = fs::is_empty(path, error);
  if (error) Refuse(path, "cannot read the directory: " + error.message());
  if (!empty) Refuse(path, "is not empty");
}

}  // namespace

VerifyDirectory::VerifyDirectory(const std::string& keep) : kept_(keep) {
  if (keep.empty()) {
    temporary_.emplace(", or use --keep");
  } else {
    MakeKeptDirectory(keep);
  }
}

}  // namespace fabscan
