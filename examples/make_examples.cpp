// Writes the bundled snapshots: `make-examples FOLDER`. Their fabrics are invented.

#include <cstring>
#include <fstream>
#include <initializer_list>
#include <iostream>

#include "example_values.h"
#include "snapshot.h"

namespace fabscan {

namespace {

constexpr u_int32_t kVendor = 0x5A1E0C;
constexpr u_int64_t kGuidBase = u_int64_t{kVendor} << 40U;

/// What a node's records hold beside the values that tell their fields apart.
struct Device {
  u_int16_t id;
  u_int32_t revision;
  const char* psid;
};

constexpr Device kReductionSwitch = {0xD2F4, 0xA0, "DEMO0000SWQ3"};
constexpr Device kPlainSwitch = {0xD2F0, 0xA1, "DEMO0000SWQ2"};
constexpr Device kOpalSwitch = {0xCF08, 0xB0, "DEMO0000SWO1"};
constexpr Device kRouter = {0xD2F6, 0xA0, "DEMO0000RTR1"};
constexpr Device kAdapter = {0x1021, 0x02, "DEMO00000HCA7"};
constexpr Device kSpecialDevice = {0xCF09, 0xA0, ""};

capability_mask_t Mask(std::initializer_list<unsigned> bits) {
  capability_mask_t mask{};
  for (const unsigned bit : bits) mask.mask[bit / 32] |= u_int32_t{1} << (bit % 32);
  return mask;
}

enum class Kind { kRegular, kFnm, kFnm1, kSpecial };

class ExampleFabric {
 public:
  Fabscan& fabscan() { return fabscan_; }
  TesselExtendedInfo& store() { return fabscan_.fabric_extended_info; }

  /// A node with the records that every node has.
  IBNode& Node(const char* name, IBNodeType type, phys_port_t ports, const Device& device) {
    const auto& nodes = fabscan_.discovered_fabric.nodes();
    seed_ = static_cast<unsigned>(nodes.size()) + 1;
    const u_int64_t guid = kGuidBase + (u_int64_t{seed_} << 8U);
    IBNode& node = fabscan_.discovered_fabric.makeNode(name, guid, type, ports);
    auto info = MakeRecord<SMP_NodeInfo>(seed_);
    info.BaseVersion = 1;
    info.ClassVersion = 2;
    info.PartitionCap = static_cast<u_int16_t>(128 + seed_);
    info.NumPorts = ports;
    info.NodeType = type;
    info.NodeGUID = guid;
    info.SystemImageGUID = guid + 3;
    info.PortGUID = type == IB_CA_NODE ? guid + 1 : guid;
    info.DeviceID = device.id;
    info.revision = device.revision;
    info.VendorID = kVendor;
    info.LocalPortNum = 1;
    store().put(node, info);
    PutMask(node, false, {9, 13});
    device_ = &device;
    return node;
  }

  void PutMask(const IBNode& node, bool is_gmp, std::initializer_list<unsigned> bits) {
    fabscan_.capability_module.put(node, is_gmp, Mask(bits));
  }

  /// What nodes other than special ones answer.
  void General(const IBNode& node) {
    auto info = MakeRecord<VendorSpec_GeneralInfo>(seed_);
    info.HWInfo.DeviceID = device_->id;
    info.HWInfo.num_ports = node.numPorts;
    std::memset(info.FWInfo.PSID.PSID, 0, sizeof info.FWInfo.PSID.PSID);
    std::memcpy(info.FWInfo.PSID.PSID, device_->psid, std::strlen(device_->psid));
    info.CapabilityMask = {};
    store().put(node, info);
    Put<CC_EnhancedCongestionInfo>(node);
    PutMask(node, true, {1, 5, 9, 18, 26, 32, 36, 40, 46});
  }

  /// What every switch answers, special ones included.
  void Switch(const IBNode& node) {
    Put<SMP_SwitchInfo>(node);
    Put<SMP_ExtendedSwitchInfo>(node);
    Put<ib_extended_node_info>(node);
    Put<ib_private_lft_info>(node);
    Put<adaptive_routing_info>(node);
    Put<CC_EnhancedCongestionInfo>(node);
    Put<CC_CongestionSwitchGeneralSettings>(node);
    PutMask(node, false, {0, 2, 4, 9, 12, 13, 18, 21, 44, 67});
  }

