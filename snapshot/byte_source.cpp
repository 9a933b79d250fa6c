#include "snapshot/byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zstd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <vector>

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

constexpr unsigned char kMagic[] = {0x28, 0xB5, 0x2F, 0xFD};
/// Of a frame without content, which parallel compressors put first; the low half of the first byte
/// is any number.
constexpr unsigned char kSkippableMagic[] = {0x50, 0x2A, 0x4D, 0x18};

/// A source whose first bytes have been read ahead.
class ReplaySource : public ByteSource {
 public:
  explicit ReplaySource(std::unique_ptr<ByteSource> source) : source_(std::move(source)) {
    while (size_ < sizeof first_) {
      const std::size_t got = source_->Read(first_ + size_, sizeof first_ - size_);
      if (got == 0) break;
      size_ += got;
    }
  }

  bool IsCompressed() const {
    if (size_ != sizeof first_) return false;
    const bool is_skippable =
        (static_cast<unsigned char>(first_[0]) & 0xF0U) == kSkippableMagic[0] &&
        std::memcmp(first_ + 1, kSkippableMagic + 1, sizeof first_ - 1) == 0;
    return is_skippable || std::memcmp(first_, kMagic, sizeof kMagic) == 0;
  }

  std::size_t Read(char* to, std::size_t size) override {
    if (given_ == size_) return source_->Read(to, size);
    const std::size_t taken = std::min(size, size_ - given_);
    std::memcpy(to, first_ + given_, taken);
    given_ += taken;
    return taken;
  }

 private:
  std::unique_ptr<ByteSource> source_;
  char first_[sizeof kMagic];
  std::size_t size_ = 0;
  std::size_t given_ = 0;
};

class ZstdSource : public ByteSource {
 public:
  explicit ZstdSource(std::unique_ptr<ByteSource> source)
      : source_(std::move(source)), stream_(ZSTD_createDStream()), input_(ZSTD_DStreamInSize()) {
    if (stream_ == nullptr) throw std::bad_alloc();
  }
  ~ZstdSource() override { ZSTD_freeDStream(stream_); }

  std::size_t Read(char* to, std::size_t size) override {
    ZSTD_outBuffer out{to, size, 0};
    while (out.pos == 0) {
      if (pending_.pos == pending_.size && !Refill()) {
        if (in_frame_ != 0) throw SourceError("the compressed data ends too early; copy it again");
        return 0;
      }
      in_frame_ = ZSTD_decompressStream(stream_, &out, &pending_);
      if (ZSTD_isError(in_frame_) != 0) {
        throw SourceError(std::string("cannot decompress: ") + ZSTD_getErrorName(in_frame_));
      }
    }
    return out.pos;
  }

 private:
  bool Refill() {
    const std::size_t got = source_->Read(input_.data(), input_.size());
    pending_ = {input_.data(), got, 0};
    return got != 0;
  }

  std::unique_ptr<ByteSource> source_;
  ZSTD_DStream* stream_;
  std::vector<char> input_;
  ZSTD_inBuffer pending_{nullptr, 0, 0};
  std::size_t in_frame_ = 0;  // 0 between frames
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

std::unique_ptr<ByteSource> Decompressed(std::unique_ptr<ByteSource> source) {
  auto replay = std::make_unique<ReplaySource>(std::move(source));
  if (!replay->IsCompressed()) return replay;
  return std::make_unique<ZstdSource>(std::move(replay));
}

}  // namespace fabscan
