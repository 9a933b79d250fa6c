#ifndef FABSCAN_DISCOVERY_CACHE_CURSOR_H
#define FABSCAN_DISCOVERY_CACHE_CURSOR_H

#include <endian.h>
#include <sys/types.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "discovery/payload.h"

namespace fabscan {

/// Throws CacheError.
[[noreturn]] void FailAt(std::size_t offset, const std::string& what);

/// Reads the packed little-endian numbers of a discovery cache, and never past its end: where too
/// few bytes are left, it throws CacheError.
class CacheCursor {
 public:
  explicit CacheCursor(std::string_view bytes, std::size_t offset = 0)
      : bytes_(bytes), offset_(offset) {}

  std::size_t offset() const { return offset_; }

  std::string_view TakeBytes(std::size_t count) {
    if (bytes_.size() - offset_ < count) FailAt(bytes_.size(), "the file ends too early");
    offset_ += count;
    return bytes_.substr(offset_ - count, count);
  }
  Payload TakePayload() { return PayloadOf(TakeBytes(std::tuple_size_v<Payload>)); }

  template <class Number>
  Number Take() {
    u_int64_t value = 0;
    std::memcpy(&value, TakeBytes(sizeof(Number)).data(), sizeof(Number));
    return static_cast<Number>(le64toh(value));
  }

 private:
  std::string_view bytes_;
  std::size_t offset_ = 0;
};

}  // namespace fabscan

#endif
