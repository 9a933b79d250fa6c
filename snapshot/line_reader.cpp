#include "snapshot/line_reader.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace fabscan {

std::optional<Line> LineReader::Next() {
  ++number_;
  std::size_t searched = 0;
  for (;;) {
    const std::size_t length = end_ - begin_;
    if (length > searched) {
      const char* from = buffer_.data() + begin_;
      const void* found = std::memchr(from + searched, '\n', length - searched);
      const std::size_t line =
          found == nullptr ? length
                           : static_cast<std::size_t>(static_cast<const char*>(found) - from);
      if (line > max_line_) {
        throw SourceError("the line is longer than " + std::to_string(max_line_) +
                          " bytes; raise max-line-bytes if it is meant to be");
      }
      if (found != nullptr) return Take(line, 1);
      searched = length;
    }
    if (!Fill()) {
      if (length == 0) return std::nullopt;
      return Take(length, 0);
    }
  }
}

Line LineReader::Take(std::size_t length, std::size_t line_end) {
  if (line_end == 0) buffer_[begin_ + length] = '\n';  // in the padding
  const Line line{{buffer_.data() + begin_, length}, buffer_.size() - begin_, line_end != 0};
  begin_ += length + line_end;
  return line;
}

bool LineReader::Fill() {
  const std::size_t kept = end_ - begin_;
  if (buffer_.size() < end_ + chunk_ + kPadding) {
    if (begin_ != 0) std::memmove(buffer_.data(), buffer_.data() + begin_, kept);
    begin_ = 0;
    end_ = kept;
    const std::size_t wanted = kept + chunk_ + kPadding;
    if (buffer_.size() < wanted) buffer_.resize(std::max(wanted, buffer_.size() * 3 / 2));
  }
  const std::size_t got = source_.Read(buffer_.data() + end_, chunk_);
  end_ += got;
  return got != 0;
}

}  // namespace fabscan
