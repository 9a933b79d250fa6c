#include "discovery/cache_reader.h"

#include <fmt/format.h>
#include <infiniband/tessel/place_index.h>

#include <algorithm>
#include <bitset>
#include <cstring>
#include <map>
#include <string>
#include <utility>

#include "discovery/cache_cursor.h"
#include "discovery/cache_header.h"
#include "discovery/node_names.h"
#include "discovery/payload_decoder.h"
#include "discovery/port_index.h"
#include "model/guid_text.h"
#include "records/all_records.h"

namespace fabscan {

namespace {

constexpr char kNotScanned[] = "a discovery cache contains only the ports that the scan traversed";
constexpr char kNotInCache[] = "not in the discovery cache: the query had failed";
constexpr char kNotStored[] = "a discovery cache does not contain it";

// LIDs and flags that the file stores in addition to the attribute data.
constexpr std::size_t kNodeLidBytes = 4;
constexpr std::size_t kPortLidBytes = 4;

/// A LID with its mask, which the file states twice.
struct Lid {
  u_int16_t base;
  u_int8_t mask;

  bool operator==(const Lid& other) const { return base == other.base && mask == other.mask; }
};

constexpr Place kLidPlace = FindField(TableOf<SMP_PortInfo>::value, "LID")->place;
constexpr Place kLmcPlace = FindField(TableOf<SMP_PortInfo>::value, "LMC")->place;

/// A part of the file, known to be complete.
class Entry {
 protected:
  explicit Entry(const char* at) : at_(at) {}

  u_int8_t ByteAt(std::size_t offset) const { return static_cast<u_int8_t>(at_[offset]); }
  u_int64_t GuidAt(std::size_t offset) const {
    u_int64_t guid = 0;
    std::memcpy(&guid, at_ + offset, sizeof guid);
    return le64toh(guid);
  }
  Lid LidAt(std::size_t offset) const {
    return {static_cast<u_int16_t>(ByteAt(offset) | ByteAt(offset + 1) << 8U), ByteAt(offset + 2)};
  }
  PortKey KeyAt(std::size_t offset) const {
    return {GuidAt(offset), ByteAt(offset + sizeof(u_int64_t))};
  }
  u_int64_t FieldAt(std::size_t payload, Place place) const {
    return ReadBits(reinterpret_cast<const u_int8_t*>(at_ + payload), place);
  }
  std::string_view PayloadAt(std::size_t offset) const {
    return {at_ + offset, std::tuple_size_v<Payload>};
  }

 private:
  const char* at_;
};

/// A node in the file; the keys of its ports follow.
class NodeEntry : public Entry {
 public:
  explicit NodeEntry(CacheCursor& cursor) : Entry(cursor.TakeBytes(kCacheNodeBytes).data()) {}

  Lid SwitchLid() const { return LidAt(0); }
  u_int8_t HasEnhancedPort0() const { return ByteAt(kEnhancedPort0); }
  std::string_view SwitchInfo() const { return PayloadAt(kSwitchInfo); }
  u_int64_t Guid() const { return GuidAt(kGuid); }
  u_int8_t Type() const { return ByteAt(kType); }
  u_int8_t PortCount() const { return ByteAt(kPortCount); }
  std::string_view NodeInfo() const { return PayloadAt(kNodeInfo); }
  std::string_view Description() const { return PayloadAt(kDescription); }
  /// The number of its ports in the file.
  u_int8_t Stored() const { return ByteAt(kStored); }

  bool IsSwitch() const { return NodeTypeOf(Type()) == IB_SW_NODE; }
  unsigned FirstPort() const { return IsSwitch() ? 0 : 1; }

 private:
  // Offsets in the entry.
  static constexpr std::size_t kEnhancedPort0 = 3;
  static constexpr std::size_t kSwitchInfo = kNodeLidBytes;
  static constexpr std::size_t kGuid = kSwitchInfo + std::tuple_size_v<Payload>;
  static constexpr std::size_t kType = kGuid + sizeof(u_int64_t);
  static constexpr std::size_t kPortCount = kType + 1;
  static constexpr std::size_t kNodeInfo = kPortCount + 1;
  static constexpr std::size_t kDescription = kNodeInfo + std::tuple_size_v<Payload>;
  static constexpr std::size_t kStored = kDescription + std::tuple_size_v<Payload>;
  static_assert(kStored + 1 == kCacheNodeBytes);
};

/// A port in the file, whose size was checked against the number of ports.
class PortEntry : public Entry {
 public:
  explicit PortEntry(const char* at) : Entry(at) {}

