#include "gathering_buffer.h"

#include <algorithm>
#include <cstring>

GatheringBuffer::GatheringBuffer(std::ostream& file) : file_(file), buffer_(new char[kPiece]) {
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
  if (!HandOver()) return traits_type::eof();
  if (!traits_type::eq_int_type(next, traits_type::eof())) {
    *pptr() = traits_type::to_char_type(next);
    pbump(1);
  }
  return traits_type::not_eof(next);
}

std::streamsize GatheringBuffer::xsputn(const char* text, std::streamsize size) {
  std::streamsize done = 0;
  while (done < size) {
    if (pptr() == epptr() && !HandOver()) break;
    const std::streamsize part = std::min<std::streamsize>(size - done, epptr() - pptr());
    std::memcpy(pptr(), text + done, static_cast<std::size_t>(part));
    pbump(static_cast<int>(part));
    done += part;
  }
  return done;
}

bool GatheringBuffer::HandOver() {
  const std::streamsize pending = pptr() - pbase();
  setp(buffer_.get(), buffer_.get() + kPiece);
  if (pending > 0) file_.write(buffer_.get(), pending);
  return file_.good();
}
