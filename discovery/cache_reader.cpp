#include "cache_reader.h"

#include <fmt/format.h>
#include <guid_text.h>

#include <map>
#include <set>
#include <utility>

#include "cache_cursor.h"
#include "cache_header.h"
#include "node_names.h"
#include "payload_decoder.h"

namespace fabscan {

namespace {

constexpr char kNotScanned[] = "a discovery cache holds only the ports that the scan came by";
constexpr char kNotInCache[] = "not in the discovery cache: the query had failed";
constexpr char kNotStored[] = "a discovery cache does not hold it";

// What the file says of LIDs, masks and port 0 beside the payloads that say it too.
constexpr std::size_t kNodeLidBytes = 4;
constexpr std::size_t kPortLidBytes = 4;

/// How ports name each other: a switch has one port GUID for all of its ports.
using PortKey = std::pair<u_int64_t, u_int8_t>;

struct CachedNode {
  std::size_t offset = 0;
  NodeFindings findings;
  bool is_switch = false;
  unsigned port_count = 0;
  std::vector<PortKey> stored;  // its ports that the file holds
};

struct CachedPort {
  std::size_t offset = 0;
  u_int64_t node_guid = 0;
  bool has_peer = false;
  PortKey peer;
  Payload info = {};
  bool taken = false;  // a node claimed it
};

class CacheReader {
 public:
  explicit CacheReader(std::string_view bytes) : cursor_(bytes), size_(bytes.size()) {}

  FabricFindings Read() {
    const CacheHeader header = TakeCacheHeader(cursor_);
    const u_int64_t expected = CacheFileBytes(header);
    if (size_ < expected)
      FailAt(size_, fmt::format("the file ends too early, of {} bytes", expected));
    if (size_ > expected) FailAt(expected, "there is more in the file than its header announces");

    nodes_.reserve(header.nodes);  // they are there, as the size says
    for (u_int32_t i = 0; i < header.nodes; ++i) ReadNode();
    for (u_int32_t i = 0; i < header.ports; ++i) ReadPort();
    for (const auto& [key, port] : ports_) CheckPeer(port);

    FabricFindings findings;
    findings.nodes.reserve(nodes_.size());
    for (CachedNode& node : nodes_) findings.nodes.push_back(WithPorts(node));
    for (const auto& [key, port] : ports_) {
      if (!port.taken) FailAt(port.offset, "no node of the file has this port");
    }
    return findings;
  }

 private:
  void ReadNode() {
    CachedNode node;
    node.offset = cursor_.offset();
    cursor_.TakeBytes(kNodeLidBytes);  // all of it is in PortInfo and SwitchInfo as well
    const Payload switch_info = cursor_.TakePayload();
    node.findings.guid = cursor_.Take<u_int64_t>();
    const auto type = cursor_.Take<u_int8_t>();
    node.port_count = cursor_.Take<u_int8_t>();
    node.findings.node_info = cursor_.TakePayload();
    node.findings.description = Answer::Read(cursor_.TakePayload());

    const SMP_NodeInfo info = DecodeNodeInfo(node.findings.node_info);
    Agree(node, "GUID", node.findings.guid, info.NodeGUID);
    Agree(node, "type", type, info.NodeType);
    Agree(node, "number of ports", node.port_count, info.NumPorts);
    if (!guids_.insert(node.findings.guid).second) {
      FailAt(node.offset, "a second node with GUID " + GuidText(node.findings.guid));
    }
    node.is_switch = NodeTypeOf(type) == IB_SW_NODE;
    if (node.is_switch) {
      node.findings.switch_info =
          switch_info == Payload{} ? Answer::Failed(kNotInCache) : Answer::Read(switch_info);
    }

    const auto stored = cursor_.Take<u_int8_t>();
    for (unsigned i = 0; i < stored; ++i) {
      const auto guid = cursor_.Take<u_int64_t>();
      node.stored.emplace_back(guid, cursor_.Take<u_int8_t>());
    }
    nodes_.push_back(std::move(node));
  }

  static void Agree(const CachedNode& node, const char* what, u_int64_t node_says,
                    u_int64_t node_info_says) {
    if (node_says == node_info_says) return;
    FailAt(node.offset, fmt::format("the node's {} is {:#x}, but {:#x} in its NodeInfo", what,
                                    node_says, node_info_says));
  }

  void ReadPort() {
    CachedPort port;
    port.offset = cursor_.offset();
    const auto guid = cursor_.Take<u_int64_t>();
    const PortKey key(guid, cursor_.Take<u_int8_t>());
    cursor_.TakeBytes(kPortLidBytes);  // all of it is in PortInfo as well
    port.info = cursor_.TakePayload();
    port.node_guid = cursor_.Take<u_int64_t>();
    port.has_peer = cursor_.TakeFlag();
    port.peer.first = cursor_.Take<u_int64_t>();
    port.peer.second = cursor_.Take<u_int8_t>();
    if (!ports_.emplace(key, port).second) {
      FailAt(port.offset,
             fmt::format("a second port {} with port GUID {}", key.second, GuidText(key.first)));
    }
  }

  void CheckPeer(const CachedPort& port) const {
    if (!port.has_peer || ports_.count(port.peer) != 0) return;
    FailAt(port.offset,
           fmt::format("the port's peer, port {} with port GUID {}, is not in the file",
                       port.peer.second, GuidText(port.peer.first)));
  }

  /// The node with every port that it has, be it in the file or not.
  NodeFindings WithPorts(CachedNode& node) {
    NodeFindings findings = std::move(node.findings);
    const unsigned first = node.is_switch ? 0 : 1;
    findings.ports.resize(node.port_count + 1U - first);
    for (unsigned i = 0; i < findings.ports.size(); ++i) {
      findings.ports[i].number = static_cast<u_int8_t>(first + i);
    }
    for (const PortKey& key : node.stored) FillPort(node, key, findings);
    for (PortFindings& port : findings.ports) {
      if (!port.scanned) {
        port.info = node.is_switch ? Answer::Failed(kNotInCache) : Answer::NotAsked(kNotScanned);
      }
      if (OffersPortInfoExtended(findings, port)) port.extended = Answer::NotAsked(kNotStored);
    }
    return findings;
  }

  void FillPort(const CachedNode& node, const PortKey& key, NodeFindings& findings) {
    const auto found = ports_.find(key);
    const bool known = found != ports_.end() && found->second.node_guid == findings.guid;
    if (!known) {
      FailAt(node.offset, fmt::format("the node's port {} with port GUID {} is not in the file",
                                      key.second, GuidText(key.first)));
    }
    CachedPort& cached = found->second;
    const std::size_t place = key.second - (node.is_switch ? std::size_t{0} : 1);  // huge below 0
    PortFindings* const port = place < findings.ports.size() ? &findings.ports[place] : nullptr;
    if (port == nullptr || port->scanned) {
      FailAt(node.offset, fmt::format("the node has a port {} that it cannot have, or has it twice",
                                      key.second));
    }
    cached.taken = true;
    port->info = Answer::Read(cached.info);
    port->scanned = true;
    port->has_peer = cached.has_peer;
  }

  CacheCursor cursor_;
  std::size_t size_;
  std::vector<CachedNode> nodes_;
  std::set<u_int64_t> guids_;
  std::map<PortKey, CachedPort> ports_;
};

}  // namespace

FabricFindings ReadCache(std::string_view bytes) { return CacheReader(bytes).Read(); }

}  // namespace fabscan