  PortKey Key() const { return KeyAt(0); }
  Lid StatedLid() const { return LidAt(kLid); }
  std::string_view Info() const { return PayloadAt(kInfo); }
  /// As its PortInfo states it.
  Lid OwnLid() const {
    return {static_cast<u_int16_t>(FieldAt(kInfo, kLidPlace)),
            static_cast<u_int8_t>(FieldAt(kInfo, kLmcPlace))};
  }
  u_int64_t NodeGuid() const { return GuidAt(kNodeGuid); }
  u_int8_t HasPeer() const { return ByteAt(kHasPeer); }
  PortKey Peer() const { return KeyAt(kPeer); }

  // Offsets in the entry.
  static constexpr std::size_t kLid = kCachePortKeyBytes + 1;  // after a second port number
  static constexpr std::size_t kInfo = kCachePortKeyBytes + kPortLidBytes;
  static constexpr std::size_t kNodeGuid = kInfo + std::tuple_size_v<Payload>;
  static constexpr std::size_t kHasPeer = kNodeGuid + sizeof(u_int64_t);
  static constexpr std::size_t kPeer = kHasPeer + 1;
  static_assert(kPeer + kCachePortKeyBytes == kCachePortBytes);
};

/// The key by which a node names a port: the first bytes of the port's entry.
PortKey TakeKey(CacheCursor& cursor) {
  return PortEntry(cursor.TakeBytes(kCachePortKeyBytes).data()).Key();
}

void SetSwitchInfo(Answer& answer, const NodeEntry& node) {
  if (!node.IsSwitch()) return answer.SetNotAsked({});
  answer.SetRead(node.SwitchInfo());
  if (answer.payload == Payload{}) answer.SetFailed(kNotInCache);
}

}  // namespace

/// Checks a complete cache, and finds the ports of each node.
class CacheReader {
 public:
  CacheReader(CacheFindings& findings, const CacheHeader& header)
      : findings_(findings),
        bytes_(findings.bytes_.view()),
        header_(header),
        nodes_(header.nodes),
        ports_(header.nodes),
        taken_(header.ports) {}

  void Read() {
    findings_.nodes_.reserve(header_.nodes);
    findings_.ports_of_nodes_.reserve(header_.ports);
    CacheCursor cursor(bytes_, kCacheHeaderBytes);
    for (u_int32_t i = 0; i < header_.nodes; ++i) ReadNode(i, cursor);
    if (header_.nodes != 0 && nodes_.Find(header_.first_node) == nodes_.kNone) {
      FailAt(kFirstNode, "the scan began at a node that is not in the file, with GUID " +
                             GuidText(header_.first_node));
    }
    first_port_ = cursor.offset();
    if (named_ports_ < header_.ports) {
      FailAt(first_port_, "the nodes have fewer ports than the header announces");
    }
    CheckSize(first_port_ + u_int64_t{header_.ports} * kCachePortBytes);
    for (u_int32_t i = 0; i < header_.ports; ++i) ReadPort(i);
    for (CacheFindings::CachedNode& node : findings_.nodes_) ClaimPorts(node);
    for (u_int32_t i = 0; i < header_.ports; ++i) {
      if (!taken_[i]) FailAt(OffsetOf(i), "no node of the file has this port");
    }
    for (CacheFindings::CachedPort& port : findings_.ports_of_nodes_) {
      if (port.is_stored) FindPeer(port);
    }
  }

 private:
  void ReadNode(u_int32_t place, CacheCursor& cursor) {
    const std::size_t offset = cursor.offset();
    const NodeEntry entry(cursor);
    const SMP_NodeInfo info = Decode<SMP_NodeInfo>(PayloadOf(entry.NodeInfo()));
    Agree(offset, "GUID", entry.Guid(), info.NodeGUID);
    Agree(offset, "type", entry.Type(), info.NodeType);
    Agree(offset, "number of ports", entry.PortCount(), info.NumPorts);
    if (entry.IsSwitch()) {
      const auto switch_info = Decode<SMP_SwitchInfo>(PayloadOf(entry.SwitchInfo()));
      Agree(offset, "enhanced port 0", entry.HasEnhancedPort0(), switch_info.ENP0, "SwitchInfo");
    }
    findings_.nodes_.push_back({entry.Guid(), offset, 0});
    if (!nodes_.Insert(entry.Guid(), place)) {
      FailAt(offset, "a second node with GUID " + GuidText(entry.Guid()));
    }
    cursor.TakeBytes(entry.Stored() * kCachePortKeyBytes);
    named_ports_ += entry.Stored();
  }

