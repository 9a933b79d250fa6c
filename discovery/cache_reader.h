#ifndef FABSCAN_DISCOVERY_CACHE_READER_H
#define FABSCAN_DISCOVERY_CACHE_READER_H

#include <sys/types.h>

#include <cstddef>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "discovery/file_bytes.h"
#include "discovery/findings.h"

namespace fabscan {

/// A discovery cache that cannot be read. `what()` gives the byte offset and the error.
class CacheError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The findings of a discovery cache, as `ibnetdiscover --cache` writes it on a little-endian host.
/// Nodes are in the order of the file, and are decoded on demand.
///
/// A cache lacks PortInfoExtended, and the ports of adapters and routers that the scan did not
/// traverse; both are absent with a reason.
class CacheFindings final : public FindingsSource {
 public:
  /// Trusts nothing in the bytes: every count is checked against the size, and values that the file
  /// states twice must agree. Throws CacheError.
  explicit CacheFindings(FileBytes bytes);
  explicit CacheFindings(std::string_view bytes) : CacheFindings(FileBytes(bytes)) {}

  std::size_t NodeCount() const override { return nodes_.size(); }
  u_int64_t Guid(std::size_t place) const override { return nodes_[place].guid; }
  std::string_view Description(std::size_t place) const override;
  const NodeFindings& Node(std::size_t place, NodeFindings& room) const override;

 private:
  friend class CacheReader;

  struct CachedNode {
    u_int64_t guid;
    std::size_t offset;
    std::size_t first_port;  // in `ports_of_nodes_`
  };

  FileBytes bytes_;
  std::vector<CachedNode> nodes_;
  std::vector<std::size_t> ports_of_nodes_;  // offsets of the ports, node by node
};

}  // namespace fabscan

#endif
