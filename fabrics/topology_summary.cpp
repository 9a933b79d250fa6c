#include "fabrics/topology_summary.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "fabrics/export/links.h"
#include "fabrics/natural_order.h"

namespace fabscan {

namespace {

/// Adds the links of one switch.
SwitchGroup LinksOfSwitch(const Fabscan& fabscan, const TopologyLevels& levels,
                          const IBNode& node) {
  SwitchGroup group;
  group.level = levels.Of(node);
  group.ports = node.numPorts;
  for (const IBPort* port : node.Ports) {
    if (port == nullptr || !port->getRemotePort()) continue;
    const IBNode* other = fabscan.discovered_fabric.getNodeByGuid(port->getRemotePort()->node_guid);
    const double gbps = LinkRateOf(fabscan, *port).gbps();
    if (other == nullptr) {
      ++group.sideways;
    } else if (other->type != IB_SW_NODE || levels.Of(*other) < group.level) {
      ++group.down;
      group.down_gbps += gbps;
    } else if (levels.Of(*other) > group.level) {
      ++group.up;
      group.up_gbps += gbps;
    } else {
      ++group.sideways;
    }
  }
  return group;
}

std::vector<SwitchGroup> GroupSwitches(const Fabscan& fabscan, const TopologyLevels& levels) {
  const auto key = [](const SwitchGroup& group) {
    return std::tuple(-group.level, group.ports, group.down, group.up, group.sideways,
                      group.down_gbps, group.up_gbps);
  };
  std::map<decltype(key(SwitchGroup())), SwitchGroup> groups;
  for (const IBNode* node : NodesInNaturalOrder(fabscan.discovered_fabric)) {
    if (node->type != IB_SW_NODE) continue;
    const SwitchGroup own = LinksOfSwitch(fabscan, levels, *node);
    groups.try_emplace(key(own), own).first->second.switches.push_back(node);
  }
  std::vector<SwitchGroup> list;
  for (auto& [unused, group] : groups) list.push_back(std::move(group));
  std::stable_sort(list.begin(), list.end(), [](const SwitchGroup& one, const SwitchGroup& other) {
    return std::pair(-one.level, other.switches.size()) <
           std::pair(-other.level, one.switches.size());
  });
  return list;
}

std::vector<LinkGroup> GroupLinks(const std::vector<Link>& links, const TopologyLevels& levels) {
  std::map<std::tuple<int, int, std::string_view, std::string_view>, std::size_t> counts;
  for (const Link& link : links) {
    if (link.second.node == nullptr) continue;
    const auto [lower, upper] =
        std::minmax({levels.Of(*link.first.node), levels.Of(*link.second.node)});
    ++counts[{-upper, -lower, link.rate.width_text(), link.rate.speed_text()}];
  }
  std::vector<LinkGroup> list;
  for (const auto& [key, count] : counts) {
    const auto& [upper, lower, width, speed] = key;
    list.push_back({-lower, -upper, width, speed, count});
  }
  return list;
}

std::vector<std::vector<const IBNode*>> Parts(const IBFabric& fabric) {
  std::vector<std::vector<const IBNode*>> parts;
  std::vector<bool> seen(fabric.nodeCount());
  for (const IBNode* first : NodesInNaturalOrder(fabric)) {
    if (seen[first->createIndex]) continue;
    seen[first->createIndex] = true;
    std::vector<const IBNode*> part = {first};
    for (std::size_t i = 0; i < part.size(); ++i) {
      for (const IBPort* port : part[i]->Ports) {
        if (port == nullptr || !port->getRemotePort()) continue;
        const IBNode* other = fabric.getNodeByGuid(port->getRemotePort()->node_guid);
        if (other == nullptr || seen[other->createIndex]) continue;
        seen[other->createIndex] = true;
        part.push_back(other);
      }
    }
    parts.push_back(std::move(part));
  }
  std::stable_sort(parts.begin(), parts.end(),
                   [](const auto& one, const auto& other) { return one.size() > other.size(); });
  return parts;
}

}  // namespace

TopologySummary SummariseTopology(const Fabscan& fabscan) {
  const TopologyLevels levels(fabscan.discovered_fabric);
  const std::vector<Link> links = LinksOf(fabscan);
  TopologySummary summary;
  summary.switches = GroupSwitches(fabscan, levels);
  summary.links = GroupLinks(links, levels);
  for (const IBNode& node : fabscan.discovered_fabric.nodes()) {
    summary.adapters += node.type == IB_CA_NODE && !node.isSpecialNode();
  }
  for (const Link& link : links) summary.outside += link.second.node == nullptr;
  summary.parts = Parts(fabscan.discovered_fabric);
  return summary;
}

}  // namespace fabscan
