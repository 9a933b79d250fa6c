#include "cache_reader.h"

#include <fmt/format.h>
#include <guid_text.h>

#include <bitset>
#include <cstring>
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

/// A port as it stands in the file: every one has the same size, and the file's was held against
/// their number.
class PortEntry {
 public:
  explicit PortEntry(const char* at) : at_(at) {}

  PortKey Key() const { return KeyAt(0); }
  Payload Info() const {
    Payload payload;
    std::memcpy(payload.data(), at_ + kInfo, payload.size());
    return payload;
  }
  u_int64_t NodeGuid() const { return GuidAt(kNodeGuid); }
  u_int8_t HasPeer() const { return static_cast<u_int8_t>(at_[kHasPeer]); }
  PortKey Peer() const { return KeyAt(kPeer); }

  // Where what is where.
  static constexpr std::size_t kInfo = kCachePortKeyBytes + kPortLidBytes;
  static constexpr std::size_t kNodeGuid = kInfo + std::tuple_size_v<Payload>;
  static constexpr std::size_t kHasPeer = kNodeGuid + sizeof(u_int64_t);
  static constexpr std::size_t kPeer = kHasPeer + 1;
  static_assert(kPeer + kCachePortKeyBytes == kCachePortBytes);

 private:
  u_int64_t GuidAt(std::size_t offset) const {
    u_int64_t guid = 0;
    std::memcpy(&guid, at_ + offset, sizeof guid);
    return le64toh(guid);
  }
  PortKey KeyAt(std::size_t offset) const {
    return {GuidAt(offset), static_cast<u_int8_t>(at_[offset + sizeof(u_int64_t)])};
  }

  const char* at_;
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
        key_at_{bytes_.data() + first_port_},
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
    const char* ports;
    PortKey operator()(u_int32_t place) const {
      return PortEntry(ports + place * kCachePortBytes).Key();
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
    const PortEntry port = PortAt(place);
    if (port.HasPeer() > 1) {
      FailAt(OffsetOf(place) + PortEntry::kHasPeer,
             fmt::format("a flag is 0 or 1, not {}", port.HasPeer()));
    }
    if (ports_.Insert(place)) return;
    const PortKey key = port.Key();
    FailAt(OffsetOf(place),
           fmt::format("a second port {} with port GUID {}", key.number, GuidText(key.guid)));
  }

  std::size_t OffsetOf(u_int32_t port) const { return first_port_ + port * kCachePortBytes; }
  PortEntry PortAt(u_int32_t port) const { return PortEntry(bytes_.data() + OffsetOf(port)); }

  void CheckPeer(u_int32_t place) const {
    const PortEntry port = PortAt(place);
    if (port.HasPeer() == 0 || ports_.Find(port.Peer()) != ports_.kNone) return;
    FailAt(OffsetOf(place),
           fmt::format("the port's peer, port {} with port GUID {}, is not in the file",
                       port.Peer().number, GuidText(port.Peer().guid)));
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
      if (place == ports_.kNone || PortAt(place).NodeGuid() != entry.guid) {
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
    const PortEntry stored(bytes_.data() + offsets[i]);
    PortFindings& port = room.ports[stored.Key().number - first];
    port.info.SetRead(stored.Info());
    port.scanned = true;
    port.has_peer = stored.HasPeer() != 0;
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
