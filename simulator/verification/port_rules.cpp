// Which port attributes the generated functions assign, and when.

#include "simulator/verification/rules.h"

namespace fabscan {

namespace {

enum SmpBit : u_int8_t { kExtendedPortInfo = 9, kWrenReductionManagement = 55 };

/// The lean pipe that generated files name.
constexpr unsigned kLeanPipe = 0x0F;

std::string Slot(const char* storage, unsigned port) {
  return storage + ("[" + std::to_string(port) + "]");
}

/// Expects, for ports `first` to the last, each marked port's own record and the regular one for
/// all others.
template <class Record>
ExpectedFunction PerPort(const IBNode& node, const Ports<const Record*>& ports, unsigned first,
                         const char* storage, std::string_view fields) {
  ExpectedFunction function{Outcome::kAssigns, {}};
  for (unsigned port = first; port <= node.numPorts; ++port) {
    const auto marked = ports.marked.find(port);
    Expect(function.values, Slot(storage, port),
           marked != ports.marked.end() ? *marked->second : *ports.regular, fields);
  }
  return function;
}

constexpr std::string_view kPortInfoFields =
    "CapMsk CapMsk2 LinkWidthSup LinkSpeedExtSup2 LinkSpeedExtSup LinkSpeedSup MTUCap";

ExpectedFunction PortInfo(const RuleContext& context) {
  constexpr u_int64_t kIsSm = 2;
  const IBNode& node = context.node();
  auto ports = PortsOf(
      node, [&](const IBPort& port) { return context.store().getSMPPortInfo(port.createIndex); });
  if (ports.regular == nullptr) return Refuses();
  if (!context.IsSwitch()) ports.marked.clear();

  ExpectedFunction function = PerPort(node, ports, 0, "nodePortsInfo", kPortInfoFields);
  if (context.IsSwitch()) {
    const IBPort* port0 = node.getPort(0);
    const SMP_PortInfo* info =
        port0 != nullptr ? context.store().getSMPPortInfo(port0->createIndex) : nullptr;
    if (info == nullptr) return Refuses();
    Expect(function.values, Slot("nodePortsInfo", 0), *info, kPortInfoFields);
    for (unsigned port = 1; node.isOpalSwitch() && port <= node.numPorts; ++port) {
      if (ports.marked.count(port) != 0) continue;
      function.values[Slot("nodePortsInfo", port)].erase("LinkWidthSup");
    }
  }
  for (auto& storage : function.values) storage.second["CapMsk"] &= ~kIsSm;
  return function;
}

ExpectedFunction PortInfoExtended(const RuleContext& context) {
  const IBNode& node = context.node();
  const auto ports = PortsOf(node, [&](const IBPort& port) {
    return context.store().getSMPPortInfoExtended(port.createIndex);
  });
  // The lowest port with a record provides the values of all ports, marked or not.
  Ports<const SMP_PortInfoExtended*> all;
  all.regular = ports.regular;
  if (!ports.marked.empty() &&
      (ports.regular == nullptr || ports.marked.begin()->first < ports.regular_port)) {
    all.regular = ports.marked.begin()->second;
  }
  if (all.regular == nullptr) return Leaves();
  return PerPort(node, all, 0, "nodePortsInfoExt",
                 "CapMsk FECModeActive FDRFECModeSupported EDRFECModeSupported HDRFECModeSupported "
                 "NDRFECModeSupported");
}

ExpectedFunction ExtendedPortInfo(const RuleContext& context) {
  if (!context.SupportsSmp(kExtendedPortInfo)) return Leaves();
  const auto ports = PortsOf(context.node(), [&](const IBPort& port) {
    return context.store().getSMPTarnExtPortInfo(port.createIndex);
  });
  if (ports.regular == nullptr) return Leaves();
  return PerPort(
      context.node(), ports, 0, "nodeExtPortsInfo",
      "LinkSpeedSupported CapabilityMask FDR10FECModeSupported FDRFECModeSupported "
      "EDR20FECModeSupported EDRFECModeSupported FDR10RetranSupported FDRRetranSupported "
      "EDR20RetranSupported EDRRetranSupported IsSpecialPort SpecialPortCapabilityMask "
      "is_fnm_port SpecialPortType HDRFECModeSupported NDRFECModeSupported "
      "XDRFECModeSupported FECModeActive RetransMode");
}

/// Whether a switch supports reduction. If not, its functions leave the node unchanged; if its
/// ClassPortInfo is missing, they refuse.
bool ServesReduction(const RuleContext& context) {
  return context.IsSwitch() && context.SupportsSmp(kWrenReductionManagement);
}
bool HasReductionManager(const RuleContext& context) {
  return context.store().getWrenClassPortInfo(context.node().createIndex) != nullptr;
}

ExpectedFunction ReductionPortInfo(const RuleContext& context) {
  if (!ServesReduction(context)) return Leaves();
  if (!HasReductionManager(context)) return Refuses();
  const auto ports = PortsOf(context.node(), [&](const IBPort& port) {
    return context.store().getWrenReductionPortInfo(port.createIndex);
  });
  if (ports.regular == nullptr) return Refuses();
  return PerPort(context.node(), ports, 1, "wrenReductionPortInfo", "capability_mask");
}

using CounterSets = std::map<u_int32_t, const WrenReductionCounters*>;

CounterSets CounterSetsOf(const RuleContext& context, const IBPort& port) {
  constexpr u_int32_t kSets = 8;
  CounterSets sets;
  if (context.store().getWrenReductionConfigureMLIDMonitors(port.createIndex, 0) == nullptr) {
    return sets;
  }
  for (u_int32_t index = 0; index < kSets; ++index) {
    const auto* counters = context.store().getWrenReductionCounters(port.createIndex, index);
    if (counters != nullptr) sets[index] = counters;
  }
  return sets;
}

ExpectedFunction ReductionCounters(const RuleContext& context) {
  if (!ServesReduction(context)) return Leaves();
  if (!HasReductionManager(context)) return Refuses();
  auto ports =
      PortsOf(context.node(), [&](const IBPort& port) { return CounterSetsOf(context, port); });
  if (ports.regular.empty() || ports.marked.empty()) return Refuses();
  ports.marked[ports.regular_port] = ports.regular;
  ExpectedFunction function{Outcome::kAssigns, {}};
  for (const auto& [port, sets] : ports.marked) {
    for (const auto& [index, counters] : sets) {
      const std::string storage =
          Slot("reductionCounters", port) + Slot("", index) + Slot("", kLeanPipe);
      Expect(function.values, storage, *counters,
             "incoming_good_mc_read_req_pkt incoming_good_mc_read_req_data "
             "incoming_good_mc_write_req_pkt incoming_good_mc_write_req_data "
             "incoming_good_mc_read_resp_pkt incoming_good_mc_read_resp_data "
             "incoming_good_mc_write_resp_pkt incoming_good_mc_write_resp_data "
             "generated_mc_read_resp_pkt generated_mc_read_resp_data "
             "generated_mc_write_resp_pkt generated_mc_write_resp_data dropped_pkt trapped_pkt "
             "wren_reduction_errors wren_reduction_penalty_box_errors "
             "port_wrr_local_alm_id_allocations port_wrr_global_alm_id_allocations "
             "sent_good_mc_pull_write_req_packet sent_good_mc_pull_read_req_packet");
    }
  }
  return function;
}

ExpectedFunction PushReductionCounters(const RuleContext& context) {
  if (!ServesReduction(context)) return Leaves();
  if (!HasReductionManager(context)) return Refuses();
  const auto ports = PortsOf(context.node(), [&](const IBPort& port) {
    const u_int32_t index = port.createIndex;
    return context.store().getWrenReductionConfigureMLIDMonitors(index, 1) != nullptr
               ? context.store().getWrenPushReductionCounters(index)
               : nullptr;
  });
  if (ports.regular == nullptr || ports.marked.empty()) return Refuses();
  ExpectedFunction function{
      Outcome::kAssigns,
      {},
      {"case " + std::to_string(ports.marked.begin()->first) + ":", "SMP_TarnExtPortInfo_pack("}};
  // If two records name the same counters, the last port in the file wins.
  for (unsigned port = 1; port <= context.node().numPorts; ++port) {
    const auto marked = ports.marked.find(port);
    const WrenPushReductionCounters& counters =
        marked != ports.marked.end() ? *marked->second : *ports.regular;
    Expect(function.values, Slot("pushCounters", counters.port_select) + Slot("", counters.mlid),
           counters,
           "incoming_good_push_gpu_ack_packets incoming_good_push_gpu_ack_data "
           "incoming_good_push_gpu_wr_req_packets incoming_good_push_gpu_wr_req_data "
           "generated_push_switch_ack_packets generated_push_switch_ack_data "
           "generated_push_switch_wr_req_packets dropped_push_packets trapped_push_packets "
           "jfto_event sent_push_switch_wr_req_packets reduction_errors dup_error mlid_error "
           "ingress_amap_errors alm_error_type0 alm_error_type1");
  }
  return function;
}

}  // namespace

const std::initializer_list<Rule> kPortRules = {
    {"setPortInfo", PortInfo},
    {"setPortInfoExtended", PortInfoExtended},
    {"setExtendedPortInfo", ExtendedPortInfo},
    {"setWrenReductionPortInfo", ReductionPortInfo},
    {"setWrenReductionCounters", ReductionCounters},
    {"setWrenPushReductionCounters", PushReductionCounters},
};

}  // namespace fabscan
