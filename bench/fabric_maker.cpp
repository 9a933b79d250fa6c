#include "bench/fabric_maker.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bench/numbers.h"

namespace fabscan {

namespace {

constexpr std::uint64_t kFirstSwitchGuid = 0x5a1e0c0300a00000;
constexpr std::uint64_t kFirstAdapterGuid = 0x5a1e0c0300d00000;
constexpr unsigned kMarkedPorts = 3;  // the last ports of a switch: FNM, FNM1, special
constexpr unsigned kLeavesPerSpine = 2;
constexpr unsigned kAdapterPorts = 2;

constexpr capability_mask_t kEverything = {{~0U, ~0U, ~0U, ~0U}};

class Maker {
 public:
  Maker(const FabricShape& shape, Fabscan& fabscan)
      : shape_(shape),
        fabscan_(fabscan),
        store_(fabscan.fabric_extended_info),
        numbers_(shape.seed) {}

  void Make() {
    const unsigned leaves = shape_.switches - shape_.switches / (kLeavesPerSpine + 1);
    for (unsigned i = 0; i < shape_.switches; ++i) {
      const bool leaf = i < leaves;
      const unsigned number = leaf ? i : i - leaves;
      AddSwitch(fmt::format("{}-{:05}", leaf ? "leaf" : "spine", number), kFirstSwitchGuid + i);
    }
    for (unsigned i = 0; i < shape_.adapters; ++i) {
      AddAdapter(fmt::format("node{:06} HCA-1", i), kFirstAdapterGuid + i);
    }
    LinkSwitches(leaves);
    LinkAdapters(leaves);
  }

 private:
  template <class Record>
  void PutNode(const IBNode& node) {
    store_.put(node, numbers_.Fill<Record>());
  }
  template <class Record>
  void PutPort(const IBPort& port) {
    store_.put(port, numbers_.Fill<Record>());
  }

  IBNode& AddNode(const std::string& name, std::uint64_t guid, IBNodeType type, unsigned ports) {
    IBNode& node =
        fabscan_.discovered_fabric.makeNode(name, guid, type, static_cast<phys_port_t>(ports));
    node.setDescription(name);
    fabscan_.capability_module.put(node, false, kEverything);
    fabscan_.capability_module.put(node, true, kEverything);
    PutNode<SMP_NodeInfo>(node);
    PutNode<ib_extended_node_info>(node);
    PutNode<VendorSpec_GeneralInfo>(node);
    auto& congestion = store_.put<CC_EnhancedCongestionInfo>(node);
    congestion = numbers_.Fill<CC_EnhancedCongestionInfo>();
    congestion.ver0 = 1;
    return node;
  }

  IBPort& AddPort(IBNode& node, unsigned number) {
    IBPort& port = fabscan_.discovered_fabric.makePort(node, static_cast<phys_port_t>(number));
    port.port_state = IB_PORT_STATE_ACTIVE;
    PutPort<SMP_PortInfo>(port);
    if (number == 0) return port;
    PutPort<SMP_PortInfoExtended>(port);
    PutPort<SMP_TarnExtPortInfo>(port);
    return port;
  }

  void AddSwitch(const std::string& name, std::uint64_t guid) {
    IBNode& node = AddNode(name, guid, IB_SW_NODE, shape_.ports);
    PutNode<SMP_SwitchInfo>(node);
    PutNode<SMP_ExtendedSwitchInfo>(node);
    PutNode<ib_private_lft_info>(node);
    PutNode<adaptive_routing_info>(node);
    PutNode<CC_CongestionSwitchGeneralSettings>(node);
    PutNode<IB_ClassPortInfo>(node);
    PutNode<WrenReductionInfo>(node);
    for (unsigned number = 0; number <= shape_.ports; ++number) {
      IBPort& port = AddPort(node, number);
      if (number == 0) continue;
      const unsigned from_last = shape_.ports - number;
      port.setFNMPort(from_last == kMarkedPorts - 1);
      port.setFNM1Port(from_last == kMarkedPorts - 2);
      port.setSpecialPort(from_last == kMarkedPorts - 3);
      AddReduction(port, number);
    }
  }

  void AddReduction(const IBPort& port, unsigned number) {
    PutPort<WrenReductionPortInfo>(port);
    store_.putMonitors(port, 0);
    store_.putMonitors(port, 1);
    for (unsigned index = 0; index < TesselExtendedInfo::kCounterSets; ++index) {
      store_.putCounters(port, index) = numbers_.Fill<WrenReductionCounters>();
    }
    auto& push = store_.put<WrenPushReductionCounters>(port);
    push = numbers_.Fill<WrenPushReductionCounters>();
    push.port_select = static_cast<u_int16_t>(number);
  }

  void AddAdapter(const std::string& name, std::uint64_t guid) {
    IBNode& node = AddNode(name, guid, IB_CA_NODE, kAdapterPorts);
    for (unsigned number = 1; number <= kAdapterPorts; ++number) {
      AddPort(node, number).guid = guid + (u_int64_t{number} << 24U);
    }
  }

  /// Each spine to as many leaves as it has ports, at the upper half of their ports.
  void LinkSwitches(unsigned leaves) {
    std::vector<unsigned> free(leaves, shape_.ports);
    unsigned leaf = 0;
    for (unsigned spine = leaves; spine < shape_.switches; ++spine) {
      for (unsigned number = 1; number <= shape_.ports; ++number, leaf = (leaf + 1) % leaves) {
        if (free[leaf] > shape_.ports / 2) Link(spine, number, leaf, free[leaf]--);
      }
    }
  }

  /// Both ports of each adapter to one leaf, at the lower half of its ports, as long as there are
  /// free ones.
  void LinkAdapters(unsigned leaves) {
    if (leaves == 0) return;
    for (unsigned i = 0; i < shape_.adapters; ++i) {
      for (unsigned number = 1; number <= kAdapterPorts; ++number) {
        const unsigned port = i / leaves * kAdapterPorts + number;
        if (port <= shape_.ports / 2) Link(shape_.switches + i, number, i % leaves, port);
      }
    }
  }

  /// Nodes by the index of their creation.
  void Link(unsigned one, unsigned port, unsigned other, unsigned other_port) {
    IBNode& node = fabscan_.discovered_fabric.nodes()[one];
    IBNode& other_node = fabscan_.discovered_fabric.nodes()[other];
    const auto number = static_cast<phys_port_t>(port);
    const auto other_number = static_cast<phys_port_t>(other_port);
    node.getPort(number)->setRemotePort(RemotePort{other_node.guid, other_number});
    other_node.getPort(other_number)->setRemotePort(RemotePort{node.guid, number});
  }

  const FabricShape& shape_;
  Fabscan& fabscan_;
  TesselExtendedInfo& store_;
  Numbers numbers_;
};

}  // namespace

void MakeFabric(const FabricShape& shape, Fabscan& fabscan) { Maker(shape, fabscan).Make(); }

}  // namespace fabscan
