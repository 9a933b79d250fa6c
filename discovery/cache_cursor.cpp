#include "cache_cursor.h"

#include <fmt/format.h>

#include "cache_reader.h"

namespace fabscan {

void FailAt(std::size_t offset, const std::string& what) {
  throw CacheError(fmt::format("byte {}: {}", offset, what));
}

bool CacheCursor::TakeFlag() {
  const auto value = Take<u_int8_t>();
  if (value > 1) FailAt(offset_ - 1, fmt::format("a flag is 0 or 1, not {}", value));
  return value == 1;
}

}  // namespace fabscan
