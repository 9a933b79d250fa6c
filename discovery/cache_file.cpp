#include "discovery/cache_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#include "discovery/cache_header.h"

namespace fabscan {

namespace {

using Progress = std::function<void(std::size_t done, std::size_t total)>;

/// Appends up to `count` bytes of `file` as they arrive: an announced size is not trusted before
/// the bytes are read.
void Append(std::FILE* file, u_int64_t count, FileBytes& bytes, const Progress& progress) {
  u_int64_t total = bytes.size() + count;
  struct stat status = {};
  if (fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode)) {
    total = std::min(total, static_cast<u_int64_t>(status.st_size) + 1);
    bytes.Reserve(total);
  }
  constexpr u_int64_t kPiece = u_int64_t{1} << 18U;
  while (count > 0) {
    const auto wanted = static_cast<std::size_t>(std::min(count, kPiece));
    const std::size_t got = std::fread(bytes.Room(wanted), 1, wanted, file);
    bytes.Take(got);
    if (std::ferror(file) != 0) throw std::system_error(errno, std::generic_category());
    if (got < wanted) return;
    count -= got;
    if (progress) progress(bytes.size(), total);
  }
}

FileBytes LoadCache(std::FILE* file, const Progress& progress) {
  FileBytes bytes;
  Append(file, kCacheHeaderBytes, bytes, {});
  CacheCursor cursor(bytes.view());
  // One more byte, to detect a file that is longer than it can be.
  Append(file, MostCacheFileBytes(TakeCacheHeader(cursor)) - kCacheHeaderBytes + 1, bytes,
         progress);
  return bytes;
}

struct CloseFile {
  void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

}  // namespace

CacheFindings ReadCacheFile(const std::string& path, const Progress& progress) {
  const std::string name = path == "-" ? "standard input" : path;
  std::unique_ptr<std::FILE, CloseFile> opened;
  std::FILE* file = stdin;
  if (path != "-") {
    opened.reset(std::fopen(path.c_str(), "rbe"));
    if (!opened)
      throw CacheError(name + ": cannot open: " + std::generic_category().message(errno));
    file = opened.get();
  }
  try {
    return CacheFindings(LoadCache(file, progress));
  } catch (const CacheError& error) {
    throw CacheError(name + ": " + error.what());
  } catch (const std::system_error& error) {
    throw CacheError(name + ": cannot read: " + error.code().message());
  }
}

}  // namespace fabscan
