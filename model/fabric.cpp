#include <infiniband/tessel/Fabric.h>

#include <stdexcept>

#include "guid_text.h"
#include "harmless_name.h"
#include "version.h"

void IBNode::setAlternativeName(std::string_view device_name) {
  alternative_name_ = fabscan::HarmlessName(device_name);
}

IBNode& IBFabric::makeNode(std::string_view device_name, u_int64_t guid, IBNodeType type,
                           phys_port_t num_ports) {
  std::string name = fabscan::HarmlessName(device_name);
  const auto next = NodeByName.lower_bound(name);
  if (next != NodeByName.end() && next->first == name) {
    throw std::invalid_argument("node name in use: " + name);
  }
  if (node_by_guid_.count(guid) != 0)
    throw std::invalid_argument("node GUID in use: " + fabscan::GuidText(guid));

  IBNode& node = nodes_.emplace_back(std::move(name), guid, type, num_ports,
                                     static_cast<u_int32_t>(nodes_.size()));
  NodeByName.emplace_hint(next, node.name, &node);
  node_by_guid_.emplace(guid, &node);
  return node;
}

IBPort& IBFabric::makePort(IBNode& node, phys_port_t number) {
  if (number > node.numPorts) throw std::invalid_argument("port number above numPorts");
  if (number == 0 && node.type != IB_SW_NODE) {
    throw std::invalid_argument("port 0 exists on a switch only");
  }
  if (number < node.Ports.size() && node.Ports[number] != nullptr) {
    throw std::invalid_argument("port number in use");
  }
  if (node.Ports.empty()) node.Ports.reserve(node.numPorts + std::size_t{1});
  if (number >= node.Ports.size()) node.Ports.resize(number + std::size_t{1});
  IBPort& port = ports_.emplace_back(number, static_cast<u_int32_t>(ports_.size()));
  node.Ports[number] = &port;
  return port;
}

IBNode* IBFabric::getNodeByGuid(u_int64_t guid) const {
  const auto found = node_by_guid_.find(guid);
  return found == node_by_guid_.end() ? nullptr : found->second;
}

void IBFabric::WriteFileHeader(std::ostream& out, const char* comment_prefix) {
  out << comment_prefix << " Written by fabscan " << fabscan::kVersion << '\n'
      << comment_prefix << " from the attributes that the devices of a fabric reported\n";
}
