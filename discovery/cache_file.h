#ifndef FABSCAN_DISCOVERY_CACHE_FILE_H
#define FABSCAN_DISCOVERY_CACHE_FILE_H

#include <cstddef>
#include <functional>
#include <string>

#include "discovery/cache_reader.h"

namespace fabscan {

/// Reads the discovery cache at `path`; "-" is standard input. No more of it is read than its
/// header announces. Throws CacheError, which names the path.
/// `progress` is called every now and then with how many bytes were read, of how many.
CacheFindings ReadCacheFile(
    const std::string& path,
    const std::function<void(std::size_t done, std::size_t total)>& progress = {});

}  // namespace fabscan

#endif
