#include "discovery/live/captured_standard_error.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace fabscan {

CapturedStandardError::CapturedStandardError() {
  static_cast<void>(std::fflush(stderr));
  captured_ = ::memfd_create("standard error", MFD_CLOEXEC);
  if (captured_ < 0) return;
  original_ = ::dup(STDERR_FILENO);
  if (original_ >= 0) ::dup2(captured_, STDERR_FILENO);
}

CapturedStandardError::~CapturedStandardError() {
  static_cast<void>(std::fflush(stderr));
  if (original_ >= 0) {
    ::dup2(original_, STDERR_FILENO);
    ::close(original_);
  }
  if (captured_ >= 0) ::close(captured_);
}

std::string CapturedStandardError::LastLine() const {
  constexpr off_t kLongest = 300;
  static_cast<void>(std::fflush(stderr));
  const off_t end = captured_ < 0 ? 0 : ::lseek(captured_, 0, SEEK_END);
  if (end <= 0) return {};
  const off_t start = std::max<off_t>(0, end - kLongest);
  std::string text(static_cast<std::size_t>(end - start), '\0');
  const ssize_t got = ::pread(captured_, text.data(), text.size(), start);
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  text.erase(text.find_last_not_of("\n\r ") + 1);
  text.erase(0, text.find_last_of('\n') + 1);
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c >= 0x7F; }, ' ');
  return text;
}

}  // namespace fabscan
