#ifndef FABSCAN_FUZZ_BYTES_H
#define FABSCAN_FUZZ_BYTES_H

#include <sys/types.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace fabscan {

/// Turns any bytes into decisions. After the last byte, every decision is 0, so that short inputs
/// are useful too.
class Bytes {
 public:
  Bytes(const u_int8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  bool AtEnd() const { return rest_.empty(); }

  /// An unsigned number of `size` bytes, 1 to 8.
  u_int64_t Number(std::size_t size) {
    u_int64_t value = 0;
    for (std::size_t i = 0; i < size; ++i) value = value << 8U | Byte();
    return value;
  }
  u_int8_t Byte() {
    if (rest_.empty()) return 0;
    const auto byte = static_cast<u_int8_t>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }
  /// 0 to `count - 1`; `count` is 1 to 256.
  std::size_t OneOf(std::size_t count) { return Byte() % count; }
  bool Flag() { return (Byte() & 1U) != 0; }
  /// Up to `most` bytes, at most 255.
  std::string Text(std::size_t most) {
    const std::size_t size = std::min({std::size_t{Byte()} % (most + 1), rest_.size()});
    std::string text(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return text;
  }

 private:
  std::string_view rest_;
};

}  // namespace fabscan

#endif
