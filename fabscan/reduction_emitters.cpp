#include <cstdint>

#include "fabscan_sim_info_dump.h"
#include "port_walk.h"
#include "reduction_body.h"

namespace fabscan::generator {
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

constexpr Target kReductionPortInfo = {
    "WrenReductionPortInfo", "&m_node->wrenReductionPortInfo[i]",
    "for (phys_port_t i = 1; i < m_node->numPorts; i++) {"};  // stops before the last port
constexpr Field<WrenReductionPortInfo> kReductionPortCapabilityMask =
    FABSCAN_FIELD(WrenReductionPortInfo, capability_mask);

// clang-format on

/// The statement of one branch. The stream is flushed before it; that of Generate, which collects
/// chunks, ignores this.
auto CapabilityMask(const WrenReductionPortInfo& record) {
  return [&record](SourceWriter& writer, int indent) {
    constexpr const auto& kField = kReductionPortCapabilityMask;
    writer.EndLine().Flush();
    writer.Indent(indent).Text(kField.before).Hex(kField.value(record)).Text(kField.after);
  };
}

template <class Marked>
void WriteReductionPortLoop(SourceWriter& writer, const WrenReductionPortInfo* default_record,
                            const Marked& special_records) {
  if (default_record == nullptr) {
    writer.Text("#error \"Failed to dump WrenReductionPortInfo MAD. Null pointer is provided.\"");
    return;
  }
  const auto branch = [](unsigned, const WrenReductionPortInfo* record) {
    return CapabilityMask(*record);
  };
  WritePortLoop<kReductionPortInfo>(
      writer, PortSwitch(special_records, branch, CapabilityMask(*default_record)));
}

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

// The quotes of the "Failed to get" lines stay open.
// clang-format off

void SimInfoDumpCPP::GenerateVSReductionManagerClassPortInfo(std::ostream& out, const IBNode& node) const {
  ReductionBody(out, m_fabscan, node)
      .Block<kClassPortInfo, kClassPortInfoFields>(FABSCAN_STORED(getWrenClassPortInfo),
                        "#error \"Failed to get VS IB_ClassPortInfo mad for the node=$");
}

void SimInfoDumpCPP::GenerateWrenReductionInfo(std::ostream& out, const IBNode& node) const {
  ReductionBody(out, m_fabscan, node)
      .Block<kReductionInfo, kReductionInfoFields>(FABSCAN_STORED(getWrenReductionInfo),
                        "#error \"Failed to get WrenReductionInfo mad for the node=$");
}

// clang-format on

void SimInfoDumpCPP::GenerateWrenReductionPortInfo(std::ostream& out, const IBNode& node) const {
  ReductionPortBody body(out, m_fabscan, node);
  if (body) return;
  const auto groups = GroupPorts<const WrenReductionPortInfo*>(node, [&](const IBPort& port) {
    return m_fabscan.fabric_extended_info.getWrenReductionPortInfo(port.createIndex);
  });
  WriteReductionPortLoop(body.writer(), groups.regular, groups.marked);
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
  if (record != nullptr) CapabilityMask (*record)(writer, indent);
}
