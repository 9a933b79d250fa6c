#include "cli/files/option_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>

#include "cli/command.h"
#include "cli/files/standard_streams.h"
#include "cli/output/report.h"

namespace fabscan {

namespace {

[[noreturn]] void FailToRead(const OptionFile& file, int error_number) {
  throw CommandError(fmt::format("{}: cannot read {}: {}; check {}", InputName(file.path),
                                 file.content, CauseText(error_number), file.option));
}

/// Closes the file unless it is standard input.
class OpenFile {
 public:
  explicit OpenFile(const std::string& path)
      : number_(IsStandardStream(path) ? STDIN_FILENO
                                       : ::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~OpenFile() {
    if (number_ > STDIN_FILENO) ::close(number_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int number() const { return number_; }

 private:
  int number_;
};

}  // namespace

std::string ReadOptionFile(const OptionFile& file) {
  constexpr std::size_t kChunk = std::size_t{1} << 16U;
  if (IsStandardStream(file.path)) TakeStandardInput();
  const OpenFile opened(file.path);
  if (opened.number() < 0) FailToRead(file, errno);
  std::string text;
  for (;;) {
    const std::size_t size = text.size();
    text.resize(size + kChunk);
    const ssize_t got = ::read(opened.number(), &text[size], kChunk);
    if (got < 0 && errno != EINTR) FailToRead(file, errno);
    text.resize(size + static_cast<std::size_t>(got < 0 ? 0 : got));
    if (got == 0) return text;
    if (text.size() > file.max_bytes) {
      throw CommandError(fmt::format("{}: is larger than {} bytes; check {}", InputName(file.path),
                                     file.max_bytes, file.option));
    }
  }
}

}  // namespace fabscan
