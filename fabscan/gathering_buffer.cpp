#include "gathering_buffer.h"

#include <algorithm>
#include <cstring>

GatheringBuffer::GatheringBuffer(std::ostream& file) : file_(file), buffer_(new char[kRoom]) {
  // A first piece that ends with a page lets all others begin with one.
  const std::streamoff begun = file.tellp();
  setp(buffer_.get(), buffer_.get() + kPiece - (begun > 0 ? begun % kPage : 0));
}

GatheringBuffer::~GatheringBuffer() {
  // Left early, by an exception: what was written stays, and the first exception is the one to
  // report. Otherwise nothing is pending any more.
  try {
    HandOver();
  } catch (...) {  // NOLINT(bugprone-empty-catch)
  }
}

GatheringBuffer::int_type GatheringBuffer::overflow(int_type next) {
  if (!HandOverFullPiece()) return traits_type::eof();
  if (!traits_type::eq_int_type(next, traits_type::eof())) {
    *pptr() = traits_type::to_char_type(next);
    pbump(1);
  }
  return traits_type::not_eof(next);
}

std::streamsize GatheringBuffer::xsputn(const char* text, std::streamsize size) {
  std::streamsize done = 0;
  while (done < size) {
    if (!HandOverFullPiece()) break;
    const std::streamsize part = std::min<std::streamsize>(size - done, epptr() - pptr());
    std::memcpy(pptr(), text + done, static_cast<std::size_t>(part));
    pbump(static_cast<int>(part));
    done += part;
  }
  return done;
}

bool GatheringBuffer::HandOver() {
  Write(pptr() - pbase());
  return file_.good();
}

bool GatheringBuffer::HandOverFullPiece() {
  if (pptr() < epptr()) return true;
  Write(epptr() - pbase());
  return file_.good();
}

void GatheringBuffer::Write(std::streamsize size) {
  const std::streamsize rest = pptr() - pbase() - size;
  setp(buffer_.get(), buffer_.get() + kPiece);
  if (size > 0) file_.write(buffer_.get(), size);
  std::memmove(buffer_.get(), buffer_.get() + size, static_cast<std::size_t>(rest));
  pbump(static_cast<int>(rest));
}
