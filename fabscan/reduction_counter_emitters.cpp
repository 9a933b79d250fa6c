#include <array>
#include <map>

#include "fabscan_sim_info_dump.h"
#include "port_walk.h"
#include "reduction_body.h"

namespace fabscan::generator {
namespace {

constexpr unsigned kCounterSets = 8;

// The monitor configuration without which a port has no counters to dump, by its selector.
constexpr u_int8_t kReductionMonitors = 0;
constexpr u_int8_t kPushReductionMonitors = 1;

// ---------- Reduction counters ----------

// clang-format off

// The generated read response packets are written twice, the second time with their neighbours.
constexpr Field<WrenReductionCounters> kCounterFields[] = {
    FABSCAN_FIELD(WrenReductionCounters, incoming_good_mc_read_req_pkt),
    FABSCAN_FIELD(WrenReductionCounters, incoming_good_mc_read_req_data),
    FABSCAN_FIELD(WrenReductionCounters, incoming_good_mc_write_req_pkt),
    FABSCAN_FIELD(WrenReductionCounters, incoming_good_mc_write_req_data),
    FABSCAN_FIELD(WrenReductionCounters, incoming_good_mc_read_resp_pkt),
    FABSCAN_FIELD(WrenReductionCounters, incoming_good_mc_read_resp_data),
    FABSCAN_FIELD(WrenReductionCounters, incoming_good_mc_write_resp_pkt),
    FABSCAN_FIELD(WrenReductionCounters, incoming_good_mc_write_resp_data),
    FABSCAN_FIELD(WrenReductionCounters, generated_mc_read_resp_pkt),
    FABSCAN_FIELD(WrenReductionCounters, dropped_pkt),
    FABSCAN_FIELD(WrenReductionCounters, trapped_pkt),
    FABSCAN_FIELD(WrenReductionCounters, wren_reduction_errors),
    FABSCAN_FIELD(WrenReductionCounters, wren_reduction_penalty_box_errors),
    FABSCAN_FIELD(WrenReductionCounters, port_wrr_local_alm_id_allocations),
    FABSCAN_FIELD(WrenReductionCounters, port_wrr_global_alm_id_allocations),
    FABSCAN_FIELD(WrenReductionCounters, sent_good_mc_pull_write_req_packet),
    FABSCAN_FIELD(WrenReductionCounters, sent_good_mc_pull_read_req_packet),
    FABSCAN_FIELD(WrenReductionCounters, generated_mc_write_resp_pkt),
    FABSCAN_FIELD(WrenReductionCounters, generated_mc_write_resp_data),
    FABSCAN_FIELD(WrenReductionCounters, generated_mc_read_resp_pkt),
    FABSCAN_FIELD(WrenReductionCounters, generated_mc_read_resp_data),
};

// clang-format on

/// Fetches a copy of the simulator's counter set, overwrites its counters, and stores it. The
/// buffer has a shorter type name than the record; simulators declare it so.
constexpr Template kCounterSet(R"(
{
WrenReductCounters mad_buffer = {0};
const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters($port$, $index$, lean_pipe);
if (p_ctr) {
    ib_wren_reduction_counters_t ctr = *p_ctr;
    WrenReductionCounters_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

    $counters$

    WrenReductionCounters_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

    m_node->setWrenReductionCounters($port$, $index$, lean_pipe, &ctr);
}
})",
                               {"port", "index", "counters"});

/// The loop stops before the last port; simulators rely on that. The body begins with an empty
/// line.
constexpr Template kCounterLoop(R"(
const u_int8_t lean_pipe = 0x0F;
for (phys_port_t i = 1; i < m_node->numPorts; i++) {
    $switch$
})",
                                {"switch"});

/// Deeper than elsewhere.
constexpr Template kCounterCase(R"(
    case $port$:
    $counters$
    break;)",
                                {"port", "counters"});

/// The counter sets of one port, by index; null where there is none.
using CounterSets = std::array<const WrenReductionCounters*, kCounterSets>;

void WriteCounterSet(SourceWriter& writer, int indent, unsigned port, unsigned index,
                     const WrenReductionCounters* record) {
  if (record == nullptr) return;
  writer.EmitLines<kCounterSet>(indent, port, index, Statements<kCounterFields>(*record));
}

