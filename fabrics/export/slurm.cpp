#include <fmt/format.h>
#include <fmt/ostream.h>
#include <fmt/ranges.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "fabrics/export/formats.h"
#include "fabrics/natural_order.h"

namespace fabscan {

namespace {

/// Hosts and switches are named by words without characters that have a meaning in lists.
std::string Word(std::string_view name) {
  std::string word(name);
  for (char& c : word) {
    const bool plain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                       c == '-' || c == '_' || c == '.';
    if (!plain) c = '-';
  }
  return word;
}

/// The host of an adapter: the first word of its description, such as `compute-001 HCA-1`.
std::string HostOf(const IBNode& adapter) {
  const std::string_view name = adapter.getDescription() ? *adapter.getDescription() : adapter.name;
  return Word(name.substr(0, name.find(' ')));
}

struct SlurmSwitch {
  std::string name;
  std::vector<std::string> hosts;
  std::vector<std::string> switches;  // below this one
};

/// Slurm's tree has one parent for each switch and one switch for each host, where a fabric has
/// several. So the switches with hosts are the leaves, and each connected part of the fabric is one
/// switch above them.
class SlurmTree {
 public:
  explicit SlurmTree(const IBFabric& fabric) : fabric_(fabric) {}

  std::vector<SlurmSwitch> Build() {
    for (const IBNode* node : NodesInNaturalOrder(fabric_)) {
      if (node->type != IB_SW_NODE) continue;
      SlurmSwitch leaf{UniqueName(Word(node->name)), HostsOf(*node), {}};
      if (leaf.hosts.empty()) continue;
      leaves_of_parts_[PartOf(*node)].push_back(leaf.name);
      switches_.push_back(std::move(leaf));
    }
    std::size_t number = 0;
    for (const auto& [part, leaves] : leaves_of_parts_) {
      ++number;
      if (leaves.size() > 1) {
        switches_.push_back({UniqueName(fmt::format("fabric{}", number)), {}, leaves});
      }
    }
    return std::move(switches_);
  }

 private:
  std::string UniqueName(const std::string& wanted) {
    std::string name = wanted;
    for (int i = 2; !names_.insert(name).second; ++i) name = fmt::format("{}-{}", wanted, i);
    return name;
  }

  std::vector<std::string> HostsOf(const IBNode& node) {
    std::vector<std::string> hosts;
    ForEachNeighbour(node, [&](const IBNode& other) {
      if (other.type != IB_CA_NODE || other.isSpecialNode()) return;
      std::string host = HostOf(other);
      if (hosts_.insert(host).second) hosts.push_back(std::move(host));
    });
    return hosts;
  }

  template <class Visit>
  void ForEachNeighbour(const IBNode& node, const Visit& visit) const {
    for (const IBPort* port : node.Ports) {
      if (port == nullptr || !port->getRemotePort()) continue;
      const IBNode* other = fabric_.getNodeByGuid(port->getRemotePort()->node_guid);
      if (other != nullptr) visit(*other);
    }
  }

  /// The number of the connected part of the fabric that the switch is in.
  std::size_t PartOf(const IBNode& node) {
    const auto known = parts_.find(node.guid);
    if (known != parts_.end()) return known->second;
    const std::size_t part = next_part_++;
    std::vector<const IBNode*> left = {&node};
    parts_[node.guid] = part;
    while (!left.empty()) {
      const IBNode& next = *left.back();
      left.pop_back();
      ForEachNeighbour(next, [&](const IBNode& other) {
        if (other.type == IB_SW_NODE && parts_.emplace(other.guid, part).second) {
          left.push_back(&other);
        }
      });
    }
    return part;
  }

  const IBFabric& fabric_;
  std::vector<SlurmSwitch> switches_;
  std::set<std::string> names_;
  std::set<std::string> hosts_;
  std::map<u_int64_t, std::size_t> parts_;
  std::map<std::size_t, std::vector<std::string>> leaves_of_parts_;
  std::size_t next_part_ = 0;
};

}  // namespace

void WriteSlurmConf(std::ostream& out, const Fabscan& fabscan) {
  for (const SlurmSwitch& entry : SlurmTree(fabscan.discovered_fabric).Build()) {
    const bool is_leaf = entry.switches.empty();
    fmt::print(out, "SwitchName={} {}={}\n", entry.name, is_leaf ? "Nodes" : "Switches",
               fmt::join(is_leaf ? entry.hosts : entry.switches, ","));
  }
}

void WriteSlurmYaml(std::ostream& out, const Fabscan& fabscan) {
  fmt::print(out, "---\n- topology: fabric\n  cluster_default: true\n  tree:\n    switches:\n");
  for (const SlurmSwitch& entry : SlurmTree(fabscan.discovered_fabric).Build()) {
    const bool is_leaf = entry.switches.empty();
    fmt::print(out, "      - switch: \"{}\"\n        {}: \"{}\"\n", entry.name,
               is_leaf ? "nodes" : "children",
               fmt::join(is_leaf ? entry.hosts : entry.switches, ","));
  }
}

}  // namespace fabscan
