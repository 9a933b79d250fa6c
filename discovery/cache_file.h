#ifndef FABSCAN_DISCOVERY_CACHE_FILE_H
#define FABSCAN_DISCOVERY_CACHE_FILE_H

#include <string>

#include "findings.h"

namespace fabscan {

/// Reads the discovery cache at `path`; "-" is standard input. No more of it is read than its
/// header announces. Throws CacheError, which names the path.
FabricFindings ReadCacheFile(const std::string& path);

}  // namespace fabscan

#endif
