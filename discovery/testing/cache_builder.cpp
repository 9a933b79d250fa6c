#include "discovery/testing/cache_builder.h"

#include <deque>

#include "records/wire.h"

namespace fabscan {

namespace {

constexpr unsigned kLinkUp = 5;
constexpr unsigned kPolling = 2;

void Put(std::string& bytes, u_int64_t value, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
}

void Put(std::string& bytes, const Payload& payload) {
  bytes.append(payload.begin(), payload.end());
}

/// The LID and its mask in a PortInfo, as a cache states them a second time.
void PutLid(std::string& bytes, const Payload& port_info) {
  Put(bytes, ReadBits(port_info.data(), {128, 16}), 2);
  Put(bytes, ReadBits(port_info.data(), {277, 3}), 1);
}

/// The PortInfo of a switch's port 0; empty if the node has none.
Payload InfoOfPort0(const CacheBuilder::Node& node) {
  for (const CacheBuilder::Port& port : node.ports) {
    if (port.number == 0 && port.is_stored) return port.info;
  }
  return {};
}

void SetState(Payload& port_info, unsigned state, unsigned physical_state) {
  WriteBits(port_info, 260, 4, state);
  WriteBits(port_info, 264, 4, physical_state);
}

}  // namespace

void WriteBits(Payload& payload, unsigned first_bit, unsigned bits, u_int64_t value) {
  WriteBits(payload.data(), {first_bit, bits}, value);
}

CacheBuilder::Node& CacheBuilder::Add(u_int64_t guid, IBNodeType type, u_int8_t port_count,
                                      std::string_view description) {
  Node node{guid, type, port_count, std::string(description), {}, {}, {}};
  WriteBits(node.node_info, 16, 8, type);
  WriteBits(node.node_info, 24, 8, port_count);
  WriteBits(node.node_info, 96, 64, guid);
  WriteBits(node.node_info, 240, 16, 0xd2f0);
  if (type == IB_SW_NODE) WriteBits(node.switch_info, 0, 16, 0xc000);
  node.ports.reserve(port_count + 1U);  // references to ports stay valid
  nodes_.reserve(16);
  return nodes_.emplace_back(std::move(node));
}

CacheBuilder::Port& CacheBuilder::AddPort(Node& node, u_int8_t number) {
  const u_int64_t guid = node.type == IB_SW_NODE ? node.guid : node.guid + number;
  Port port{guid, number, node.guid, {}};
  WriteBits(port.info, 0, 64, 0x5ec2e75ec2e75ec2);  // the management key
  WriteBits(port.info, 240, 8, 0x1f);
  SetState(port.info, IB_PORT_STATE_DOWN, kPolling);
  return node.ports.emplace_back(port);
}

void CacheBuilder::Link(Port& one, Port& other) {
  one.peer_guid = other.guid;
  one.peer_number = other.number;
  other.peer_guid = one.guid;
  other.peer_number = one.number;
  for (Port* port : {&one, &other}) {
    port->has_peer = true;
    SetState(port->info, IB_PORT_STATE_ACTIVE, kLinkUp);
  }
}

std::string CacheBuilder::Bytes() const {
  std::size_t port_count = 0;
  for (const Node& node : nodes_) {
    for (const Port& port : node.ports) port_count += port.is_stored ? 1 : 0;
  }

  std::string bytes;
  Put(bytes, 0x8fe7832b, 4);
  Put(bytes, 1, 4);
  Put(bytes, nodes_.size(), 4);
  Put(bytes, port_count, 4);
  Put(bytes, nodes_.empty() ? 0 : nodes_.front().guid, 8);
  Put(bytes, 2, 4);
  for (const Node& node : nodes_) {
    PutLid(bytes, node.type == IB_SW_NODE ? InfoOfPort0(node) : Payload{});
    Put(bytes, node.type == IB_SW_NODE ? ReadBits(node.switch_info.data(), {132, 1}) : 0, 1);
    Put(bytes, node.switch_info);
    Put(bytes, node.guid, 8);
    Put(bytes, node.type, 1);
    Put(bytes, node.port_count, 1);
    Put(bytes, node.node_info);
    std::string description = node.description;
    description.resize(64);
    bytes += description;
    Put(bytes, node.ports.size(), 1);
    for (const Port& port : node.ports) {
      Put(bytes, port.guid, 8);
      Put(bytes, port.number, 1);
    }
  }
  for (const Node& node : nodes_) {
    for (const Port& port : node.ports) {
      if (!port.is_stored) continue;
      Put(bytes, port.guid, 8);
      Put(bytes, port.number, 1);
      Put(bytes, 0, 1);
      PutLid(bytes, node.type == IB_SW_NODE ? InfoOfPort0(node) : port.info);
      Put(bytes, port.info);
      Put(bytes, port.node_guid, 8);
      Put(bytes, port.has_peer ? 1 : 0, 1);
      Put(bytes, port.peer_guid, 8);
      Put(bytes, port.peer_number, 1);
    }
  }
  return bytes;
}

CacheBuilder CacheBuilder::Sample() {
  CacheBuilder builder;
  Node& leaf = builder.Add(0x200000, IB_SW_NODE, 4, "leaf");
  Node& spine = builder.Add(0x200010, IB_SW_NODE, 2, "spine");
  Node& adapter = builder.Add(0x100000, IB_CA_NODE, 2, "host HCA-1");
  Node& router = builder.Add(0x300000, IB_RTR_NODE, 1, "router");
  for (u_int8_t number = 0; number <= 4; ++number) builder.AddPort(leaf, number);
  for (u_int8_t number = 0; number <= 2; ++number) builder.AddPort(spine, number);
  Link(leaf.ports[1], spine.ports[1]);
  Link(leaf.ports[2], spine.ports[2]);
  Link(leaf.ports[3], builder.AddPort(adapter, 1));
  Link(leaf.ports[4], builder.AddPort(router, 1));
  return builder;
}

}  // namespace fabscan