  IBPort& Port(IBNode& node, phys_port_t number, Kind kind = Kind::kRegular,
               IBPortState state = IB_PORT_STATE_ACTIVE) {
    IBPort& port = fabscan_.discovered_fabric.makePort(node, number);
    port.port_state = state;
    port.setFNMPort(kind == Kind::kFnm);
    port.setFNM1Port(kind == Kind::kFnm1);
    port.setSpecialPort(kind == Kind::kSpecial);
    auto info = MakeRecord<SMP_PortInfo>(PortSeed(number));
    info.GIDPrefix = 0xFE80000000000000;
    info.LocalPortNum = number;
    info.PortState = state;
    store().put(port, info);
    if (number == 0) return port;
    store().put(port, MakeRecord<SMP_PortInfoExtended>(PortSeed(number)));
    auto extended = MakeRecord<SMP_TarnExtPortInfo>(PortSeed(number));
    extended.IsSpecialPort = kind == Kind::kSpecial;
    extended.is_fnm_port = kind == Kind::kFnm || kind == Kind::kFnm1;
    store().put(port, extended);
    return port;
  }

  /// What a switch that reduces in the network answers beyond `Switch`.
  void Reduction(const IBNode& node) {
    Put<IB_ClassPortInfo>(node);
    Put<WrenReductionInfo>(node);
    PutMask(node, false, {0, 2, 4, 9, 12, 13, 18, 21, 44, 54, 55, 67});
  }

  /// A port's reduction records, with the counter sets at `indexes`.
  void ReductionPort(const IBPort& port, std::initializer_list<u_int32_t> indexes) {
    const unsigned seed = PortSeed(port.num);
    store().put(port, MakeRecord<WrenReductionPortInfo>(seed));
    store().putMonitors(port, 0);
    store().putMonitors(port, 1);
    for (const u_int32_t index : indexes) {
      auto counters = MakeRecord<WrenReductionCounters>(seed + 16 * index);
      counters.port_select = port.num;
      counters.lean_pipe_select = 0xF;
      counters.mlid = static_cast<u_int16_t>(0xC000 + index);
      store().putCounters(port, index) = counters;
    }
    auto push = MakeRecord<WrenPushReductionCounters>(seed);
    push.port_select = port.num;
    push.mlid = 0xC011;
    store().put(port, push);
  }

  template <class Record>
  void Put(const IBNode& node) {
    store().put(node, MakeRecord<Record>(seed_));
  }

 private:
  unsigned PortSeed(phys_port_t number) const { return 32 * seed_ + number; }

