#ifndef FABSCAN_DISCOVERY_CACHE_CURSOR_H
#define FABSCAN_DISCOVERY_CACHE_CURSOR_H

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "payload.h"

namespace fabscan {

/// Throws CacheError.
[[noreturn]] void FailAt(std::size_t offset, const std::string& what);

/// Reads the packed little-endian numbers of a discovery cache, and never past its end: where too
/// few bytes are left, it throws CacheError.
class CacheCursor {
 public:
  explicit CacheCursor(std::string_view bytes) : bytes_(bytes) {}

  std::size_t offset() const { return offset_; }

  std::string_view TakeBytes(std::size_t count);
  Payload TakePayload();
  /// A byte that is 0 or 1.
  bool TakeFlag();

  template <class Number>
  Number Take() {
    u_int64_t value = 0;
    const std::string_view field = TakeBytes(sizeof(Number));
    for (std::size_t i = field.size(); i-- > 0;) {
      value = value << 8U | static_cast<unsigned char>(field[i]);
    }
    return static_cast<Number>(value);
  }

 private:
  std::string_view bytes_;
  std::size_t offset_ = 0;
};

}  // namespace fabscan

#endif
