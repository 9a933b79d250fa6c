#ifndef FABSCAN_SNAPSHOT_BYTE_SOURCE_H
#define FABSCAN_SNAPSHOT_BYTE_SOURCE_H

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace fabscan {

/// A sequence of bytes from any source.
class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  /// Fills `to` with up to `size` bytes, at least one. Returns their number, 0 at the end. Throws
  /// SourceError.
  virtual std::size_t Read(char* to, std::size_t size) = 0;
  /// The total number of bytes; 0 if unknown.
  virtual std::size_t Size() const { return 0; }
};

/// A source that failed. `what()` gives the reason, without the name of the source.
class SourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A file, or standard input for "-". Throws SourceError.
std::unique_ptr<ByteSource> OpenFileSource(const std::string& path);

/// Bytes in memory, which must outlive the source.
std::unique_ptr<ByteSource> MakeMemorySource(std::string_view bytes);

/// `source`, which calls `progress` after each read with the number of bytes read, and its size.
std::unique_ptr<ByteSource> Watched(
    std::unique_ptr<ByteSource> source,
    std::function<void(std::size_t done, std::size_t total)> progress);

/// The contents of `source`, decompressed if its first bytes are those of zstd data.
std::unique_ptr<ByteSource> Decompressed(std::unique_ptr<ByteSource> source);

}  // namespace fabscan

#endif
