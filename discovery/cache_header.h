#ifndef FABSCAN_DISCOVERY_CACHE_HEADER_H
#define FABSCAN_DISCOVERY_CACHE_HEADER_H

#include <sys/types.h>

#include <cstddef>
#include <string_view>

#include "discovery/cache_cursor.h"

namespace fabscan {

/// The first bytes of a discovery cache.
struct CacheHeader {
  u_int32_t nodes = 0;
  u_int32_t ports = 0;
};

inline constexpr std::size_t kCacheHeaderBytes = 28;
inline constexpr std::size_t kCacheNodeBytes = 207;
inline constexpr std::size_t kCachePortBytes = 95;
inline constexpr std::size_t kCachePortKeyBytes = 9;  // each port stands once more with its node

/// Whether a file that begins like this is the text that ibnetdiscover prints.
bool IsTopologyText(std::string_view bytes);

/// Throws CacheError when this is no discovery cache, or one of another kind.
CacheHeader TakeCacheHeader(CacheCursor& cursor);

/// How long the file is that begins with this header.
u_int64_t CacheFileBytes(const CacheHeader& header);

}  // namespace fabscan

#endif
