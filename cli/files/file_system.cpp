#include "cli/files/file_moves.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace fabscan {

namespace {

/// Whether the file system, or the kernel, does not know this kind of move.
bool UnknownHere(int error_number) {
  return error_number == EINVAL || error_number == ENOSYS || error_number == ENOTSUP;
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

int Synchronise(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return errno;
  const int error_number = ::fsync(file) == 0 ? 0 : errno;
  ::close(file);
  return error_number;
}

int CopyMode(const std::string& path, const std::string& other) {
  struct stat status {};
  if (::stat(other.c_str(), &status) != 0) return errno == ENOENT ? 0 : errno;
  return ::chmod(path.c_str(), status.st_mode & 0777U) == 0 ? 0 : errno;
}

int MoveWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (!UnknownHere(errno)) return errno;
  if (::link(from.c_str(), to.c_str()) != 0) return errno;
  ::unlink(from.c_str());
  return 0;
}

int Exchange(const std::string& one, const std::string& other) {
  if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0) return 0;
  if (!UnknownHere(errno)) return errno;
  const std::string aside = one + ".aside";
  if (::link(other.c_str(), aside.c_str()) != 0) return errno;
  int error_number = 0;
  if (::rename(one.c_str(), other.c_str()) != 0) {
    error_number = errno;
    ::unlink(aside.c_str());
  } else if (::rename(aside.c_str(), one.c_str()) != 0) {
    error_number = errno;
    static_cast<void>(::rename(aside.c_str(), other.c_str()));
  }
  return error_number;
}

}  // namespace fabscan
