#include "discovery/cache_cursor.h"

#include <fmt/format.h>

#include "discovery/cache_reader.h"

namespace fabscan {

void FailAt(std::size_t offset, const std::string& what) {
  throw CacheError(fmt::format("byte {}: {}", offset, what));
}

}  // namespace fabscan
