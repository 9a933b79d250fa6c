#include "fuzz/cache_mutator.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "discovery/cache_cursor.h"
#include "discovery/cache_header.h"
#include "discovery/cache_reader.h"

namespace fabscan {

namespace {

using Node = CacheBuilder::Node;
using Port = CacheBuilder::Port;
using PortKey = std::pair<u_int64_t, u_int8_t>;

constexpr std::size_t kMostNodes = 12;
constexpr std::size_t kMostPorts = 60;  // per node

Node TakeNode(CacheCursor& cursor) {
  Node node{};
  cursor.TakeBytes(4);
  node.switch_info = cursor.TakePayload();
  node.guid = cursor.Take<u_int64_t>();
  node.type = static_cast<IBNodeType>(cursor.Take<u_int8_t>());
  node.port_count = cursor.Take<u_int8_t>();
  node.node_info = cursor.TakePayload();
  node.description = cursor.TakeBytes(sizeof(Payload));
  const auto stored = cursor.Take<u_int8_t>();
  for (unsigned i = 0; i < stored; ++i) {
    const auto guid = cursor.Take<u_int64_t>();
    node.ports.push_back({guid, cursor.Take<u_int8_t>(), node.guid, {}});
  }
  return node;
}

Port TakePort(CacheCursor& cursor) {
  Port port{};
  port.guid = cursor.Take<u_int64_t>();
  port.number = cursor.Take<u_int8_t>();
  cursor.TakeBytes(4);
  port.info = cursor.TakePayload();
  port.node_guid = cursor.Take<u_int64_t>();
  port.has_peer = cursor.Take<u_int8_t>() != 0;
  port.peer_guid = cursor.Take<u_int64_t>();
  port.peer_number = cursor.Take<u_int8_t>();
  return port;
}

/// The parts of a cache that can be decoded, without ports that no node claims.
std::vector<Node> Parsed(std::string_view bytes) {
  std::vector<Node> nodes;
  std::map<PortKey, Port> ports;
  try {
    CacheCursor cursor(bytes);
    const CacheHeader header = TakeCacheHeader(cursor);
    for (u_int32_t i = 0; i < header.nodes; ++i) nodes.push_back(TakeNode(cursor));
    for (u_int32_t i = 0; i < header.ports; ++i) {
      const Port port = TakePort(cursor);
      ports[{port.guid, port.number}] = port;
    }
  } catch (const CacheError&) {
    // The cache is truncated: the parts before are enough.
    if (nodes.empty()) return {};
  }
  for (Node& node : nodes) {
    for (Port& port : node.ports) {
      const auto found = ports.find({port.guid, port.number});
      if (found != ports.end()) port = found->second;
    }
  }
  return nodes;
}

/// Makes nodes and ports unique, removes impossible ports, and makes repeated values agree.
void Agree(std::vector<Node>& nodes) {
  std::set<u_int64_t> guids;
  std::set<PortKey> keys;
  const auto repeated = [&](const Node& node) { return !guids.insert(node.guid).second; };
  nodes.erase(std::remove_if(nodes.begin(), nodes.end(), repeated), nodes.end());
  for (Node& node : nodes) {
    WriteBits(node.node_info, 16, 8, node.type);
    WriteBits(node.node_info, 24, 8, node.port_count);
    WriteBits(node.node_info, 96, 64, node.guid);
    std::set<u_int8_t> numbers;
    const auto impossible = [&](const Port& port) {
      if (port.number > node.port_count || (port.number == 0 && node.type != IB_SW_NODE))
        return true;
      return !numbers.insert(port.number).second || !keys.insert({port.guid, port.number}).second;
    };
    node.ports.erase(std::remove_if(node.ports.begin(), node.ports.end(), impossible),
                     node.ports.end());
    for (Port& port : node.ports) port.node_guid = node.guid;
  }
}

/// Removes links of which the other port does not name this one.
void DropDeadLinks(std::vector<Node>& nodes) {
  std::map<PortKey, PortKey> peers;
  for (const Node& node : nodes) {
    for (const Port& port : node.ports) {
      if (port.has_peer) peers[{port.guid, port.number}] = {port.peer_guid, port.peer_number};
    }
  }
  for (Node& node : nodes) {
    for (Port& port : node.ports) {
      const auto back = peers.find({port.peer_guid, port.peer_number});
      const PortKey own = {port.guid, port.number};
      port.has_peer = port.has_peer && back != peers.end() && back->second == own;
    }
  }
}

}  // namespace

std::string CacheMutator::Mutated(std::string_view bytes) {
  std::vector<Node> nodes = Parsed(bytes);
  if (nodes.empty()) nodes = std::move(CacheBuilder::Sample().nodes());
  const std::size_t changes = 1 + OneOf(3);
  for (std::size_t i = 0; i < changes; ++i) Change(nodes);
  // Sometimes leaves a change inconsistent: the reader must detect that too.
  if (OneOf(8) != 0) {
    Agree(nodes);
    DropDeadLinks(nodes);
  }
  CacheBuilder builder;
  builder.nodes() = std::move(nodes);
  return builder.Bytes();
}

void CacheMutator::Change(Nodes& nodes) {
  if (nodes.empty()) return AddNode(nodes);
  Port* port = AnyPort(nodes);
  switch (OneOf(9)) {
    case 0:
      return AddNode(nodes);
    case 1:
      return RemoveNode(nodes);
    case 2:
      return AddPort(nodes);
    case 3:
      return RemovePort(nodes);
    case 4:
      return Link(nodes);
    case 5:
      return ChangeIdentity(AnyNode(nodes));
    case 6:
      return ChangeDescription(AnyNode(nodes));
    case 7:
      return ChangePayload(OneOf(2) == 0 ? AnyNode(nodes).node_info : AnyNode(nodes).switch_info);
    default:
      if (port != nullptr) ChangePayload(port->info);
  }
}

// Rarely many: they take most of the time, and show little more than a few do.
std::size_t CacheMutator::PortCount() { return OneOf(16) == 0 ? OneOf(256) : OneOf(6); }

Port* CacheMutator::AnyPort(Nodes& nodes) {
  Node& node = AnyNode(nodes);
  return node.ports.empty() ? nullptr : &node.ports[OneOf(node.ports.size())];
}

void CacheMutator::AddNode(Nodes& nodes) {
  if (nodes.size() >= kMostNodes) return;
  CacheBuilder builder;
  const auto type = static_cast<IBNodeType>(OneOf(5));
  const auto ports = static_cast<u_int8_t>(PortCount());
  Node& node = builder.Add(random_() | u_int64_t{random_()} << 32U, type, ports, "node");
  for (unsigned number = type == IB_SW_NODE ? 0 : 1; number <= ports; ++number) {
    if (number <= kMostPorts && OneOf(8) != 0) {
      CacheBuilder::AddPort(node, static_cast<u_int8_t>(number));
    }
  }
  nodes.push_back(node);
}

void CacheMutator::RemoveNode(Nodes& nodes) {
  nodes.erase(nodes.begin() + static_cast<std::ptrdiff_t>(OneOf(nodes.size())));
}

void CacheMutator::AddPort(Nodes& nodes) {
  Node& node = AnyNode(nodes);
  if (node.ports.size() >= kMostPorts) return;
  node.ports.reserve(node.ports.size() + 1);
  CacheBuilder::AddPort(node, static_cast<u_int8_t>(OneOf(node.port_count + 2U)));
}

void CacheMutator::RemovePort(Nodes& nodes) {
  Node& node = AnyNode(nodes);
  if (!node.ports.empty()) node.ports.pop_back();
}

void CacheMutator::Link(Nodes& nodes) {
  Port* one = AnyPort(nodes);
  Port* other = AnyPort(nodes);
  if (one != nullptr && other != nullptr) CacheBuilder::Link(*one, *other);
}

void CacheMutator::ChangeIdentity(Node& node) {
  switch (OneOf(3)) {
    case 0:
      node.type = static_cast<IBNodeType>(OneOf(8) == 0 ? OneOf(256) : OneOf(5));
      break;
    case 1:
      node.port_count = static_cast<u_int8_t>(PortCount());
      break;
    default:
      node.guid ^= u_int64_t{1} << OneOf(64);
  }
}

void CacheMutator::ChangeDescription(Node& node) {
  node.description.resize(sizeof(Payload));
  change_bytes_(reinterpret_cast<u_int8_t*>(node.description.data()), node.description.size());
}

void CacheMutator::ChangePayload(Payload& payload) {
  change_bytes_(payload.data(), payload.size());
}

}  // namespace fabscan
