#include "source_writer.h"

#include <exception>
#include <typeinfo>

void SourceWriter::UseOwnRoom() {
  next_ = own_room_;
  end_ = own_room_ + kCapacity;
  exceptions_before_ = std::uncaught_exceptions();
}

void SourceWriter::Finish() {
  if (std::uncaught_exceptions() == exceptions_before_) {
    HandOver();
    return;
  }
  // An emitter is being left by an exception: what it wrote so far is kept, quietly.
  try {
    if (out_.rdbuf() != nullptr) out_.rdbuf()->sputn(own_room_, next_ - own_room_);
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
  while (text.size() > Room()) {
    const std::size_t part = Room();
    std::memcpy(next_, text.data(), part);
    next_ += part;
    text.remove_prefix(part);
    HandOver();
  }
  return Text(text);
}

SourceWriter& SourceWriter::LongIndent(int blanks) {
  constexpr int kPart = static_cast<int>(kMostAtOnce);
  for (; blanks > kPart; blanks -= kPart) Indent(kPart);
  if (blanks <= 0) return *this;
  MakeRoom(kPart);
  return Indent(blanks);
}

void SourceWriter::HandOver() {
  if (gathering_ != nullptr) {
    HandOverGathered();
    return;
  }
  const std::streamsize size = next_ - own_room_;
  next_ = own_room_;
  if (size > 0) out_.write(own_room_, size);
}

void SourceWriter::HandOverGathered() {
  gathering_->Advance(next_);
  bool written = false;
  try {
    written = gathering_->HandOverFullPiece();
  } catch (...) {
    Borrow();
    throw;
  }
  Borrow();
  if (!written) out_.setstate(std::ios::badbit);
}
