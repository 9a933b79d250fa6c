#include "cli/output/output_buffer.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace fabscan {

namespace {

constexpr std::size_t kCapacity = std::size_t{1} << 16U;

}  // namespace

OutputBuffer::OutputBuffer(int file) : file_(file), is_terminal_(::isatty(file) == 1) {
  pending_.reserve(kCapacity);
}

bool OutputBuffer::write(const char* bytes, std::size_t size) {
  while (size != 0 && error_number_ == 0) {
    const ssize_t written = ::write(file_, bytes, size);
    if (written < 0) {
      if (errno != EINTR) error_number_ = errno;
      continue;
    }
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return error_number_ == 0;
}

bool OutputBuffer::WritePending() {
  const bool written = write(pending_.data(), pending_.size());
  pending_.clear();
  return written;
}

std::streamsize OutputBuffer::xsputn(const char* bytes, std::streamsize size) {
  const auto count = static_cast<std::size_t>(size);
  if (pending_.size() + count > kCapacity && !WritePending()) return 0;
  if (count >= kCapacity) return write(bytes, count) ? size : 0;
  pending_.insert(pending_.end(), bytes, bytes + count);
  const bool ends_line = is_terminal_ && std::memchr(bytes, '\n', count) != nullptr;
  return error_number_ != 0 || (ends_line && !WritePending()) ? 0 : size;
}

OutputBuffer::int_type OutputBuffer::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char byte = traits_type::to_char_type(c);
  return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
}

int OutputBuffer::sync() { return WritePending() ? 0 : -1; }

}  // namespace fabscan
