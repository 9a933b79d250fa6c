#include "snapshot/byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace fabscan {

namespace {

std::string Reason(int error_number) { return std::generic_category().message(error_number); }

class FileSource : public ByteSource {
 public:
  FileSource(int file, bool owned) : file_(file), owned_(owned) {}
  ~FileSource() override {
    if (owned_) ::close(file_);
  }

  std::size_t Read(char* to, std::size_t size) override {
    for (;;) {
      const ssize_t got = ::read(file_, to, size);
      if (got >= 0) return static_cast<std::size_t>(got);
      if (errno != EINTR) throw SourceError("cannot read: " + Reason(errno));
    }
  }

  std::size_t Size() const override {
    struct stat status {};
    if (::fstat(file_, &status) != 0 || !S_ISREG(status.st_mode)) return 0;
    return static_cast<std::size_t>(status.st_size);
  }

 private:
  int file_;
  bool owned_;
};

class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : rest_(bytes) {}

  std::size_t Read(char* to, std::size_t size) override {
    const std::size_t taken = std::min(size, rest_.size());
    std::memcpy(to, rest_.data(), taken);
    rest_.remove_prefix(taken);
    return taken;
  }

 private:
  std::string_view rest_;
};

class WatchedSource : public ByteSource {
 public:
  WatchedSource(std::unique_ptr<ByteSource> source,
                std::function<void(std::size_t, std::size_t)> progress)
      : source_(std::move(source)), progress_(std::move(progress)), size_(source_->Size()) {}

  std::size_t Read(char* to, std::size_t size) override {
    const std::size_t got = source_->Read(to, size);
    read_ += got;
    progress_(read_, size_);
    return got;
  }
  std::size_t Size() const override { return size_; }

 private:
  std::unique_ptr<ByteSource> source_;
  std::function<void(std::size_t, std::size_t)> progress_;
  std::size_t size_;
  std::size_t read_ = 0;
};

}  // namespace

std::unique_ptr<ByteSource> OpenFileSource(const std::string& path) {
  if (path == "-") return std::make_unique<FileSource>(STDIN_FILENO, false);
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) throw SourceError("cannot open: " + Reason(errno));
  return std::make_unique<FileSource>(file, true);
}

std::unique_ptr<ByteSource> Watched(
    std::unique_ptr<ByteSource> source,
    std::function<void(std::size_t done, std::size_t total)> progress) {
  return std::make_unique<WatchedSource>(std::move(source), std::move(progress));
}

std::unique_ptr<ByteSource> MakeMemorySource(std::string_view bytes) {
  return std::make_unique<MemorySource>(bytes);
}

}  // namespace fabscan
