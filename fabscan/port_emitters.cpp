#include "body.h"
#include "fabscan_sim_info_dump.h"
#include "port_walk.h"

namespace fabscan::generator {
namespace {

// What is dumped of each record, in the order of the generated text.
// clang-format off

constexpr Target kPortInfoExtended = {
    "SMP_PortInfoExtended", "&m_node->nodePortsInfoExt[i]",
    "for (size_t i = 0; i < m_node->nodePortsInfoExt.size(); i++) {"};
constexpr Field<SMP_PortInfoExtended> kPortInfoExtendedFields[] = {
    FABSCAN_FIELD(SMP_PortInfoExtended, CapMsk),
    FABSCAN_FIELD(SMP_PortInfoExtended, FECModeActive),
    FABSCAN_FIELD(SMP_PortInfoExtended, FDRFECModeSupported),
    FABSCAN_FIELD(SMP_PortInfoExtended, EDRFECModeSupported),
    FABSCAN_FIELD(SMP_PortInfoExtended, HDRFECModeSupported),
    FABSCAN_FIELD(SMP_PortInfoExtended, NDRFECModeSupported),
};

constexpr Target kExtendedPortInfo = {
    "SMP_TarnExtPortInfo", "&m_node->nodeExtPortsInfo[i]",
    "for (size_t i = 0; i < m_node->nodeExtPortsInfo.size(); i++) {"};
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
    writer.Text("// Failed to dump ExtendedPortInfo MAD. Null pointer is provided.");
    return;
  }
  const auto branch = [](unsigned, const SMP_TarnExtPortInfo* record) {
    return Statements<kExtendedPortInfoFields>(*record);
  };
  WritePortLoop<kExtendedPortInfo>(
      writer, PortSwitch(special, branch, Statements<kExtendedPortInfoFields>(*regular)));
}

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

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
    writer.Text("// Failed to dump PortInfoExtended MAD. Null pointer is provided.");
    return;
  }
  WritePortLoop<kPortInfoExtended>(writer, Statements<kPortInfoExtendedFields>(*info));
}

void SimInfoDumpCPP::GenerateExtendedPortInfo(std::ostream& out, const IBNode& node) const {
  Body body(out, m_fabscan, node);
  if (body.Unless(Supports<kIsExtendedPortInfoSupported>,
                  "// The ExtendedPortInfo mad is not supported on the node=$")) {
    return;
  }
  const auto groups = GroupPorts<const SMP_TarnExtPortInfo*>(node, [&](const IBPort& port) {
    return m_fabscan.fabric_extended_info.getSMPTarnExtPortInfo(port.createIndex);
  });
  WriteExtendedPortInfo(body.writer(), groups.regular, groups.marked);
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
  if (info != nullptr) writer.Append(Statements<kExtendedPortInfoFields>(*info), indent);
}
