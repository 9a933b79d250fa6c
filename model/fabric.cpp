#include <infiniband/tessel/Fabric.h>

#include <stdexcept>
#include <utility>

#include "model/guid_text.h"
#include "model/harmless_name.h"
#include "model/version.h"

void IBNode::setAlternativeName(std::string_view device_name) {
  alternative_name_ = fabscan::HarmlessName(device_name);
}

void IBNode::setDescription(std::string_view reported) {
  description_ = fabscan::HarmlessName(reported);
}

IBNode& IBFabric::makeNode(std::string_view device_name, u_int64_t guid, IBNodeType type,
                           phys_port_t num_ports) {
  if (place_by_guid_.Find(guid) != place_by_guid_.kNone) {
    throw std::invalid_argument("node GUID in use: " + fabscan::GuidText(guid));
  }
  IBNode& node = nodes_.emplace_back(fabscan::HarmlessName(device_name), guid, type, num_ports,
                                     static_cast<u_int32_t>(nodes_.size()));
  if (!enterName(node)) {
    const std::string name = node.name;
    nodes_.pop_back();
    throw std::invalid_argument("node name in use: " + name);
  }
  place_by_guid_.Insert(guid, node.createIndex);
  return node;
}

bool IBFabric::enterName(IBNode& node) {
  // Nodes are often created in the order of their names.
  const auto last = NodeByName.end();
  if (spare_names_.empty()) return NodeByName.try_emplace(last, node.name, &node)->second == &node;
  auto entry = spare_names_.extract(spare_names_.begin());
  entry.key() = node.name;
  entry.mapped() = &node;
  return NodeByName.insert(last, std::move(entry))->second == &node;
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
  IBPort& port = ports_.emplace_back(number, static_cast<u_int32_t>(ports_.size()));
  if (number > node.Ports.size()) node.Ports.resize(number);
  if (number == node.Ports.size()) node.Ports.push_back(nullptr);
  node.Ports[number] = &port;
  return port;
}

void IBFabric::clear() {
  NodeByName.swap(spare_names_);
  NodeByName.clear();
  place_by_guid_.Clear();
  ports_.clear();
  nodes_.clear();
  extra_of_nodes_.clear();
  extra_of_ports_.clear();
}

void IBFabric::setExtra(const IBNode& node, std::string json) {
  extra_of_nodes_[node.createIndex] = std::move(json);
}

void IBFabric::setExtra(const IBPort& port, std::string json) {
  extra_of_ports_[port.createIndex] = std::move(json);
}

IBNode* IBFabric::getNodeByGuid(u_int64_t guid) const {
  const u_int32_t place = place_by_guid_.Find(guid);
  // Returns mutable nodes, as NodeByName does.
  return place == place_by_guid_.kNone ? nullptr : const_cast<IBNode*>(&nodes_[place]);
}

void IBFabric::WriteFileHeader(std::ostream& out, const char* comment_prefix) {
  out << comment_prefix << " Written by fabscan " << fabscan::kVersion << '\n'
      << comment_prefix << " from the attributes that the devices of a fabric reported\n";
}
