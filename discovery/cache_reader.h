#ifndef FABSCAN_DISCOVERY_CACHE_READER_H
#define FABSCAN_DISCOVERY_CACHE_READER_H

#include <stdexcept>
#include <string_view>

#include "findings.h"

namespace fabscan {

/// A discovery cache that cannot be read. `what()` tells the byte and what is wrong there.
class CacheError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the bytes of a discovery cache, as `ibnetdiscover --cache` writes it on a little-endian
/// host. Nothing in the bytes is trusted: every count is held against what is there, and what the
/// file says twice must agree. Throws CacheError.
///
/// A cache lacks PortInfoExtended, and those ports of adapters and routers that the scan did not
/// come by; both are noted with their reason.
FabricFindings ReadCache(std::string_view bytes);

}  // namespace fabscan

#endif