  Fabscan fabscan_;
  unsigned seed_ = 0;
  const Device* device_ = nullptr;
};

void MakeReductionSwitch(ExampleFabric& fabric) {
  IBNode& node = fabric.Node("spine-01/U1", IB_SW_NODE, 8, kReductionSwitch);
  node.setAlternativeName("Spine 01 (hall A, rack 07)");
  fabric.General(node);
  fabric.Switch(node);
  fabric.Reduction(node);
  fabric.Port(node, 0, Kind::kRegular, IB_UNKNOWN_PORT_STATE);
  fabric.ReductionPort(fabric.Port(node, 1), {0, 6});
  fabric.ReductionPort(fabric.Port(node, 2, Kind::kRegular, IB_PORT_STATE_INIT), {0, 1});
  fabric.Port(node, 3).setInSubFabric(false);
  fabric.Port(node, 4, Kind::kRegular, IB_PORT_STATE_DOWN);
  fabric.ReductionPort(fabric.Port(node, 5, Kind::kSpecial), {2});
  fabric.ReductionPort(fabric.Port(node, 6, Kind::kRegular, IB_PORT_STATE_ARM), {3});
  fabric.ReductionPort(fabric.Port(node, 7, Kind::kFnm), {0, 4, 7});
  fabric.ReductionPort(fabric.Port(node, 8, Kind::kFnm1), {5});
}

void MakeOtherSwitches(ExampleFabric& fabric) {
  IBNode& plain = fabric.Node("leaf-01/U1", IB_SW_NODE, 4, kPlainSwitch);
  fabric.General(plain);
  fabric.Switch(plain);
  fabric.Port(plain, 0);
  fabric.Port(plain, 1, Kind::kRegular, IB_PORT_STATE_DOWN);
  fabric.Port(plain, 2);
  fabric.Port(plain, 3);
  fabric.Port(plain, 4, Kind::kSpecial);

  IBNode& opal = fabric.Node("leaf-02/U1", IB_SW_NODE, 3, kOpalSwitch);
  opal.setOpalSwitch(true);
  fabric.General(opal);
  fabric.Switch(opal);
  fabric.Port(opal, 0);
  fabric.Port(opal, 1);
  fabric.Port(opal, 2);
  fabric.Port(opal, 3, Kind::kFnm);

  IBNode& special = fabric.Node("mgmt-switch-01/U1", IB_SW_NODE, 2, kSpecialDevice);
  special.setSpecialNodeType(IB_SPECIAL_PORT_ROUTER);
  fabric.Switch(special);
  fabric.Port(special, 0);
  fabric.Port(special, 1);
}

void MakeRouter(ExampleFabric& fabric) {
  IBNode& router = fabric.Node("router-01", IB_RTR_NODE, 2, kRouter);
  fabric.General(router);
  fabric.Put<SMP_RouterInfo>(router);
  fabric.Put<ib_extended_node_info>(router);
  fabric.PutMask(router, false, {9, 13, 44, 48});
  fabric.Port(router, 1);
  fabric.Port(router, 2);
}

void MakeEndNodes(ExampleFabric& fabric) {
  IBNode& one = fabric.Node("compute-001 HCA-1", IB_CA_NODE, 1, kAdapter);
  fabric.General(one);
  fabric.Put<ib_extended_node_info>(one);
  fabric.PutMask(one, false, {9, 13, 15, 44});
  fabric.Port(one, 1);

  IBNode& two = fabric.Node("compute-002 HCA-1", IB_CA_NODE, 2, kAdapter);
  fabric.General(two);
  fabric.PutMask(two, false, {9, 44});
  fabric.Port(two, 1, Kind::kRegular, IB_PORT_STATE_DOWN);
  fabric.Port(two, 2);

  IBNode& other = fabric.Node("unidentified-01", IB_UNKNOWN_NODE_TYPE, 1, kAdapter);
  fabric.General(other);
  fabric.PutMask(other, false, {44});
  fabric.Port(other, 1);

  IBNode& outside = fabric.Node("lab-guest-01 HCA-1", IB_CA_NODE, 1, kAdapter);
  outside.in_sub_fabric = false;
  fabric.General(outside);
  fabric.Port(outside, 1);
}

void MakeSpecialNodes(ExampleFabric& fabric) {
  IBNode& aggregation = fabric.Node("spine-01 Aggregation Node", IB_CA_NODE, 1, kSpecialDevice);
  aggregation.setSpecialNodeType(IB_SPECIAL_PORT_AN);
  fabric.Port(aggregation, 1);

  IBNode& gateway = fabric.Node("gateway-01", IB_CA_NODE, 1, kSpecialDevice);
  gateway.setSpecialNodeType(IB_SPECIAL_PORT_ETH_GATEWAY);
  fabric.Port(gateway, 1);
}

/// A discovery that some devices answered in part.
void MakePartial(ExampleFabric& fabric) {
  IBNode& leaf = fabric.Node("leaf-07/U1", IB_SW_NODE, 2, kPlainSwitch);
  fabric.PutMask(leaf, false, {0, 2, 9, 12, 13, 44});
  fabric.Put<SMP_SwitchInfo>(leaf);
  fabric.store().setAbsent(leaf, "adaptive_routing_info", "no answer within 1000 ms, 3 tries");
  fabric.store().setAbsent(leaf, "ib_private_lft_info", "status 0x000c");
  fabric.Port(leaf, 0);
  const IBPort& silent = fabric.fabscan().discovered_fabric.makePort(leaf, 1);
  leaf.getPort(1)->port_state = IB_PORT_STATE_ACTIVE;
  fabric.store().setAbsent(silent, "SMP_PortInfo", "no answer within 1000 ms, 3 tries");
  fabric.Port(leaf, 2, Kind::kFnm);

  IBNode& host = fabric.Node("compute-117 HCA-1", IB_CA_NODE, 1, kAdapter);
  fabric.store().setAbsent(host, "VendorSpec_GeneralInfo", "not asked: the port is not active");
  fabric.Port(host, 1, Kind::kRegular, IB_PORT_STATE_INIT);
}

void Write(const std::string& path, const Fabscan& fabscan, const char* source) {
  std::ofstream out(path, std::ios::binary);
  WriteSnapshot(out, fabscan, {source, ""});
  if (!out.flush()) throw std::runtime_error("cannot write " + path);
}

}  // namespace

void MakeExamples(const std::string& folder) {
  ExampleFabric demo;
  MakeReductionSwitch(demo);
  MakeOtherSwitches(demo);
  MakeRouter(demo);
  MakeEndNodes(demo);
  MakeSpecialNodes(demo);
  Write(folder + "/demo.fabscan.jsonl", demo.fabscan(),
        "an invented fabric with every kind of node and every attribute");

  ExampleFabric partial;
  MakePartial(partial);
  Write(folder + "/partial.fabscan.jsonl", partial.fabscan(),
        "an invented fabric of which some records were not collected");
}

}  // namespace fabscan

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make-examples FOLDER\n";
    return 2;
  }
  try {
    fabscan::MakeExamples(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "make-examples: " << error.what() << '\n';
    return 1;
  }
}
