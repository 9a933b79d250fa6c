#include "snapshot/zstd_output.h"

#include <zstd.h>
#include <zstd_errors.h>

#include <new>
#include <stdexcept>

namespace fabscan {

void ZstdOutput::Free::operator()(ZSTD_CCtx_s* context) const { ZSTD_freeCCtx(context); }

ZstdOutput::ZstdOutput(std::ostream& to)
    : to_(to), context_(ZSTD_createCCtx()), output_(ZSTD_CStreamOutSize()) {
  if (context_ == nullptr) throw std::bad_alloc();
  ZSTD_CCtx_setParameter(context_.get(), ZSTD_c_checksumFlag, 1);
}

ZstdOutput::~ZstdOutput() = default;

bool ZstdOutput::Finish() {
  const bool written = error_ == 0 && Compress(nullptr, 0, true);
  if (error_ != 0) ThrowError();
  return written;
}

void ZstdOutput::ThrowError() const {
  if (ZSTD_getErrorCode(error_) == ZSTD_error_memory_allocation) throw std::bad_alloc();
  throw std::runtime_error(std::string("cannot compress: ") + ZSTD_getErrorName(error_));
}

std::streamsize ZstdOutput::xsputn(const char* bytes, std::streamsize size) {
  return Compress(bytes, static_cast<std::size_t>(size), false) ? size : 0;
}

ZstdOutput::int_type ZstdOutput::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char byte = traits_type::to_char_type(c);
  return Compress(&byte, 1, false) ? c : traits_type::eof();
}

bool ZstdOutput::Compress(const char* bytes, std::size_t size, bool last) {
  ZSTD_inBuffer in{bytes, size, 0};
  for (;;) {
    ZSTD_outBuffer out{output_.data(), output_.size(), 0};
    const std::size_t left =
        ZSTD_compressStream2(context_.get(), &out, &in, last ? ZSTD_e_end : ZSTD_e_continue);
    if (ZSTD_isError(left) != 0) {
      error_ = left;
      return false;
    }
    if (!to_.write(output_.data(), static_cast<std::streamsize>(out.pos))) return false;
    if (last ? left == 0 : in.pos == in.size) return true;
  }
}

}  // namespace fabscan