  void CheckSize(u_int64_t expected) const {
    if (bytes_.size() < expected) {
      FailAt(bytes_.size(), fmt::format("the file ends too early; expected {} bytes", expected));
    }
    if (bytes_.size() > expected) {
      FailAt(expected, "the file is longer than its header announces");
    }
  }

  static void Agree(std::size_t offset, const char* what, u_int64_t node_says, u_int64_t info_says,
                    const char* info = "NodeInfo") {
    if (node_says == info_says) return;
    FailAt(offset, fmt::format("the node's {} is {:#x}, but {:#x} in its {}", what, node_says,
                               info_says, info));
  }

  /// A port has the LID of its PortInfo. The LID of a switch is that of its port 0: its other ports
  /// can state it instead, or none if they were read before port 0.
  void CheckLid(const NodeEntry& node, u_int32_t place) const {
    const PortEntry port = PortAt(place);
    const Lid own = port.OwnLid();
    const Lid stated = port.StatedLid();
    const bool is_outer = node.IsSwitch() && port.Key().number != 0;
    if (node.IsSwitch() && !is_outer) CheckLid("switch", node.SwitchLid(), own, place);
    if (is_outer && (stated == node.SwitchLid() || stated == Lid{0, 0})) return;
    CheckLid("port", stated, own, place);
  }

  void CheckLid(const char* what, const Lid& stated, const Lid& own, u_int32_t place) const {
    if (stated == own) return;
    FailAt(OffsetOf(place),
           fmt::format("the {}'s LID is {} with mask {}, but {} with mask {} in its PortInfo", what,
                       stated.base, stated.mask, own.base, own.mask));
  }

  void ReadPort(u_int32_t place) {
    const PortEntry port = PortAt(place);
    if (port.HasPeer() > 1) {
      FailAt(OffsetOf(place) + PortEntry::kHasPeer,
             fmt::format("a flag is 0 or 1, not {}", port.HasPeer()));
    }
    const PortKey key = port.Key();
    if (ports_.Add(key)) return;
    FailAt(OffsetOf(place),
           fmt::format("a second port {} with port GUID {}", key.number, GuidText(key.guid)));
  }

  std::size_t OffsetOf(u_int32_t port) const { return first_port_ + port * kCachePortBytes; }
  PortEntry PortAt(u_int32_t port) const { return PortEntry(bytes_.data() + OffsetOf(port)); }

  /// Checks that the port's peer names this port, and sets the link. A peer that is not stored gets
  /// its link from here, if a node names it.
  void FindPeer(CacheFindings::CachedPort& port) {
    const PortEntry entry(bytes_.data() + port.offset);
    if (entry.HasPeer() == 0) return;
    const PortKey key = entry.Peer();
    if (entry.Key().number == 0 || key.number == 0) {
      FailAt(port.offset, "port 0 of a switch has a link");
    }
    const u_int32_t place = ports_.Find(key);
    if (place != ports_.kNone) {
      const PortEntry peer = PortAt(place);
      if (key == entry.Key()) FailAt(port.offset, "the port is its own peer");
      if (peer.HasPeer() == 0 || !(peer.Peer() == entry.Key())) {
        FailAt(port.offset,
               fmt::format("the port's peer, {}, has another peer or none", Text(key)));
      }
      return port.SetPeer(peer.NodeGuid(), key.number);
    }
    const u_int32_t named = not_stored_.Find(key);
    if (named == not_stored_.kNone) return;
    CacheFindings::CachedPort& peer = findings_.ports_of_nodes_[named];
    if (peer.peer_number != 0) {
      FailAt(port.offset, fmt::format("{} is the peer of another port too", Text(key)));
    }
    port.SetPeer(node_of_not_stored_.at(named), key.number);
    peer.SetPeer(entry.NodeGuid(), entry.Key().number);
  }

  static std::string Text(const PortKey& key) {
    return fmt::format("port {} with port GUID {}", key.number, GuidText(key.guid));
  }