auto CounterLines(unsigned port, const CounterSets& sets) {
  return [port, &sets](SourceWriter& writer, int indent) {
    for (unsigned index = 0; index < kCounterSets; ++index) {
      WriteCounterSet(writer, indent, port, index, sets[index]);
    }
  };
}

auto CounterLines(unsigned port, const std::map<uint32_t, const WrenReductionCounters*>& sets) {
  return [port, &sets](SourceWriter& writer, int indent) {
    for (const auto& [index, record] : sets) WriteCounterSet(writer, indent, port, index, record);
  };
}

/// `normal_sets` is null when no normal port has counters. The default branch names the normal port
/// by its number, whatever the index of the generated loop.
template <class Sets, class Marked>
void WriteCounterLoop(SourceWriter& writer, unsigned normal_port, const Sets* normal_sets,
                      const Marked& special_ports) {
  if (normal_sets == nullptr) {
    writer.Text(
        "#error \"Failed to dump WrenReductionCountersInfo MAD. Normal port data is not "
        "provided.\"");
    return;
  }
  if (special_ports.empty()) {
    writer.Text(
        "#error \"Failed to dump WrenReductionCountersInfo MAD. Special port data is not "
        "provided.\"");
    return;
  }
  const auto branch = [](unsigned port, const auto& sets) { return CounterLines(port, sets); };
  writer.EmitLines<kCounterLoop>(
      kBodyIndent,
      PortSwitch<kCounterCase>(special_ports, branch, CounterLines(normal_port, *normal_sets)));
}

// ---------- Push reduction counters ----------

#define FABSCAN_SETTER(member)                                                         \
  {                                                                                    \
    "wrapper.set_" #member "(0x",                                                      \
        [](const WrenPushReductionCounters& r) -> u_int64_t { return r.member; }, ");" \
  }

// clang-format off

constexpr Field<WrenPushReductionCounters> kPushCounterSetters[] = {
    FABSCAN_SETTER(incoming_good_push_gpu_ack_packets),
    FABSCAN_SETTER(incoming_good_push_gpu_ack_data),
    FABSCAN_SETTER(incoming_good_push_gpu_wr_req_packets),
    FABSCAN_SETTER(incoming_good_push_gpu_wr_req_data),
    FABSCAN_SETTER(generated_push_switch_ack_packets),
    FABSCAN_SETTER(generated_push_switch_ack_data),
    FABSCAN_SETTER(generated_push_switch_wr_req_packets),
    FABSCAN_SETTER(dropped_push_packets),
    FABSCAN_SETTER(trapped_push_packets),
    FABSCAN_SETTER(jfto_event),
    FABSCAN_SETTER(sent_push_switch_wr_req_packets),
    FABSCAN_SETTER(reduction_errors),
    FABSCAN_SETTER(dup_error),
    FABSCAN_SETTER(mlid_error),
    FABSCAN_SETTER(ingress_amap_errors),
    FABSCAN_SETTER(alm_error_type0),
    FABSCAN_SETTER(alm_error_type1),
};

// clang-format on

/// The same through a view with a setter for each counter. Both calls name the record's own port
/// and MLID; the second is the pull counters' setter, which takes the view as well.
constexpr Template kPushCounters(R"(
WrenPushReductionCounters mad_buffer = {0};
const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters($port$, $mlid$);
if (p_ctr) {
    WrenPushReductionCounters_view_t wrapper = *p_ctr;
    $setters$

    m_node->setWrenReductionCounters($port$, $mlid$, &wrapper);
})",
                                 {"port", "mlid", "setters"});

/// Ends with the pack of a record that is not declared there.
constexpr Template kPushCounterLoop(R"(
for (phys_port_t i = 1; i < m_node->numPorts; i++) {
    $switch$

    SMP_TarnExtPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));
})",
                                    {"switch"});

auto PushCounterLines(const WrenPushReductionCounters& record) {
  return Filled<kPushCounters>(unsigned{record.port_select}, unsigned{record.mlid},
                               Statements<kPushCounterSetters>(record));
}

