#include <string_view>

#include "attribute_block.h"
#include "capability_bits.h"
#include "fabscan_sim_info_dump.h"
#include "port_walk.h"

namespace {

// What is dumped of each record, in the order of the generated text.
// clang-format off

constexpr Target kPortInfoExtended = {"SMP_PortInfoExtended", "&m_node->nodePortsInfoExt[i]"};
constexpr std::string_view kPortInfoExtendedLoop =
    "for (size_t i = 0; i < m_node->nodePortsInfoExt.size(); i++) {";
constexpr Field<SMP_PortInfoExtended> kPortInfoExtendedFields[] = {
    FABSCAN_FIELD(SMP_PortInfoExtended, CapMsk),
    FABSCAN_FIELD(SMP_PortInfoExtended, FECModeActive),
    FABSCAN_FIELD(SMP_PortInfoExtended, FDRFECModeSupported),
    FABSCAN_FIELD(SMP_PortInfoExtended, EDRFECModeSupported),
    FABSCAN_FIELD(SMP_PortInfoExtended, HDRFECModeSupported),
    FABSCAN_FIELD(SMP_PortInfoExtended, NDRFECModeSupported),
};

constexpr Target kExtendedPortInfo = {"SMP_TarnExtPortInfo", "&m_node->nodeExtPortsInfo[i]"};
constexpr std::string_view kExtendedPortInfoLoop =
    "for (size_t i = 0; i < m_node->nodeExtPortsInfo.size(); i++) {";
constexpr Field<SMP_TarnExtPortInfo> kExtendedPortInfoFields[] = {
    FABSCAN_FIELD(SMP_TarnExtPortInfo, LinkSpeedSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, CapabilityMask),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, FDR10FECModeSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, FDRFECModeSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, EDR20FECModeSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, EDRFECModeSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, FDR10RetranSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, FDRRetranSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, EDR20RetranSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, EDRRetranSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, IsSpecialPort),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, SpecialPortCapabilityMask),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, is_fnm_port),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, SpecialPortType),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, HDRFECModeSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, NDRFECModeSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, XDRFECModeSupported),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, FECModeActive),
    FABSCAN_FIELD(SMP_TarnExtPortInfo, RetransMode),
};

// clang-format on

template <class Marked>
void WriteExtendedPortInfo(SourceWriter& writer, const SMP_TarnExtPortInfo* regular,
                           const Marked& special) {
  if (regular == nullptr) {
    WriteDiagnostic(writer, "// Failed to dump ExtendedPortInfo MAD. Null pointer is provided.");
    return;
  }
  const auto write_branch = [&](unsigned, const SMP_TarnExtPortInfo* record) {
    writer.AtOnce([record](auto& to) {
      WriteStatements<kExtendedPortInfoFields>(to, kBranchIndent, *record);
    });
  };
  WritePortLoop<kExtendedPortInfo>(writer, kExtendedPortInfoLoop, [&] {
    WritePortSwitch(writer, kLoopIndent, special, write_branch, [&] { write_branch(0, regular); });
  });
}

}  // namespace

void SimInfoDumpCPP::GeneratePortInfoExtended(std::ostream& out, const IBNode& node) const {
  const SMP_PortInfoExtended* info = nullptr;
  for (const IBPort& port : ActivePorts(node)) {
    info = m_fabscan.fabric_extended_info.getSMPPortInfoExtended(port.createIndex);
    if (info != nullptr) break;
  }
  GeneratePortInfoExtended(out, info);
}

void SimInfoDumpCPP::GeneratePortInfoExtended(std::ostream& out,
                                              const SMP_PortInfoExtended* info) const {
  SourceWriter writer(out);
  if (info == nullptr) {
    WriteDiagnostic(writer, "// Failed to dump PortInfoExtended MAD. Null pointer is provided.");
    return;
  }
  WritePortLoop<kPortInfoExtended>(writer, kPortInfoExtendedLoop, [&] {
    writer.AtOnce(
        [info](auto& to) { WriteStatements<kPortInfoExtendedFields>(to, kLoopIndent, *info); });
  });
}

void SimInfoDumpCPP::GenerateExtendedPortInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (!m_fabscan.capability_module.IsSupportedSMPCapability(&node, kIsExtendedPortInfoSupported)) {
    WriteDiagnostic(writer, "// The ExtendedPortInfo mad is not supported on the node=", node.name);
    return;
  }
  const auto groups = GroupPorts<const SMP_TarnExtPortInfo*>(node, [&](const IBPort& port) {
    return m_fabscan.fabric_extended_info.getSMPTarnExtPortInfo(port.createIndex);
  });
  WriteExtendedPortInfo(writer, groups.regular, groups.marked);
}

void SimInfoDumpCPP::GenerateExtendedPortInfo(
    std::ostream& out, const SMP_TarnExtPortInfo* regular,
    const std::map<u_int8_t, const SMP_TarnExtPortInfo*>& special) const {
  SourceWriter writer(out);
  WriteExtendedPortInfo(writer, regular, special);
}

void SimInfoDumpCPP::GenerateExtendedPortInfo(std::ostream& out, int indent,
                                              const SMP_TarnExtPortInfo* info) const {
  SourceWriter writer(out);
  if (info == nullptr) return;
  writer.AtOnce(
      [indent, info](auto& to) { WriteStatements<kExtendedPortInfoFields>(to, indent, *info); });
}
