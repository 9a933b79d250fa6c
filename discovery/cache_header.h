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
  u_int64_t first_node = 0;  // GUID of the node where the scan began
};

inline constexpr std::size_t kCacheHeaderBytes = 28;
inline constexpr std::size_t kCacheNodeBytes = 207;
inline constexpr std::size_t kCachePortBytes = 95;
inline constexpr std::size_t kCachePortKeyBytes = 9;  // listed once more with its node

/// Throws CacheError if this is not a discovery cache, or has another byte order or version.
CacheHeader TakeCacheHeader(CacheCursor& cursor);

/// The size in bytes of a file with this header, if its nodes name the stored ports and no other.
u_int64_t CacheFileBytes(const CacheHeader& header);
/// The size if every node names 255 further ports.
u_int64_t MostCacheFileBytes(const CacheHeader& header);

}  // namespace fabscan

#endif
