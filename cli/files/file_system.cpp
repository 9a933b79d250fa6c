#include "cli/files/file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace fabscan {

namespace {

int SynchroniseBy(int (*call)(int), const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return errno;
  const int error_number = call(file) == 0 ? 0 : errno;
  ::close(file);
  return error_number;
}

}  // namespace

std::string DirectoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

int Synchronise(const std::string& path) { return SynchroniseBy(::fsync, path); }
int SynchroniseFileSystem(const std::string& path) { return SynchroniseBy(::syncfs, path); }

int CopyMode(const std::string& path, const std::string& other) {
  struct stat status {};
  if (::stat(other.c_str(), &status) != 0) return errno == ENOENT ? 0 : errno;
  return ::chmod(path.c_str(), status.st_mode & 0777U) == 0 ? 0 : errno;
}

}  // namespace fabscan
