#include "cache_cursor.h"

#include <fmt/format.h>

#include <cstring>

#include "cache_reader.h"

namespace fabscan {

void FailAt(std::size_t offset, const std::string& what) {
  throw CacheError(fmt::format("byte {}: {}", offset, what));
}

Payload CacheCursor::TakePayload() {
  Payload payload;
  std::memcpy(payload.data(), TakeBytes(payload.size()).data(), payload.size());
  return payload;
}

bool CacheCursor::TakeFlag() {
  const auto value = Take<u_int8_t>();
  if (value > 1) FailAt(offset_ - 1, fmt::format("a flag is 0 or 1, not {}", value));
  return value == 1;
}

}  // namespace fabscan
