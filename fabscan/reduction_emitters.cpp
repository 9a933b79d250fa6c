#include <cstdint>

#include "attribute_block.h"
#include "fabscan_sim_info_dump.h"
#include "port_walk.h"
#include "reduction_gates.h"

namespace {

// clang-format off

constexpr Target kClassPortInfo = {"IB_ClassPortInfo", "&m_node->wren_rma_class_port_info"};
constexpr Field<IB_ClassPortInfo> kClassPortInfoFields[] = {
    FABSCAN_FIELD(IB_ClassPortInfo, CapMsk),
    FABSCAN_FIELD(IB_ClassPortInfo, CapMsk2),
    FABSCAN_FIELD(IB_ClassPortInfo, ClassVersion),
    FABSCAN_FIELD(IB_ClassPortInfo, BaseVersion),
    FABSCAN_FIELD(IB_ClassPortInfo, RespTimeValue),
    // The address of the array in this process with the prefix twice, not the GID: a line that does
    // not compile until someone looks at it.
    {"mad_buffer.RedirectGID = 0x0x",
     [](const IB_ClassPortInfo& r) -> u_int64_t { return reinterpret_cast<std::uintptr_t>(&r.RedirectGID[0]); }},
    FABSCAN_FIELD(IB_ClassPortInfo, RedirectFL),
    FABSCAN_FIELD(IB_ClassPortInfo, RedirectSL),
    FABSCAN_FIELD(IB_ClassPortInfo, RedirectTC),
    FABSCAN_FIELD(IB_ClassPortInfo, RedirectPKey),
    FABSCAN_FIELD(IB_ClassPortInfo, RedirectLID),
    FABSCAN_FIELD(IB_ClassPortInfo, RedirectQP),
    FABSCAN_FIELD(IB_ClassPortInfo, RedirectQKey),
};

constexpr Target kReductionInfo = {"WrenReductionInfo", "&m_node->wren_red_info"};
constexpr Field<WrenReductionInfo> kReductionInfoFields[] = {
    FABSCAN_FIELD(WrenReductionInfo, capability_mask),
    FABSCAN_FIELD(WrenReductionInfo, hbf_group_cap),
    FABSCAN_FIELD(WrenReductionInfo, reduction_fdb_cap),
};

constexpr Target kReductionPortInfo = {"WrenReductionPortInfo", "&m_node->wrenReductionPortInfo[i]"};
constexpr Field<WrenReductionPortInfo> kReductionPortCapabilityMask =
    FABSCAN_FIELD(WrenReductionPortInfo, capability_mask);

// clang-format on

/// Reaches the file at once, port by port.
void WriteReductionPortInfo(SourceWriter& writer, int indent, const WrenReductionPortInfo& record) {
  writer.EndLineAndFlush();
  writer.AtOnce([indent, &record](auto& to) {
    const auto& field = kReductionPortCapabilityMask;
    to.Indent(indent).Text(field.before).Hex(field.value(record)).Text(field.after);
  });
}

template <class Marked>
void WriteReductionPortLoop(SourceWriter& writer, const WrenReductionPortInfo* default_record,
                            const Marked& special_records) {
  if (default_record == nullptr) {
    WriteDiagnostic(
        writer, "#error \"Failed to dump WrenReductionPortInfo MAD. Null pointer is provided.\"");
    return;
  }
  const auto write_branch = [&](unsigned, const WrenReductionPortInfo* record) {
    WriteReductionPortInfo(writer, kBranchIndent, *record);
  };
  WritePortLoop<kReductionPortInfo>(writer, kReductionPortLoop, [&] {
    WritePortSwitch(writer, kLoopIndent, special_records, write_branch,
                    [&] { write_branch(0, default_record); });
  });
}

}  // namespace

void SimInfoDumpCPP::GenerateVSReductionManagerClassPortInfo(std::ostream& out,
                                                             const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesReduction(writer, m_fabscan, node)) return;
  const IB_ClassPortInfo* record =
      m_fabscan.fabric_extended_info.getWrenClassPortInfo(node.createIndex);
  if (record == nullptr) {
    // The quote stays open.
    WriteDiagnostic(writer,
                    "#error \"Failed to get VS IB_ClassPortInfo mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kClassPortInfo, kClassPortInfoFields>(writer, *record);
}

void SimInfoDumpCPP::GenerateWrenReductionInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesReduction(writer, m_fabscan, node)) return;
  const WrenReductionInfo* record =
      m_fabscan.fabric_extended_info.getWrenReductionInfo(node.createIndex);
  if (record == nullptr) {
    // The quote stays open.
    WriteDiagnostic(writer,
                    "#error \"Failed to get WrenReductionInfo mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kReductionInfo, kReductionInfoFields>(writer, *record);
}

void SimInfoDumpCPP::GenerateWrenReductionPortInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesReductionPorts(writer, m_fabscan, node)) return;
  const auto groups = GroupPorts<const WrenReductionPortInfo*>(node, [&](const IBPort& port) {
    return m_fabscan.fabric_extended_info.getWrenReductionPortInfo(port.createIndex);
  });
  WriteReductionPortLoop(writer, groups.regular, groups.marked);
}

void SimInfoDumpCPP::GenerateWrenReductionPortInfo(
    std::ostream& out, const WrenReductionPortInfo* defaultRecord,
    const std::map<uint8_t, const WrenReductionPortInfo*>& specialRecords) const {
  SourceWriter writer(out);
  WriteReductionPortLoop(writer, defaultRecord, specialRecords);
}

void SimInfoDumpCPP::GenerateWrenReductionPortInfo(std::ostream& out, int indent,
                                                   const WrenReductionPortInfo* record) const {
  SourceWriter writer(out);
  if (record != nullptr) WriteReductionPortInfo(writer, indent, *record);
}
