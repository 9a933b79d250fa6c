#ifndef FABSCAN_GATHERING_BUFFER_H
#define FABSCAN_GATHERING_BUFFER_H

#include <cstddef>
#include <memory>
#include <ostream>
#include <streambuf>

/// Gathers what the emitters write into pieces of whole pages and writes them to the file. A flush
/// of the stream above does not cut a piece short; `HandOver` writes what is pending, and so does
/// destruction, quietly.
class GatheringBuffer : public std::streambuf {
 public:
  explicit GatheringBuffer(std::ostream& file);
  GatheringBuffer(const GatheringBuffer&) = delete;
  GatheringBuffer& operator=(const GatheringBuffer&) = delete;
  ~GatheringBuffer() override;

  /// Writes what is pending to the file. False when the file has failed.
  bool HandOver();

 protected:
  int_type overflow(int_type next) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;

 private:
  static constexpr std::streamoff kPage = 4096;
  static constexpr std::streamoff kPiece = 64 * kPage;

  std::ostream& file_;
  std::unique_ptr<char[]> buffer_;
};

#endif
