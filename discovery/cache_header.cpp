#include "discovery/cache_header.h"

#include <fmt/format.h>

namespace fabscan {

namespace {

constexpr u_int32_t kMagic = 0x8fe7832b;
constexpr u_int32_t kMagicOfOtherByteOrder = 0x2b83e78f;
constexpr u_int32_t kVersion = 1;

}  // namespace

CacheHeader TakeCacheHeader(CacheCursor& cursor) {
  const auto magic = cursor.Take<u_int32_t>();
  if (magic == kMagicOfOtherByteOrder) {
    FailAt(0, "a discovery cache from a host with the other byte order");
  }
  if (magic != kMagic) FailAt(0, "not a discovery cache (as ibnetdiscover --cache writes it)");
  const auto version = cursor.Take<u_int32_t>();
  if (version != kVersion) {
    FailAt(4, fmt::format("discovery cache of version {}; expected {}", version, kVersion));
  }
  CacheHeader header;
  header.nodes = cursor.Take<u_int32_t>();
  header.ports = cursor.Take<u_int32_t>();
  header.first_node = cursor.Take<u_int64_t>();
  cursor.Take<u_int32_t>();  // hops to the farthest node
  return header;
}

u_int64_t CacheFileBytes(const CacheHeader& header) {
  return kCacheHeaderBytes + u_int64_t{header.nodes} * kCacheNodeBytes +
         u_int64_t{header.ports} * (kCachePortKeyBytes + kCachePortBytes);
}

u_int64_t MostCacheFileBytes(const CacheHeader& header) {
  constexpr std::size_t kMostPorts = 255;
  return CacheFileBytes(header) + u_int64_t{header.nodes} * kMostPorts * kCachePortKeyBytes;
}

}  // namespace fabscan
