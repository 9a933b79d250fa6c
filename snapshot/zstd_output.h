#ifndef FABSCAN_SNAPSHOT_ZSTD_OUTPUT_H
#define FABSCAN_SNAPSHOT_ZSTD_OUTPUT_H

#include <memory>
#include <ostream>
#include <streambuf>
#include <vector>

struct ZSTD_CCtx_s;

namespace fabscan {

/// Compresses with zstd what is written to it, into another stream:
///
///     ZstdOutput compressed(file);
///     std::ostream out(&compressed);
///     WriteSnapshot(out, fabscan, header);
///     if (!compressed.Finish() || !file.flush()) ...
///
/// The bytes depend on nothing but what is written and the library's version.
class ZstdOutput : public std::streambuf {
 public:
  explicit ZstdOutput(std::ostream& to);
  ~ZstdOutput() override;

  /// Writes what is pending and ends the frame; nothing may be written after it. False where `to`
  /// did not take everything; what else failed, also before, is thrown: a stream that writes into
  /// this buffer would have swallowed it.
  bool Finish();

 protected:
  std::streamsize xsputn(const char* bytes, std::streamsize size) override;
  int_type overflow(int_type c) override;

 private:
  bool Compress(const char* bytes, std::size_t size, bool last);
  [[noreturn]] void ThrowError() const;

  struct Free {
    void operator()(ZSTD_CCtx_s* context) const;
  };

  std::ostream& to_;
  std::unique_ptr<ZSTD_CCtx_s, Free> context_;
  std::vector<char> output_;
  std::size_t error_ = 0;  // of compressing
};

}  // namespace fabscan

#endif
