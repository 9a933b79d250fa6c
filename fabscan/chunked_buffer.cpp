#include "chunked_buffer.h"

#include <algorithm>
#include <cstring>

namespace fabscan::generator {

ChunkedBuffer::ChunkedBuffer(std::ostream& file) : file_(file), buffer_(new char[kCapacity]) {
  // The first chunk ends at a page of the file, so that all others begin with one.
  const std::streamoff begun = file.tellp();
  setp(buffer_.get(), buffer_.get() + kChunk - (begun > 0 ? begun % kPage : 0));
}

ChunkedBuffer::~ChunkedBuffer() {
  // Something is left only if an exception is on its way, and that one is to be reported.
  try {
    Flush();
  } catch (...) {  // NOLINT(bugprone-empty-catch)
  }
}

ChunkedBuffer::int_type ChunkedBuffer::overflow(int_type next) {
  if (!FlushFullChunk()) return traits_type::eof();
  if (!traits_type::eq_int_type(next, traits_type::eof())) {
    *pptr() = traits_type::to_char_type(next);
    pbump(1);
  }
  return traits_type::not_eof(next);
}

std::streamsize ChunkedBuffer::xsputn(const char* text, std::streamsize size) {
  std::streamsize done = 0;
  while (done < size) {
    if (!FlushFullChunk()) break;
    const std::streamsize part = std::min<std::streamsize>(size - done, epptr() - pptr());
    std::memcpy(pptr(), text + done, static_cast<std::size_t>(part));
    pbump(static_cast<int>(part));
    done += part;
  }
  return done;
}

bool ChunkedBuffer::Flush() {
  Write(pptr() - pbase());
  return file_.good();
}

bool ChunkedBuffer::FlushFullChunk() {
  if (pptr() < epptr()) return true;
  Write(epptr() - pbase());
  return file_.good();
}

void ChunkedBuffer::Write(std::streamsize size) {
  const std::streamsize rest = pptr() - pbase() - size;
  setp(buffer_.get(), buffer_.get() + kChunk);
  if (size > 0) file_.write(buffer_.get(), size);
  std::memmove(buffer_.get(), buffer_.get() + size, static_cast<std::size_t>(rest));
  pbump(static_cast<int>(rest));
}

}  // namespace fabscan::generator
