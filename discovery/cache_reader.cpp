#include "discovery/cache_reader.h"

#include <fmt/format.h>
#include <infiniband/tessel/place_index.h>

#include <algorithm>
#include <bitset>
#include <cstring>
#include <utility>

#include "discovery/cache_cursor.h"
#include "discovery/cache_header.h"
#include "discovery/node_names.h"
#include "discovery/payload_decoder.h"
#include "discovery/port_index.h"
#include "model/guid_text.h"

namespace fabscan {

namespace {

constexpr char kNotScanned[] = "a discovery cache contains only the ports that the scan traversed";
constexpr char kNotInCache[] = "not in the discovery cache: the query had failed";
constexpr char kNotStored[] = "a discovery cache does not contain it";

// LIDs and masks that the file stores in addition to the attribute data.
constexpr std::size_t kNodeLidBytes = 4;
constexpr std::size_t kPortLidBytes = 4;

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
  PortKey KeyAt(std::size_t offset) const {
    return {GuidAt(offset), ByteAt(offset + sizeof(u_int64_t))};
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
  std::string_view Info() const { return PayloadAt(kInfo); }
  u_int64_t NodeGuid() const { return GuidAt(kNodeGuid); }
  u_int8_t HasPeer() const { return ByteAt(kHasPeer); }
  PortKey Peer() const { return KeyAt(kPeer); }

  // Offsets in the entry.
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
        first_port_(bytes_.size() - header.ports * kCachePortBytes),
        nodes_(header.nodes),
        ports_(header.nodes),
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
  void ReadNode(u_int32_t place, CacheCursor& cursor) {
    const std::size_t offset = cursor.offset();
    const NodeEntry entry(cursor);
    const SMP_NodeInfo info = Decode<SMP_NodeInfo>(PayloadOf(entry.NodeInfo()));
    Agree(offset, "GUID", entry.Guid(), info.NodeGUID);
    Agree(offset, "type", entry.Type(), info.NodeType);
    Agree(offset, "number of ports", entry.PortCount(), info.NumPorts);
    findings_.nodes_.push_back({entry.Guid(), offset, 0});
    if (!nodes_.Insert(entry.Guid(), place)) {
      FailAt(offset, "a second node with GUID " + GuidText(entry.Guid()));
    }
    cursor.TakeBytes(entry.Stored() * kCachePortKeyBytes);
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
    const PortKey key = port.Key();
    if (ports_.Add(key)) return;
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
      const PortKey key = TakeKey(cursor);
      const u_int32_t place = PlaceOf(key);
      if (place == ports_.kNone || PortAt(place).NodeGuid() != guid) {
        FailAt(node.offset, fmt::format("the node's port {} with port GUID {} is not in the file",
                                        key.number, GuidText(key.guid)));
      }
      if (key.number < entry.FirstPort() || key.number > entry.PortCount() || seen[key.number]) {
        FailAt(node.offset,
               fmt::format("the node has an impossible or duplicate port {}", key.number));
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
  PlaceIndex<u_int64_t> nodes_;
  PortIndex ports_;
  std::vector<bool> taken_;  // a node has this port
  u_int32_t last_place_ = 0;
};

CacheFindings::CacheFindings(FileBytes bytes) : bytes_(std::move(bytes)) {
  CacheCursor cursor(bytes_.view());
  const CacheHeader header = TakeCacheHeader(cursor);
  const u_int64_t expected = CacheFileBytes(header);
  if (bytes_.size() < expected) {
    FailAt(bytes_.size(), fmt::format("the file ends too early; expected {} bytes", expected));
  }
  if (bytes_.size() > expected) {
    FailAt(expected, "the file is longer than its header announces");
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
    room.ports[i].scanned = false;
    room.ports[i].has_peer = false;
  }
  const std::size_t* const offsets = ports_of_nodes_.data() + nodes_[place].first_port;
  for (std::size_t i = 0; i < entry.Stored(); ++i) {
    const PortEntry stored(bytes_.view().data() + offsets[i]);
    PortFindings& port = room.ports[stored.Key().number - first];
    port.info.SetRead(stored.Info());
    port.scanned = true;
    port.has_peer = stored.HasPeer() != 0;
  }
  for (PortFindings& port : room.ports) {
    if (port.scanned) continue;
    entry.IsSwitch() ? port.info.SetFailed(kNotInCache) : port.info.SetNotAsked(kNotScanned);
  }
  const PortInfoExtendedOffer offer(room);
  for (PortFindings& port : room.ports) {
    port.extended.SetNotAsked(offer.Has(port) ? kNotStored : "");
  }
  return room;
}

}  // namespace fabscan
