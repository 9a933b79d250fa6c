#include "source_writer.h"

#include <exception>
#include <typeinfo>

namespace fabscan::generator {

void SourceWriter::UseOwnBuffer() {
  next_ = own_buffer_;
  end_ = own_buffer_ + kCapacity;
  exceptions_before_ = std::uncaught_exceptions();
}

void SourceWriter::Finish() {
  if (std::uncaught_exceptions() == exceptions_before_) {
    FlushBuffer();
    return;
  }
  // An emitter is being left by an exception: what it wrote so far is kept, quietly.
  try {
    if (out_.rdbuf() != nullptr) out_.rdbuf()->sputn(own_buffer_, next_ - own_buffer_);
  } catch (...) {  // NOLINT(bugprone-empty-catch): the first exception is the one to report
  }
}

bool SourceWriter::FindLineEnd() {
  try {
    line_end_ = out_.widen('\n');
  } catch (const std::bad_cast&) {
    return false;
  }
  return line_end_ != '\0';
}

SourceWriter& SourceWriter::LongText(std::string_view text) {
  while (text.size() > Available()) {
    const std::size_t part = Available();
    std::memcpy(next_, text.data(), part);
    next_ += part;
    text.remove_prefix(part);
    FlushBuffer();
  }
  return Text(text);
}

SourceWriter& SourceWriter::LongIndent(int blanks) {
  constexpr int kPart = static_cast<int>(kMostAtOnce);
  for (; blanks > kPart; blanks -= kPart) Indent(kPart);
  if (blanks <= 0) return *this;
  Reserve(kPart);
  return Indent(blanks);
}

void SourceWriter::FlushBuffer() {
  if (chunked_ != nullptr) {
    FlushChunk();
    return;
  }
  const std::streamsize size = next_ - own_buffer_;
  next_ = own_buffer_;
  if (size > 0) out_.write(own_buffer_, size);
}

void SourceWriter::FlushChunk() {
  chunked_->Advance(next_);
  bool written = false;
  try {
    written = chunked_->FlushFullChunk();
  } catch (...) {
    UseChunk();
    throw;
  }
  UseChunk();
  if (!written) out_.setstate(std::ios::badbit);
}

}  // namespace fabscan::generator
