#ifndef FABSCAN_BENCH_WHOLE_FILE_H
#define FABSCAN_BENCH_WHOLE_FILE_H

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

namespace fabscan {

/// Bytes to a file and back with the system calls alone, a piece at a time. A call that fails ends
/// the program: nothing measured after it would mean anything.
inline constexpr std::size_t kFilePiece = std::size_t{1} << 20U;

inline void WriteWholeFile(const std::string& path, std::string_view bytes) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), std::min(kFilePiece, bytes.size()));
    if (written <= 0) std::abort();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  ::close(file);
}

/// Reads into `bytes`, which is as long as the file.
inline void ReadWholeFile(const std::string& path, std::string& bytes) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  for (std::size_t at = 0; at < bytes.size();) {
    const ssize_t got = ::read(file, &bytes[at], std::min(kFilePiece, bytes.size() - at));
    if (got <= 0) std::abort();
    at += static_cast<std::size_t>(got);
  }
  ::close(file);
}

}  // namespace fabscan

#endif
