#ifndef FABSCAN_GATHERING_BUFFER_H
#define FABSCAN_GATHERING_BUFFER_H

#include <cstddef>
#include <memory>
#include <ostream>
#include <streambuf>
#include <typeinfo>

/// Gathers what the emitters write into pieces of whole pages and writes them to the file. A flush
/// of the stream above does not cut a piece short; `HandOver` writes what is pending, and so does
/// destruction, quietly.
class GatheringBuffer final : public std::streambuf {
 public:
  /// What may be pending beyond a full piece.
  static constexpr std::size_t kSlack = 8192;

  explicit GatheringBuffer(std::ostream& file);
  GatheringBuffer(const GatheringBuffer&) = delete;
  GatheringBuffer& operator=(const GatheringBuffer&) = delete;
  ~GatheringBuffer() override;

  /// Writes what is pending to the file. False when the file has failed.
  bool HandOver();

  // ---------- For who writes into the buffer itself ----------

  /// The stream's buffer when it is one of this class, else null.
  static GatheringBuffer* Of(const std::ostream& out) {
    std::streambuf* const buffer = out.rdbuf();
    const bool gathers = buffer != nullptr && typeid(*buffer) == typeid(GatheringBuffer);
    return gathers ? static_cast<GatheringBuffer*>(buffer) : nullptr;
  }

  /// Where what is written next goes, up to `RoomEnd`. Where less than `kSlack` is left, the piece
  /// is full, and handing it over makes room.
  char* Next() const { return pptr(); }
  char* RoomEnd() const { return buffer_.get() + kRoom; }
  /// `end`: of what was written from `Next` on.
  void Advance(char* end) { pbump(static_cast<int>(end - pptr())); }
  /// Writes the pending piece when it is full, and keeps what lies beyond it. False when the file
  /// has failed.
  bool HandOverFullPiece();

 protected:
  int_type overflow(int_type next) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;

 private:
  static constexpr std::streamoff kPage = 4096;
  static constexpr std::streamoff kPiece = 256 * kPage;
  static constexpr std::streamoff kRoom = kPiece + static_cast<std::streamoff>(kSlack);

  /// Writes the first `size` bytes of what is pending, and keeps the rest.
  void Write(std::streamsize size);

  std::ostream& file_;
  std::unique_ptr<char[]> buffer_;
};

#endif
