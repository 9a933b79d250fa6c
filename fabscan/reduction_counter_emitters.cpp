#include "attribute_block.h"
#include "fabscan_sim_info_dump.h"
#include "port_walk.h"
#include "reduction_gates.h"

namespace {

constexpr unsigned kCounterSets = 8;

// The monitor configuration without which a port has no counters to dump, by its selector.
constexpr u_int8_t kReductionMonitors = 0;
constexpr u_int8_t kPushReductionMonitors = 1;

constexpr std::string_view kSpecialPortMissing = ". Special port data is not provided.\"";

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

constexpr Target kCounters = {"WrenReductionCounters", "&ctr"};

/// The counter sets of one port, by index.
using CounterSets = NumberedMap<u_int32_t, const WrenReductionCounters*, kCounterSets>;

/// Fetches a copy of the simulator's counter set, overwrites its counters, and stores it.
void WriteCounterSet(SourceWriter& writer, int indent, unsigned port, unsigned index,
                     const WrenReductionCounters& record) {
  const int inner = indent + 4;
  writer.AtOnce([=, &record](auto& to) {
    to.Line(indent).Text("{");
    // A shorter type name than the record's; simulators declare it so.
    to.Line(indent).Text("WrenReductCounters mad_buffer = {0};");
    to.Line(indent).Text(
        "const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(");
    to.Decimal(port).Text(", ").Decimal(index).Text(", lean_pipe);");
    to.Line(indent).Text("if (p_ctr) {");
    to.Line(inner).Text("ib_wren_reduction_counters_t ctr = *p_ctr;").EndLine();
    WriteConversion(to, inner, kCounters, "_unpack");
    to.EndLine();
    WriteStatements<kCounterFields>(to, inner, record);
    WritePack(to, inner, kCounters);
    to.EndLine();
    to.Line(inner).Text("m_node->setWrenReductionCounters(");
    to.Decimal(port).Text(", ").Decimal(index).Text(", lean_pipe, &ctr);");
    to.Line(indent).Text("}");
    to.Line(indent).Text("}");
  });
}

template <class Sets>
void WriteCounterSets(SourceWriter& writer, int indent, unsigned port, const Sets& sets) {
  for (const auto& [index, record] : sets) {
    if (record != nullptr) WriteCounterSet(writer, indent, port, index, *record);
  }
}

/// `normal_sets` is null when no normal port has counters. The default branch names the normal port
/// by its number, whatever the index of the generated loop.
template <class Sets, class Marked>
void WriteCounterLoop(SourceWriter& writer, unsigned normal_port, const Sets* normal_sets,
                      const Marked& special_ports) {
  constexpr std::string_view kFailed = "#error \"Failed to dump WrenReductionCountersInfo MAD";
  if (normal_sets == nullptr) {
    WriteDiagnostic(writer, kFailed, ". Normal port data is not provided.\"");
    return;
  }
  if (special_ports.empty()) {
    WriteDiagnostic(writer, kFailed, kSpecialPortMissing);
    return;
  }
  // The body begins with an empty line, and its case lines stand deeper than elsewhere.
  writer.Line(kBodyIndent).Text("const u_int8_t lean_pipe = 0x0F;");
  writer.Line(kBodyIndent).Text(kReductionPortLoop);
  WritePortSwitch(
      writer, kBranchIndent, special_ports,
      [&](unsigned port, const auto& sets) { WriteCounterSets(writer, kBranchIndent, port, sets); },
      [&] { WriteCounterSets(writer, kBranchIndent, normal_port, *normal_sets); });
  writer.Line(kBodyIndent).Text("}");
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

// Packed after the push counters, where no such record is declared: kept as it is.
constexpr Target kUndeclaredPack = {"SMP_TarnExtPortInfo", "&m_node->nodeExtPortsInfo[i]"};

/// The same through a view with a setter for each counter. Both calls name the record's own port
/// and MLID; the second is the pull counters' setter, which takes the view as well.
void WritePushCounters(SourceWriter& writer, int indent, const WrenPushReductionCounters& record) {
  const int inner = indent + 4;
  writer.AtOnce([=, &record](auto& to) {
    to.Line(indent).Text("WrenPushReductionCounters mad_buffer = {0};");
    to.Line(indent).Text(
        "const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(");
    to.Decimal(record.port_select).Text(", ").Decimal(record.mlid).Text(");");
    to.Line(indent).Text("if (p_ctr) {");
    to.Line(inner).Text("WrenPushReductionCounters_view_t wrapper = *p_ctr;");
    WriteStatements<kPushCounterSetters>(to, inner, record);
    to.EndLine();
    to.Line(inner).Text("m_node->setWrenReductionCounters(");
    to.Decimal(record.port_select).Text(", ").Decimal(record.mlid).Text(", &wrapper);");
    to.Line(indent).Text("}");
  });
}

template <class Marked>
void WritePushCounterLoop(SourceWriter& writer, const WrenPushReductionCounters* default_record,
                          const Marked& special_records) {
  constexpr std::string_view kFailed = "#error \"Failed to dump WrenPushReductionCountersInfo MAD";
  if (default_record == nullptr) {
    WriteDiagnostic(writer, kFailed, ". Null pointer is provided.\"");
    return;
  }
  if (special_records.empty()) {
    WriteDiagnostic(writer, kFailed, kSpecialPortMissing);
    return;
  }
  const auto write_branch = [&](unsigned, const WrenPushReductionCounters* record) {
    WritePushCounters(writer, kBranchIndent, *record);
  };
  writer.Indent(kBodyIndent).Text(kReductionPortLoop);
  WritePortSwitch(writer, kLoopIndent, special_records, write_branch,
                  [&] { write_branch(0, default_record); });
  WritePack(writer, kLoopIndent, kUndeclaredPack);
  writer.Line(kBodyIndent).Text("}");
}

}  // namespace

void SimInfoDumpCPP::GenerateWrenReductionCounters(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesReductionPorts(writer, m_fabscan, node)) return;
  auto& store = m_fabscan.fabric_extended_info;
  const auto groups = GroupPorts<CounterSets>(node, [&](const IBPort& port) {
    CounterSets sets;
    if (store.getWrenReductionConfigureMLIDMonitors(port.createIndex, kReductionMonitors) ==
        nullptr) {
      return sets;
    }
    for (unsigned index = 0; index < kCounterSets; ++index) {
      const WrenReductionCounters* record = store.getWrenReductionCounters(port.createIndex, index);
      if (record != nullptr) sets.Set(index, record);
    }
    return sets;
  });
  const CounterSets* normal = groups.regular.empty() ? nullptr : &groups.regular;
  WriteCounterLoop(writer, groups.regular_port, normal, groups.marked);
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
  WriteCounterSets(writer, indent, port, counterSets);
}

void SimInfoDumpCPP::GenerateWrenReductionCounters(std::ostream& out, int indent,
                                                   const WrenReductionCounters* record) const {
  SourceWriter writer(out);
  if (record == nullptr) return;
  writer.AtOnce([=](auto& to) { WriteStatements<kCounterFields>(to, indent, *record); });
}

void SimInfoDumpCPP::GenerateWrenPushReductionCounters(std::ostream& out,
                                                       const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesReductionPorts(writer, m_fabscan, node)) return;
  auto& store = m_fabscan.fabric_extended_info;
  const auto groups = GroupPorts<const WrenPushReductionCounters*>(
      node, [&](const IBPort& port) -> const WrenPushReductionCounters* {
        const auto* monitors =
            store.getWrenReductionConfigureMLIDMonitors(port.createIndex, kPushReductionMonitors);
        return monitors == nullptr ? nullptr : store.getWrenPushReductionCounters(port.createIndex);
      });
  WritePushCounterLoop(writer, groups.regular, groups.marked);
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
  if (record != nullptr) WritePushCounters(writer, indent, *record);
}