template <class Marked>
void WritePushCounterLoop(SourceWriter& writer, const WrenPushReductionCounters* default_record,
                          const Marked& special_records) {
  if (default_record == nullptr) {
    writer.Text(
        "#error \"Failed to dump WrenPushReductionCountersInfo MAD. Null pointer is provided.\"");
    return;
  }
  if (special_records.empty()) {
    writer.Text(
        "#error \"Failed to dump WrenPushReductionCountersInfo MAD. Special port data is not "
        "provided.\"");
    return;
  }
  const auto branch = [](unsigned, const WrenPushReductionCounters* record) {
    return PushCounterLines(*record);
  };
  writer.Emit<kPushCounterLoop>(
      kBodyIndent, PortSwitch(special_records, branch, PushCounterLines(*default_record)));
}

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

void SimInfoDumpCPP::GenerateWrenReductionCounters(std::ostream& out, const IBNode& node) const {
  ReductionPortBody body(out, m_fabscan, node);
  if (body) return;
  auto& store = m_fabscan.fabric_extended_info;
  const auto groups = GroupPorts<CounterSets>(node, [&](const IBPort& port) {
    CounterSets sets = {};
    if (store.getWrenReductionConfigureMLIDMonitors(port.createIndex, kReductionMonitors) ==
        nullptr) {
      return sets;
    }
    for (unsigned index = 0; index < kCounterSets; ++index) {
      sets[index] = store.getWrenReductionCounters(port.createIndex, index);
    }
    return sets;
  });
  const CounterSets* normal = IsEmpty(groups.regular) ? nullptr : &groups.regular;
  WriteCounterLoop(body.writer(), groups.regular_port, normal, groups.marked);
}

void SimInfoDumpCPP::GenerateWrenReductionCounters(
    std::ostream& out,
    const std::map<uint8_t, std::map<uint32_t, const WrenReductionCounters*>>& normalPorts,
    const std::map<uint8_t, std::map<uint32_t, const WrenReductionCounters*>>& specialPorts) const {
  SourceWriter writer(out);
  const auto normal = normalPorts.begin();
  const bool has_normal = normal != normalPorts.end();
  WriteCounterLoop(writer, has_normal ? normal->first : 0, has_normal ? &normal->second : nullptr,
                   specialPorts);
}

void SimInfoDumpCPP::GenerateWrenReductionCounters(
    std::ostream& out, int indent, uint8_t port,
    const std::map<uint32_t, const WrenReductionCounters*>& counterSets) const {
  SourceWriter writer(out);
  CounterLines(port, counterSets)(writer, indent);
}

void SimInfoDumpCPP::GenerateWrenReductionCounters(std::ostream& out, int indent,
                                                   const WrenReductionCounters* record) const {
  SourceWriter writer(out);
  if (record != nullptr) writer.Append(Statements<kCounterFields>(*record), indent);
}

void SimInfoDumpCPP::GenerateWrenPushReductionCounters(std::ostream& out,
                                                       const IBNode& node) const {
  ReductionPortBody body(out, m_fabscan, node);
  if (body) return;
  auto& store = m_fabscan.fabric_extended_info;
  const auto groups = GroupPorts<const WrenPushReductionCounters*>(
      node, [&](const IBPort& port) -> const WrenPushReductionCounters* {
        const auto* monitors =
            store.getWrenReductionConfigureMLIDMonitors(port.createIndex, kPushReductionMonitors);
        return monitors == nullptr ? nullptr : store.getWrenPushReductionCounters(port.createIndex);
      });
  WritePushCounterLoop(body.writer(), groups.regular, groups.marked);
}

void SimInfoDumpCPP::GenerateWrenPushReductionCounters(
    std::ostream& out, const WrenPushReductionCounters* defaultRecord,
    const std::map<uint8_t, const WrenPushReductionCounters*>& specialRecords) const {
  SourceWriter writer(out);
  WritePushCounterLoop(writer, defaultRecord, specialRecords);
}

void SimInfoDumpCPP::GenerateWrenPushReductionCounters(
    std::ostream& out, int indent, const WrenPushReductionCounters* record) const {
  SourceWriter writer(out);
  if (record != nullptr) writer.Append(PushCounterLines(*record), indent);
}
