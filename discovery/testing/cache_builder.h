#ifndef FABSCAN_DISCOVERY_TESTING_CACHE_BUILDER_H
#define FABSCAN_DISCOVERY_TESTING_CACHE_BUILDER_H

#include <infiniband/tessel/Fabric.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "discovery/payload.h"

namespace fabscan {

/// Sets bits of a payload, counted from the most significant bit of its first byte.
void WriteBits(Payload& payload, unsigned first_bit, unsigned bits, u_int64_t value);

/// Builds discovery caches for tests, byte by byte.
class CacheBuilder {
 public:
  struct Port {
    u_int64_t guid;
    u_int8_t number;
    u_int64_t node_guid;
    Payload info;
    u_int64_t peer_guid = 0;
    u_int8_t peer_number = 0;
    bool has_peer = false;
    bool is_stored = true;  // otherwise only named, as if its query had failed
  };
  struct Node {
    u_int64_t guid;
    IBNodeType type;
    u_int8_t port_count;
    std::string description;
    Payload node_info;
    Payload switch_info;
    std::vector<Port> ports;
  };

  /// A node without ports yet. A switch has a SwitchInfo with LinearFDBCap 0xc000.
  Node& Add(u_int64_t guid, IBNodeType type, u_int8_t port_count, std::string_view description);
  /// A port that is down. Its GUID is that of the node, plus the port number if the node is not a
  /// switch.
  static Port& AddPort(Node& node, u_int8_t number);
  /// Links two ports that were added: both are active, and each is the other's peer.
  static void Link(Port& one, Port& other);

  std::vector<Node>& nodes() { return nodes_; }
  const std::vector<Node>& nodes() const { return nodes_; }

  std::string Bytes() const;

  /// Two switches with a double link, an adapter with one of its two ports linked, and a router.
  static CacheBuilder Sample();

 private:
  std::vector<Node> nodes_;
};

}  // namespace fabscan

#endif
