#include "simulator/verification/testing/test_fabric.h"

namespace fabscan {

namespace {

template <class... Records>
void PutNodeRecords(Fabscan& fabscan, const IBNode& node) {
  (fabscan.fabric_extended_info.put(node, Filled<Records>(node.createIndex + 1)), ...);
}

void PutGeneralInfo(Fabscan& fabscan, const IBNode& node) {
  auto& info = fabscan.fabric_extended_info.put<VendorSpec_GeneralInfo>(node);
  info.FWInfo = Filled<FWInfo_Block_Element>(node.createIndex + 2);
  info.HWInfo = Filled<HWInfo_Block_Element>(node.createIndex + 3);
  info.SWInfo = Filled<SWInfo_Block_Element>(node.createIndex + 4);
}

void PutCapabilities(Fabscan& fabscan, const IBNode& node) {
  fabscan.capability_module.put(node, false, {{0xfffffffd, 0xfeedffff, 0x12345678, 0x9abcdef0}});
  fabscan.capability_module.put(node, true, {{0x11223344, 0x55667788, 0x0, 0xffffffff}});
}

void PutPort(Fabscan& fabscan, IBNode& node, phys_port_t number) {
  IBPort& port = fabscan.discovered_fabric.makePort(node, number);
  port.port_state = IB_PORT_STATE_ACTIVE;
  auto& store = fabscan.fabric_extended_info;
  const unsigned seed = 100 + port.createIndex;
  store.put(port, Filled<SMP_PortInfo>(seed));
  store.put(port, Filled<SMP_PortInfoExtended>(seed));
  store.put(port, Filled<SMP_TarnExtPortInfo>(seed));
  store.put(port, Filled<WrenReductionPortInfo>(seed));
  store.put(port, Filled<WrenPushReductionCounters>(seed));
  for (const u_int32_t index : {0U, 6U}) {
    store.putCounters(port, index) = Filled<WrenReductionCounters>(seed + index);
  }
  store.putMonitors(port, 0);
  store.putMonitors(port, 1);
}

IBNode& PutNode(Fabscan& fabscan, const char* name, u_int64_t guid, IBNodeType type,
                phys_port_t ports) {
  IBNode& node = fabscan.discovered_fabric.makeNode(name, guid, type, ports);
  PutNodeRecords<SMP_NodeInfo, ib_extended_node_info, CC_EnhancedCongestionInfo>(fabscan, node);
  PutGeneralInfo(fabscan, node);
  PutCapabilities(fabscan, node);
  for (phys_port_t port = type == IB_SW_NODE ? 0 : 1; port <= ports; ++port) {
    PutPort(fabscan, node, port);
  }
  return node;
}

}  // namespace

void MakeTestFabric(Fabscan& fabscan) {
  IBNode& switch_node = PutNode(fabscan, "switch", 0x10, IB_SW_NODE, 6);
  PutNodeRecords<SMP_SwitchInfo, SMP_ExtendedSwitchInfo, ib_private_lft_info, adaptive_routing_info,
                 CC_CongestionSwitchGeneralSettings, IB_ClassPortInfo, WrenReductionInfo>(
      fabscan, switch_node);
  switch_node.getPort(1)->port_state = IB_PORT_STATE_DOWN;
  switch_node.getPort(4)->setFNMPort(true);
  switch_node.getPort(5)->setSpecialPort(true);
  switch_node.getPort(6)->setFNM1Port(true);
  switch_node.getPort(6)->setInSubFabric(false);

  PutNode(fabscan, "adapter", 0x11, IB_CA_NODE, 2).getPort(1)->setSpecialPort(true);
  PutNodeRecords<SMP_RouterInfo>(fabscan, PutNode(fabscan, "router", 0x12, IB_RTR_NODE, 2));
  PutNode(fabscan, "aggregation", 0x13, IB_CA_NODE, 2).setSpecialNodeType(IB_SPECIAL_PORT_AN);
  fabscan.discovered_fabric.makeNode("bare", 0x14, IB_SW_NODE, 2);
}

}  // namespace fabscan