  /// The position of the port with this key. Ports are mostly in the order in which the nodes name
  /// them, or in reverse order.
  u_int32_t PlaceOf(const PortKey& key) {
    for (const u_int32_t place : {last_place_ + 1, last_place_ - 1}) {
      if (place < header_.ports && PortAt(place).Key() == key) {
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
    const u_int64_t guid = entry.Guid();
    for (unsigned i = entry.Stored(); i > 0; --i) {
      const std::size_t offset = cursor.offset();
      const PortKey key = TakeKey(cursor);
      const u_int32_t place = PlaceOf(key);
      if (place != ports_.kNone && PortAt(place).NodeGuid() != guid) {
        FailAt(node.offset, fmt::format("{} is of another node", Text(key)));
      }
      if (key.number < entry.FirstPort() || key.number > entry.PortCount() || seen[key.number]) {
        FailAt(node.offset,
               fmt::format("the node has an impossible or duplicate port {}", key.number));
      }
      seen.set(key.number);
      if (place == ports_.kNone) {
        AddNotStored(node, key, offset);
      } else {
        taken_[place] = true;
        CheckLid(entry, place);
        findings_.ports_of_nodes_.push_back({OffsetOf(place)});
      }
    }
  }

  void AddNotStored(const CacheFindings::CachedNode& node, const PortKey& key, std::size_t offset) {
    const auto named = static_cast<u_int32_t>(findings_.ports_of_nodes_.size());
    if (!not_stored_.Insert(key, named)) {
      FailAt(node.offset, fmt::format("{} is of another node", Text(key)));
    }
    node_of_not_stored_[named] = node.guid;
    findings_.ports_of_nodes_.push_back({offset, 0, 0, false});
  }

  static constexpr std::size_t kFirstNode = 16;  // offset of the GUID in the header

  CacheFindings& findings_;
  std::string_view bytes_;
  CacheHeader header_;
  std::size_t first_port_ = 0;   // its offset
  std::size_t named_ports_ = 0;  // by nodes
  PlaceIndex<u_int64_t> nodes_;
  PortIndex ports_;
  std::vector<bool> taken_;  // a node has this port
  // Ports that nodes name, and that are not stored: places among the ports of nodes, and their
  // nodes.
  PlaceIndex<PortKey> not_stored_;
  std::map<u_int32_t, u_int64_t> node_of_not_stored_;
  u_int32_t last_place_ = 0;
};

CacheFindings::CacheFindings(FileBytes bytes) : bytes_(std::move(bytes)) {
  CacheCursor cursor(bytes_.view());
  const CacheHeader header = TakeCacheHeader(cursor);
  const u_int64_t at_least = CacheFileBytes(header);
  if (bytes_.size() < at_least) {
    FailAt(bytes_.size(), fmt::format("the file ends too early; expected {} bytes", at_least));
  }
  CacheReader(*this, header).Read();
}

std::string_view CacheFindings::Description(std::size_t place) const {
  CacheCursor cursor(bytes_.view(), nodes_[place].offset);
  return DescriptionText(NodeEntry(cursor).Description());
}

const NodeFindings& CacheFindings::Node(std::size_t place, NodeFindings& room) const {
  CacheCursor cursor(bytes_.view(), nodes_[place].offset);
  const NodeEntry entry(cursor);
  room.guid = entry.Guid();
  room.node_info = PayloadOf(entry.NodeInfo());
  room.description.SetRead(entry.Description());
  SetSwitchInfo(room.switch_info, entry);

  // All ports of the node, in the file or not.
  const unsigned first = entry.FirstPort();
  room.ports.resize(entry.PortCount() + 1U - first);
  for (std::size_t i = 0; i < room.ports.size(); ++i) {
    room.ports[i].number = static_cast<u_int8_t>(first + i);
    room.ports[i].guid = 0;
    room.ports[i].scanned = false;
    room.ports[i].peer.reset();
    room.ports[i].peer_failure = {};
    entry.IsSwitch() ? room.ports[i].info.SetFailed(kNotInCache)
                     : room.ports[i].info.SetNotAsked(kNotScanned);
  }
  const CachedPort* const named = ports_of_nodes_.data() + nodes_[place].first_port;
  for (std::size_t i = 0; i < entry.Stored(); ++i) {
    const PortEntry stored(bytes_.view().data() + named[i].offset);
    const PortKey key = stored.Key();
    PortFindings& port = room.ports[key.number - first];
    port.guid = key.guid;
    port.peer = named[i].peer();
    port.scanned = named[i].is_stored;
    if (!port.scanned) {
      port.info.SetFailed(kNotInCache);
      continue;
    }
    port.info.SetRead(stored.Info());
    if (stored.HasPeer() != 0 && !port.peer) port.peer_failure = kNotInCache;
  }
  const PortInfoExtendedOffer offer(room);
  for (PortFindings& port : room.ports) {
    port.extended.SetNotAsked(offer.Has(port) ? kNotStored : "");
  }
  return room;
}

}  // namespace fabscan
