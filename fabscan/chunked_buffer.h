#ifndef FABSCAN_CHUNKED_BUFFER_H
#define FABSCAN_CHUNKED_BUFFER_H

#include <cstddef>
#include <memory>
#include <ostream>
#include <streambuf>
#include <typeinfo>

namespace fabscan::generator {

/// Collects what is written to it and writes it to the file in chunks of whole pages. A flush of
/// the stream above it does not cut a chunk short; `Flush` writes the rest, and so does the
/// destructor, which ignores errors.
class ChunkedBuffer final : public std::streambuf {
 public:
  /// The most that can be appended to a full chunk.
  static constexpr std::size_t kSlack = 8192;

  explicit ChunkedBuffer(std::ostream& file);
  ChunkedBuffer(const ChunkedBuffer&) = delete;
  ChunkedBuffer& operator=(const ChunkedBuffer&) = delete;
  ~ChunkedBuffer() override;

  /// Writes everything to the file. False if the file has failed.
  bool Flush();

  // ---------- For a writer that appends to the memory itself ----------

  /// The stream's buffer if it is of this class, else null.
  static ChunkedBuffer* Of(const std::ostream& out) {
    std::streambuf* const buffer = out.rdbuf();
    const bool is_chunked = buffer != nullptr && typeid(*buffer) == typeid(ChunkedBuffer);
    return is_chunked ? static_cast<ChunkedBuffer*>(buffer) : nullptr;
  }

  /// The memory that is free. If less than `kSlack` is left, the chunk is full.
  char* Next() const { return pptr(); }
  char* End() const { return buffer_.get() + kCapacity; }
  /// `end`: of what was appended at `Next`.
  void Advance(char* end) { pbump(static_cast<int>(end - pptr())); }
  /// Writes the chunk if it is full, and keeps what exceeds it. False if the file has failed.
  bool FlushFullChunk();

 protected:
  int_type overflow(int_type next) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;

 private:
  static constexpr std::streamoff kPage = 4096;
  static constexpr std::streamoff kChunk = 64 * kPage;
  static constexpr std::streamoff kCapacity = kChunk + static_cast<std::streamoff>(kSlack);

  /// Writes the first `size` bytes, and keeps the rest.
  void Write(std::streamsize size);

  std::ostream& file_;
  std::unique_ptr<char[]> buffer_;
};

}  // namespace fabscan::generator

#endif
