#ifndef FABSCAN_DISCOVERY_CACHE_READER_H
#define FABSCAN_DISCOVERY_CACHE_READER_H

#include <sys/types.h>

#include <cstddef>
#include <optional>
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
/// traverse; both are absent with a reason. So is a port that is named, by its node or by its peer,
/// and not stored: its query had failed. Its link is known from the other end.
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

  /// A port that a node names. Small, because there are many.
  struct CachedPort {
    std::size_t offset;  // of its entry; if it is not stored, of its key in the node's entry
    u_int64_t peer_guid = 0;
    u_int8_t peer_number = 0;  // 0: no peer is known
    bool is_stored = true;

    std::optional<RemotePort> peer() const {
      if (peer_number == 0) return std::nullopt;
      return RemotePort{peer_guid, peer_number};
    }
    void SetPeer(u_int64_t node_guid, u_int8_t number) {
      peer_guid = node_guid;
      peer_number = number;
    }
  };

  FileBytes bytes_;
  std::vector<CachedNode> nodes_;
  std::vector<CachedPort> ports_of_nodes_;  // node by node
};

}  // namespace fabscan

#endif
