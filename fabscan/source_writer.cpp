#include "source_writer.h"

SourceWriter::~SourceWriter() noexcept(false) {
  if (std::uncaught_exceptions() == exceptions_before_) {
    HandOver();
    return;
  }
  // An emitter is being left by an exception: what it wrote so far is kept, quietly.
  try {
    if (out_.rdbuf() != nullptr) out_.rdbuf()->sputn(buffer_, next_ - buffer_);
  } catch (...) {  // NOLINT(bugprone-empty-catch): the first exception is the one to report
  }
}

SourceWriter& SourceWriter::LongText(std::string_view text) {
  HandOver();
  if (text.size() < kCapacity) return Text(text);
  out_.write(text.data(), static_cast<std::streamsize>(text.size()));
  return *this;
}

SourceWriter& SourceWriter::LongIndent(int blanks) {
  constexpr int kPart = static_cast<int>(kCapacity) / 2;
  for (; blanks > kPart; blanks -= kPart) {
    MakeRoom(kPart);
    Indent(kPart);
  }
  if (blanks <= 0) return *this;
  MakeRoom(kPart);
  return Indent(blanks);
}

void SourceWriter::HandOver() {
  const std::streamsize size = next_ - buffer_;
  next_ = buffer_;
  if (size > 0) out_.write(buffer_, size);
}
