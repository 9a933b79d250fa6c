#ifndef FABSCAN_SNAPSHOT_BYTE_SOURCE_H
#define FABSCAN_SNAPSHOT_BYTE_SOURCE_H

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace fabscan {

/// Bytes in order, from wherever they come.
class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  /// Fills `to` with up to `size` bytes, at least one; returns how many, 0 at the end. Throws
  /// SourceError.
  virtual std::size_t Read(char* to, std::size_t size) = 0;
  /// How many bytes there are in all; 0 where that is not known.
  virtual std::size_t Size() const { return 0; }
};

/// A source that cannot go on. `what()` says why, without the source's name.
class SourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A file, or standard input for "-". Throws SourceError.
std::unique_ptr<ByteSource> OpenFileSource(const std::string& path);

/// Bytes in memory, which outlive the source.
std::unique_ptr<ByteSource> MakeMemorySource(std::string_view bytes);

/// `source`, which tells `progress` after each read how many bytes were read, and its size.
std::unique_ptr<ByteSource> Watched(
    std::unique_ptr<ByteSource> source,
    std::function<void(std::size_t done, std::size_t total)> progress);

/// What `source` holds, decompressed where its first bytes say that it is compressed with zstd.
std::unique_ptr<ByteSource> Decompressed(std::unique_ptr<ByteSource> source);

}  // namespace fabscan

#endif
