#include "cache_reader.h"

#include <fmt/format.h>
#include <guid_text.h>

#include <bitset>
#include <utility>

#include "cache_cursor.h"
#include "cache_header.h"
#include "node_names.h"
#include "payload_decoder.h"
#include "place_index.h"

namespace fabscan {

namespace {

constexpr char kNotScanned[] = "a discovery cache holds only the ports that the scan came by";
constexpr char kNotInCache[] = "not in the discovery cache: the query had failed";
constexpr char kNotStored[] = "a discovery cache does not hold it";

// What the file says of LIDs, masks and port 0 beside the payloads that say it too.
constexpr std::size_t kNodeLidBytes = 4;
constexpr std::size_t kPortLidBytes = 4;

/// How ports name each other: a switch has one port GUID for all of its ports.
struct PortKey {
  u_int64_t guid;
  u_int8_t number;

  bool operator==(const PortKey& other) const {
    return guid == other.guid && number == other.number;
  }
};

u_int64_t HashOf(const PortKey& key) {
  return fabscan::HashOf(fabscan::HashOf(key.guid) + key.number);
}

PortKey TakeKey(CacheCursor& cursor) {
  const auto guid = cursor.Take<u_int64_t>();
  return {guid, cursor.Take<u_int8_t>()};
}

/// A node as it stands in the file; its ports follow.
struct NodeEntry {
  explicit NodeEntry(CacheCursor& cursor) {
    cursor.TakeBytes(kNodeLidBytes);  // all of it is in PortInfo and SwitchInfo as well
    switch_info = cursor.TakePayload();
    guid = cursor.Take<u_int64_t>();
    type = cursor.Take<u_int8_t>();
    port_count = cursor.Take<u_int8_t>();
    node_info = cursor.TakePayload();
    description = cursor.TakePayload();
    stored = cursor.Take<u_int8_t>();
  }

  bool IsSwitch() const { return NodeTypeOf(type) == IB_SW_NODE; }
  unsigned FirstPort() const { return IsSwitch() ? 0 : 1; }

  Payload switch_info;
  u_int64_t guid;
  u_int8_t type;
  u_int8_t port_count;
  Payload node_info;
  Payload description;
  u_int8_t stored;  // how many of its ports the file holds
};

struct PortEntry {
  explicit PortEntry(CacheCursor& cursor) : key(TakeKey(cursor)) {
    cursor.TakeBytes(kPortLidBytes);  // all of it is in PortInfo as well
    info = cursor.TakePayload();
    node_guid = cursor.Take<u_int64_t>();
    has_peer = cursor.TakeFlag();
    peer = TakeKey(cursor);
  }

  PortKey key;
  Payload info;
  u_int64_t node_guid;
  bool has_peer;
  PortKey peer;
};

}  // namespace

/// Checks a cache from its first byte to its last, and finds each node's ports.
class CacheReader {
 public:
  CacheReader(CacheFindings& findings, const CacheHeader& header)
      : findings_(findings),
        bytes_(findings.bytes_),
        header_(header),
        first_port_(bytes_.size() - header.ports * kCachePortBytes),
        nodes_(header.nodes, GuidAt{findings.nodes_}),
        key_at_{bytes_.substr(first_port_)},
        ports_(header.ports, key_at_),
        taken_(header.ports) {}

  void Read() {
    findings_.nodes_.reserve(header_.nodes);
    findings_.ports_of_nodes_.reserve(header_.ports);
    CacheCursor cursor(bytes_, kCacheHeaderBytes);
    for (u_int32_t i = 0; i < header_.nodes; ++i) ReadNode(i, cursor);
    if (cursor.offset() != first_port_) {
      FailAt(cursor.offset(), "the nodes have more or fewer ports than the header announces");
    }
    for (u_int32_t i = 0; i < header_.ports; ++i) ReadPort(i);
    for (u_int32_t i = 0; i < header_.ports; ++i) CheckPeer(i);
    for (CacheFindings::CachedNode& node : findings_.nodes_) ClaimPorts(node);
    for (u_int32_t i = 0; i < header_.ports; ++i) {
      if (!taken_[i]) FailAt(OffsetOf(i), "no node of the file has this port");
    }
  }

 private:
  struct GuidAt {
    const std::vector<CacheFindings::CachedNode>& nodes;
    u_int64_t operator()(u_int32_t place) const { return nodes[place].guid; }
  };
  struct KeyAt {
    std::string_view ports;
    PortKey operator()(u_int32_t place) const {
      CacheCursor cursor(ports, place * kCachePortBytes);
      return TakeKey(cursor);
    }
  };

  void ReadNode(u_int32_t place, CacheCursor& cursor) {
    const std::size_t offset = cursor.offset();
    const NodeEntry entry(cursor);
    const SMP_NodeInfo info = DecodeNodeInfo(entry.node_info);
    Agree(offset, "GUID", entry.guid, info.NodeGUID);
    Agree(offset, "type", entry.type, info.NodeType);
    Agree(offset, "number of ports", entry.port_count, info.NumPorts);
    findings_.nodes_.push_back({entry.guid, offset, 0});
    if (!nodes_.Insert(place)) {
      FailAt(offset, "a second node with GUID " + GuidText(entry.guid));
    }
    cursor.TakeBytes(entry.stored * kCachePortKeyBytes);
  }

  static void Agree(std::size_t offset, const char* what, u_int64_t node_says,
                    u_int64_t node_info_says) {
    if (node_says == node_info_says) return;
    FailAt(offset, fmt::format("the node's {} is {:#x}, but {:#x} in its NodeInfo", what, node_says,
                               node_info_says));
  }

