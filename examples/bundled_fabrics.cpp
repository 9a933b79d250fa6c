// The nodes and ports of the bundled snapshots. Their fabrics are invented. The answers of the
// devices are in tables: device_models.h lists the devices, *_values.cpp the values of their
// records.

#include "examples/bundled_fabrics.h"

#include "examples/node_values.h"
#include "examples/reduction_values.h"

namespace fabscan {

namespace {

// ---------- A fabric with every type of node and every attribute ----------

// The ports of the subnet manager and of the reduction manager's redirection, both port 1.
constexpr u_int64_t kManagerGuid = kGuidBase + 0x601;      // compute-001
constexpr u_int64_t kAggregationGuid = kGuidBase + 0xA01;  // spine-01 Aggregation Node
constexpr u_int16_t kAggregationLid = 161;

/// The reduction records of a port that has counters, and its monitors.
void AddReductionPort(TesselExtendedInfo& store, const IBPort& port, PortKind kind) {
  store.put(port, MakeReductionPortInfo(kind));
  store.putMonitors(port, 0);
  store.putMonitors(port, 1);
  for (const PortTraffic& traffic : kReductionTraffic) {
    if (traffic.port != port.num) continue;
    store.putCounters(port, traffic.index) = MakeReductionCounters(traffic);
  }
  store.put(port, MakePushCounters(port.num));
}

void MakeReductionSwitch(ExampleFabric& fabric) {
  IBNode& node = fabric.Node("spine-01/U1", IB_SW_NODE, 8, kXdrSwitch);
  node.setAlternativeName("Spine 01 (hall A, rack 07)");
  fabric.AddGeneral(node);
  fabric.AddSwitch(node);
  fabric.store().put(node, MakeReductionClassPortInfo(kAggregationGuid, kAggregationLid,
                                                      kManagerGuid, kManagerLid));
  fabric.store().put(node, MakeReductionInfo());

  fabric.Port(node, 0, PortKind::kRegular, IB_UNKNOWN_PORT_STATE);
  const auto add = [&](phys_port_t number, PortKind kind, IBPortState state,
                       IBSpecialPortType special_type = IB_NOT_SPECIAL_PORT) {
    AddReductionPort(fabric.store(), fabric.Port(node, number, kind, state, special_type), kind);
  };
  add(1, PortKind::kRegular, IB_PORT_STATE_ACTIVE);
  add(2, PortKind::kRegular, IB_PORT_STATE_INIT);
  fabric.Port(node, 3, PortKind::kSplit).setInSubFabric(false);
  fabric.Port(node, 4, PortKind::kSplit, IB_PORT_STATE_DOWN);
  add(5, PortKind::kSpecial, IB_PORT_STATE_ACTIVE, IB_SPECIAL_PORT_AN);
  add(6, PortKind::kRegular, IB_PORT_STATE_ARM);
  add(7, PortKind::kFnm, IB_PORT_STATE_ACTIVE);
  add(8, PortKind::kFnm1, IB_PORT_STATE_ACTIVE);
}

void MakeOtherSwitches(ExampleFabric& fabric) {
  IBNode& plain = fabric.Node("leaf-01/U1", IB_SW_NODE, 4, kNdrSwitch);
  fabric.AddGeneral(plain);
  fabric.AddSwitch(plain);
  fabric.Port(plain, 0);
  fabric.Port(plain, 1, PortKind::kSplit, IB_PORT_STATE_DOWN);
  fabric.Port(plain, 2);
  fabric.Port(plain, 3);
  fabric.Port(plain, 4, PortKind::kSpecial, IB_PORT_STATE_ACTIVE, IB_SPECIAL_PORT_ROUTER);

  IBNode& opal = fabric.Node("leaf-02/U1", IB_SW_NODE, 3, kEdrSwitch);
  opal.setOpalSwitch(true);
  fabric.AddGeneral(opal);
  fabric.AddSwitch(opal);
  fabric.Port(opal, 0);
  fabric.Port(opal, 1);
  fabric.Port(opal, 2);
  fabric.Port(opal, 3, PortKind::kFnm);

  IBNode& special = fabric.Node("mgmt-switch-01/U1", IB_SW_NODE, 2, kHdrSwitch);
  special.setSpecialNodeType(IB_SPECIAL_PORT_ROUTER);
  fabric.AddSwitch(special);
  fabric.Port(special, 0);
  fabric.Port(special, 1);
}

void MakeEndNodes(ExampleFabric& fabric) {
  IBNode& router = fabric.Node("router-01", IB_RTR_NODE, 2, kNdrRouter);
  fabric.AddGeneral(router);
  fabric.AddEndNodeExtensions(router);
  fabric.Port(router, 1);
  fabric.Port(router, 2);

  IBNode& one = fabric.Node("compute-001 HCA-1", IB_CA_NODE, 1, kNdrAdapter);
  fabric.AddGeneral(one);
  fabric.AddEndNodeExtensions(one);
  fabric.Port(one, 1);

  IBNode& two = fabric.Node("compute-002 HCA-1", IB_CA_NODE, 2, kHdrAdapter);
  fabric.AddGeneral(two);
  fabric.AddEndNodeExtensions(two);
  fabric.Port(two, 1, PortKind::kSplit, IB_PORT_STATE_DOWN);
  fabric.Port(two, 2);

  IBNode& other = fabric.Node("unidentified-01", IB_UNKNOWN_NODE_TYPE, 1, kEdrAdapter);
  fabric.AddGeneral(other);
  fabric.AddEndNodeExtensions(other);
  fabric.Port(other, 1);

  IBNode& outside = fabric.Node("lab-guest-01 HCA-1", IB_CA_NODE, 1, kNdrAdapter);
  outside.in_sub_fabric = false;
  fabric.AddGeneral(outside);
  fabric.AddEndNodeExtensions(outside);
  fabric.Port(outside, 1);
}

void MakeSpecialNodes(ExampleFabric& fabric) {
  IBNode& aggregation = fabric.Node("spine-01 Aggregation Node", IB_CA_NODE, 1, kXdrReduction);
  aggregation.setSpecialNodeType(IB_SPECIAL_PORT_AN);
  fabric.Port(aggregation, 1);

  IBNode& gateway = fabric.Node("gateway-01", IB_CA_NODE, 1, kHdrGateway);
  gateway.setSpecialNodeType(IB_SPECIAL_PORT_ETH_GATEWAY);
  fabric.Port(gateway, 1);
}

void LinkNodes(ExampleFabric& fabric) {
  fabric.Link("spine-01/U1", 1, "leaf-01/U1", 2);
  fabric.LinkOutside("spine-01/U1", 2, 11);
  fabric.Link("spine-01/U1", 3, "lab-guest-01 HCA-1", 1);
  fabric.Link("spine-01/U1", 5, "spine-01 Aggregation Node", 1);
  fabric.LinkOutside("spine-01/U1", 6, 12);
  fabric.Link("spine-01/U1", 7, "leaf-02/U1", 3);
  fabric.Link("spine-01/U1", 8, "mgmt-switch-01/U1", 1);
  fabric.Link("leaf-01/U1", 3, "compute-001 HCA-1", 1);
  fabric.Link("leaf-01/U1", 4, "router-01", 1);
  fabric.Link("leaf-02/U1", 1, "compute-002 HCA-1", 2);
  fabric.Link("leaf-02/U1", 2, "unidentified-01", 1);
  fabric.Link("router-01", 2, "gateway-01", 1);
}

}  // namespace

void MakeDemo(ExampleFabric& fabric) {
  MakeReductionSwitch(fabric);
  MakeOtherSwitches(fabric);
  MakeEndNodes(fabric);
  MakeSpecialNodes(fabric);
  LinkNodes(fabric);
}

// ---------- A discovery with incomplete answers ----------

void MakePartial(ExampleFabric& fabric) {
  IBNode& leaf = fabric.Node("leaf-07/U1", IB_SW_NODE, 2, kNdrSwitch);
  fabric.AddSmpMask(leaf, SwitchSmpMask(kNdr));
  fabric.Add<SMP_SwitchInfo>(leaf, kSwitchInfo);
  fabric.store().setAbsent(leaf, "adaptive_routing_info", "timed out");
  fabric.store().setAbsent(leaf, "ib_private_lft_info", "status 0x000c");
  fabric.Port(leaf, 0);
  const IBPort& silent = fabric.fabscan().discovered_fabric.makePort(leaf, 1);
  leaf.getPort(1)->port_state = IB_PORT_STATE_INIT;
  fabric.store().setAbsent(silent, "SMP_PortInfo", "timed out");
  fabric.Port(leaf, 2, PortKind::kFnm);

  IBNode& host = fabric.Node("compute-117 HCA-1", IB_CA_NODE, 1, kNdrAdapter);
  fabric.store().setAbsent(host, "VendorSpec_GeneralInfo",
                           "not asked: two consecutive queries of this node timed out");
  fabric.Port(host, 1, PortKind::kRegular, IB_PORT_STATE_INIT);
  fabric.Link("leaf-07/U1", 1, "compute-117 HCA-1", 1);
}

// ---------- What a discovery of the fabric of `./run demo-live` cannot read ----------

void MakeExtra(ExampleFabric& fabric) {
  IBNode& leaf = fabric.BareNode("leaf", kGuidBase + 0x200000, IB_SW_NODE, 6, kNdrSwitch);
  fabric.AddGeneral(leaf);
  fabric.AddSwitchExtensions(leaf);
  fabric.BarePort(leaf, 1);
}

}  // namespace fabscan
