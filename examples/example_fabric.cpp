#include "examples/example_fabric.h"

#include "examples/node_values.h"
#include "fabrics/link_rate.h"

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
  node.setDescription(name);
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
  if (node.type != IB_SW_NODE) port.guid = node.guid + number;
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

void ExampleFabric::Link(const char* node, phys_port_t port, const char* other,
                         phys_port_t other_port) {
  const auto& nodes = fabscan_.discovered_fabric.NodeByName;
  const IBNode& one = *nodes.at(node);
  const IBNode& two = *nodes.at(other);
  IBPort& end = *one.getPort(port);
  IBPort& other_end = *two.getPort(other_port);
  end.setRemotePort(RemotePort{two.guid, other_port});
  other_end.setRemotePort(RemotePort{one.guid, port});
  Negotiate(end, other_end);
}

void ExampleFabric::Negotiate(const IBPort& one, const IBPort& other) {
  for (const IBPort* port : {&one, &other}) {
    if (store().getSMPPortInfo(port->createIndex) == nullptr) return;
  }
  auto& info = store().put<SMP_PortInfo>(one);
  auto& other_info = store().put<SMP_PortInfo>(other);
  const bool is_slower = LinkRateOf(info).gbps() < LinkRateOf(other_info).gbps();
  const SMP_PortInfo& slower = is_slower ? info : other_info;
  SMP_PortInfo& faster = is_slower ? other_info : info;
  faster.LinkWidthActive = slower.LinkWidthActive;
  faster.LinkSpeedActive = slower.LinkSpeedActive;
  faster.LinkSpeedExtActive = slower.LinkSpeedExtActive;
  faster.LinkSpeedExtActive2 = slower.LinkSpeedExtActive2;
  // A port can only use what is enabled.
  faster.LinkWidthEnabled |= faster.LinkWidthActive;
  faster.LinkSpeedEnabled |= faster.LinkSpeedActive;
  faster.LinkSpeedExtEnabled |= faster.LinkSpeedExtActive;
}

void ExampleFabric::LinkOutside(const char* node, phys_port_t port, phys_port_t other_port) {
  constexpr u_int64_t kOutside = kGuidBase + 0x7700;
  fabscan_.discovered_fabric.NodeByName.at(node)->getPort(port)->setRemotePort(
      RemotePort{kOutside, other_port});
}

IBPort& ExampleFabric::BarePort(IBNode& node, phys_port_t number) {
  IBPort& port = fabscan_.discovered_fabric.makePort(node, number);
  const PortModel model = {model_->generation, RoleOf(node, number), PortKind::kRegular,
                           IB_PORT_STATE_ACTIVE};
  store().put(port, MakeExtendedPortInfo(model, IB_NOT_SPECIAL_PORT));
  return port;
}

}  // namespace fabscan
