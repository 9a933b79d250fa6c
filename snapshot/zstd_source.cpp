#include <zstd.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "snapshot/byte_source.h"

namespace fabscan {

namespace {

constexpr unsigned char kMagic[] = {0x28, 0xB5, 0x2F, 0xFD};

/// A source whose first bytes were looked at.
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
    return size_ == sizeof kMagic && std::memcmp(first_, kMagic, sizeof kMagic) == 0;
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

std::unique_ptr<ByteSource> Decompressed(std::unique_ptr<ByteSource> source) {
  auto replay = std::make_unique<ReplaySource>(std::move(source));
  if (!replay->IsCompressed()) return replay;
  return std::make_unique<ZstdSource>(std::move(replay));
}

}  // namespace fabscan