  void ReadPort(u_int32_t place) {
    const PortKey key = PortAt(place).key;  // with all that must be right beside it
    if (ports_.Insert(place)) return;
    FailAt(OffsetOf(place),
           fmt::format("a second port {} with port GUID {}", key.number, GuidText(key.guid)));
  }

  std::size_t OffsetOf(u_int32_t port) const { return first_port_ + port * kCachePortBytes; }
  PortEntry PortAt(u_int32_t port) const {
    CacheCursor cursor(bytes_, OffsetOf(port));
    return PortEntry(cursor);
  }

  void CheckPeer(u_int32_t place) const {
    const PortEntry port = PortAt(place);
    if (!port.has_peer || ports_.Find(port.peer) != ports_.kNone) return;
    FailAt(OffsetOf(place),
           fmt::format("the port's peer, port {} with port GUID {}, is not in the file",
                       port.peer.number, GuidText(port.peer.guid)));
  }

  /// Where the port with this key is. Ports mostly stand in the order in which the nodes name them,
  /// or the other way round.
  u_int32_t PlaceOf(const PortKey& key) {
    for (const u_int32_t place : {last_place_ + 1, last_place_ - 1}) {
      if (place < header_.ports && key_at_(place) == key) {
        return last_place_ = place;
      }
    }
    return last_place_ = ports_.Find(key);
  }

  /// Finds the ports that the node names.
  void ClaimPorts(CacheFindings::CachedNode& node) {
    CacheCursor cursor(bytes_, node.offset);
    const NodeEntry entry(cursor);
    node.first_port = findings_.ports_of_nodes_.size();
    std::bitset<256> seen;
    for (unsigned i = 0; i < entry.stored; ++i) {
      const PortKey key = TakeKey(cursor);
      const u_int32_t place = PlaceOf(key);
      if (place == ports_.kNone || PortAt(place).node_guid != entry.guid) {
        FailAt(node.offset, fmt::format("the node's port {} with port GUID {} is not in the file",
                                        key.number, GuidText(key.guid)));
      }
      if (key.number < entry.FirstPort() || key.number > entry.port_count || seen[key.number]) {
        FailAt(
            node.offset,
            fmt::format("the node has a port {} that it cannot have, or has it twice", key.number));
      }
      seen.set(key.number);
      taken_[place] = true;
      findings_.ports_of_nodes_.push_back(OffsetOf(place));
    }
  }

  CacheFindings& findings_;
  std::string_view bytes_;
  CacheHeader header_;
  std::size_t first_port_;  // its offset
  PlaceIndex<u_int64_t, GuidAt> nodes_;
  KeyAt key_at_;
  PlaceIndex<PortKey, KeyAt> ports_;
  std::vector<bool> taken_;  // a node has this port
  u_int32_t last_place_ = 0;
};

CacheFindings::CacheFindings(std::string bytes) : bytes_(std::move(bytes)) {
  CacheCursor cursor(bytes_);
  const CacheHeader header = TakeCacheHeader(cursor);
  const u_int64_t expected = CacheFileBytes(header);
  if (bytes_.size() < expected) {
    FailAt(bytes_.size(), fmt::format("the file ends too early, of {} bytes", expected));
  }
  if (bytes_.size() > expected) {
    FailAt(expected, "there is more in the file than its header announces");
  }
  CacheReader(*this, header).Read();
}

Payload CacheFindings::Description(std::size_t place) const {
  CacheCursor cursor(bytes_, nodes_[place].offset);
  return NodeEntry(cursor).description;
}

const NodeFindings& CacheFindings::Node(std::size_t place, NodeFindings& room) const {
  CacheCursor cursor(bytes_, nodes_[place].offset);
  const NodeEntry entry(cursor);
  room.guid = entry.guid;
  room.node_info = entry.node_info;
  room.description.SetRead(entry.description);
  if (!entry.IsSwitch()) {
    room.switch_info.SetMissing(Answer::Outcome::kNotAsked, {});
  } else if (entry.switch_info == Payload{}) {
    room.switch_info.SetMissing(Answer::Outcome::kFailed, kNotInCache);
  } else {
    room.switch_info.SetRead(entry.switch_info);
  }

  // Every port that the node has, be it in the file or not.
  const unsigned first = entry.FirstPort();
  room.ports.resize(entry.port_count + 1U - first);
  for (std::size_t i = 0; i < room.ports.size(); ++i) {
    room.ports[i].number = static_cast<u_int8_t>(first + i);
    room.ports[i].scanned = false;
    room.ports[i].has_peer = false;
  }
  const std::size_t* const offsets = ports_of_nodes_.data() + nodes_[place].first_port;
  for (std::size_t i = 0; i < entry.stored; ++i) {
    CacheCursor at(bytes_, offsets[i]);
    const PortEntry stored(at);
    PortFindings& port = room.ports[stored.key.number - first];
    port.info.SetRead(stored.info);
    port.scanned = true;
    port.has_peer = stored.has_peer;
  }
  for (PortFindings& port : room.ports) {
    if (port.scanned) continue;
    entry.IsSwitch() ? port.info.SetMissing(Answer::Outcome::kFailed, kNotInCache)
                     : port.info.SetMissing(Answer::Outcome::kNotAsked, kNotScanned);
  }
  for (PortFindings& port : room.ports) {
    port.extended.SetMissing(Answer::Outcome::kNotAsked,
                             OffersPortInfoExtended(room, port) ? kNotStored : "");
  }
  return room;
}

}  // namespace fabscan
