#include "examples/example_fabric.h"

#include "examples/node_values.h"

namespace fabscan {

namespace {

/// IsSM in the capability mask of PortInfo.
constexpr u_int32_t kIsSubnetManager = 2;

PortRole RoleOf(const IBNode& node, phys_port_t number) {
  if (node.type == IB_SW_NODE) return number == 0 ? PortRole::kSwitchPort0 : PortRole::kSwitchPort;
  return node.type == IB_RTR_NODE ? PortRole::kRouterPort : PortRole::kAdapterPort;
}

}  // namespace

u_int16_t LidOf(const IBNode& node, phys_port_t port) {
  const auto number = static_cast<u_int16_t>((node.guid >> 8U) & 0xFF);
  if (node.type == IB_SW_NODE) return number;
  return static_cast<u_int16_t>(16 * number + port);
}

IBNode& ExampleFabric::BareNode(const char* name, u_int64_t guid, IBNodeType type,
                                phys_port_t ports, const DeviceModel& model) {
  model_ = &model;
  return fabscan_.discovered_fabric.makeNode(name, guid, type, ports);
}

IBNode& ExampleFabric::Node(const char* name, IBNodeType type, phys_port_t ports,
                            const DeviceModel& model) {
  const u_int64_t number = fabscan_.discovered_fabric.nodeCount() + 1;
  IBNode& node = BareNode(name, kGuidBase + (number << 8U), type, ports, model);
  store().put(node, MakeNodeInfo(model, node));
  AddSmpMask(node, BasicSmpMask());
  return node;
}

void ExampleFabric::AddSmpMask(const IBNode& node, const capability_mask_t& mask) {
  fabscan_.capability_module.put(node, false, mask);
}

void ExampleFabric::AddGeneral(const IBNode& node) {
  const capability_mask_t mask = GmpMask(model_->generation);
  fabscan_.capability_module.put(node, true, mask);
  store().put(node, MakeGeneralInfo(*model_, node, mask));
}

void ExampleFabric::AddSwitch(const IBNode& node) {
  Add<SMP_SwitchInfo>(node, kSwitchInfo);
  AddSwitchExtensions(node);
}

void ExampleFabric::AddSwitchExtensions(const IBNode& node) {
  AddSmpMask(node, SwitchSmpMask(model_->generation));
  Add<SMP_ExtendedSwitchInfo>(node, kExtendedSwitchInfo);
  Add<ib_extended_node_info>(node, kSwitchExtendedNodeInfo);
  Add<ib_private_lft_info>(node, kPrivateLftInfo);
  Add<adaptive_routing_info>(node, kAdaptiveRoutingInfo);
  Add<CC_EnhancedCongestionInfo>(node, kSwitchCongestionInfo);
  Add<CC_CongestionSwitchGeneralSettings>(node, kSwitchCongestionSettings);
}

void ExampleFabric::AddEndNodeExtensions(const IBNode& node) {
  const bool is_router = node.type == IB_RTR_NODE;
  AddSmpMask(node, is_router ? RouterSmpMask() : AdapterSmpMask(model_->generation));
  Add<CC_EnhancedCongestionInfo>(node, kEndNodeCongestionInfo);
  if (is_router) Add<SMP_RouterInfo>(node, kRouterInfo);
  // Earlier adapters lack this record; the capability mask agrees.
  if (model_->generation >= kNdr) Add<ib_extended_node_info>(node, kEndNodeExtendedNodeInfo);
}

IBPort& ExampleFabric::Port(IBNode& node, phys_port_t number, PortKind kind, IBPortState state,
                            IBSpecialPortType special_type) {
  IBPort& port = fabscan_.discovered_fabric.makePort(node, number);
  port.port_state = state;
  port.setFNMPort(kind == PortKind::kFnm);
  port.setFNM1Port(kind == PortKind::kFnm1);
  port.setSpecialPort(kind == PortKind::kSpecial);

  const PortModel model = {model_->generation, RoleOf(node, number), kind, state};
  SMP_PortInfo info = MakePortInfo(model);
  info.LocalPortNum = number;
  info.LID = LidOf(node, number);
  info.MasterSMLID = manager_lid_;
  const bool is_managed_port = number == 0 || node.type != IB_SW_NODE;
  if (is_managed_port && info.LID == manager_lid_) info.CapMsk |= kIsSubnetManager;
  store().put(port, info);
  if (number == 0 && node.type == IB_SW_NODE) return port;

  store().put(port, MakePortInfoExtended(model));
  store().put(port, MakeExtendedPortInfo(model, special_type));
  return port;
}

IBPort& ExampleFabric::BarePort(IBNode& node, phys_port_t number) {
  IBPort& port = fabscan_.discovered_fabric.makePort(node, number);
  const PortModel model = {model_->generation, RoleOf(node, number), PortKind::kRegular,
                           IB_PORT_STATE_ACTIVE};
  store().put(port, MakeExtendedPortInfo(model, IB_NOT_SPECIAL_PORT));
  return port;
}

}  // namespace fabscan
