#include <cstddef>
#include <string_view>

#include "attribute_block.h"
#include "capability_names.h"
#include "fabscan_sim_info_dump.h"
#include "port_walk.h"

namespace {

constexpr Target kPortInfo = {"SMP_PortInfo", "&m_node->nodePortsInfo[i]"};
constexpr std::string_view kPortInfoLoop =
    "for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {";

/// Of the names of capability bits, so that the values stand in a column.
constexpr std::size_t kNameWidth = 46;

/// The port's mask without IsSM: a simulated port never claims to be a subnet manager.
u_int32_t CapMskWithoutSM(const SMP_PortInfo& info) {
  return static_cast<u_int32_t>(info.CapMsk) & ~u_int32_t{2};
}

// clang-format off

constexpr Field<SMP_PortInfo> kCapMsk[] = {
    {"mad_buffer.CapMsk = 0x", [](const SMP_PortInfo& r) -> u_int64_t { return CapMskWithoutSM(r); }},
};
constexpr Field<SMP_PortInfo> kCapMsk2[] = {FABSCAN_FIELD(SMP_PortInfo, CapMsk2)};
constexpr Field<SMP_PortInfo> kLinkWidthSup[] = {FABSCAN_FIELD(SMP_PortInfo, LinkWidthSup)};
constexpr Field<SMP_PortInfo> kSpeedsAndMTU[] = {
    FABSCAN_FIELD(SMP_PortInfo, LinkSpeedExtSup2),
    FABSCAN_FIELD(SMP_PortInfo, LinkSpeedExtSup),
    FABSCAN_FIELD(SMP_PortInfo, LinkSpeedSup),
    FABSCAN_FIELD(SMP_PortInfo, MTUCap),
};

// clang-format on

void WriteCapabilityNames(SourceWriter& writer, int indent, u_int32_t mask, bool is_cap_mask2) {
  const BitNames& names = is_cap_mask2 ? kPortInfoCapMask2Names : kPortInfoCapMaskNames;
  writer.Line(indent).Text("// ---------- CapMask").Text(is_cap_mask2 ? "2" : "");
  for (std::size_t bit = 0; bit < names.count; ++bit) {
    const PaddedText& name = names.names[bit];
    if (name.c_str() == nullptr || ((mask >> (bit % 32)) & 1U) == 0) continue;
    writer.AtOnce([indent, &name](auto& to) {
      to.Line(indent).Text("// ").Padded(name, kNameWidth).Text(" = 1");
    });
  }
}

/// The values of one branch. An empty line follows each mask and the link width.
void WriteValues(SourceWriter& writer, const SMP_PortInfo& info, int indent, bool with_cap_names,
                 bool with_link_width) {
  if (with_cap_names) WriteCapabilityNames(writer, indent, CapMskWithoutSM(info), false);
  writer.AtOnce([indent, &info](auto& to) { WriteStatements<kCapMsk>(to, indent, info); });
  if (with_cap_names) {
    writer.EndLine();
    WriteCapabilityNames(writer, indent, info.CapMsk2, true);
  }
  writer.AtOnce([indent, with_link_width, &info](auto& to) {
    WriteStatements<kCapMsk2>(to, indent, info);
    to.EndLine();
    if (with_link_width) {
      WriteStatements<kLinkWidthSup>(to, indent, info);
      to.EndLine();
    }
    WriteStatements<kSpeedsAndMTU>(to, indent, info);
  });
}

template <class Marked>
void WriteSwitchLoop(SourceWriter& writer, const IBNode& node, const SMP_PortInfo* port0,
                     const SMP_PortInfo* regular, const Marked& special) {
  if (port0 == nullptr || regular == nullptr) {
    WriteDiagnostic(
        writer,
        "#error \"Failed to dump PortInfo MAD. Zero and a regular ports must be provided.\"");
    return;
  }
  WritePortLoop<kPortInfo>(writer, kPortInfoLoop, [&] {
    writer.Line(kLoopIndent).Text("if (!i) {");
    WriteValues(writer, *port0, kBranchIndent, true, true);
    for (const auto& [number, info] : special) {
      if (info == nullptr) continue;
      writer.Line(kLoopIndent).Text("} else if (i == ").Decimal(number).Text(") {");
      WriteValues(writer, *info, kBranchIndent, false, true);
    }
    writer.Line(kLoopIndent).Text("} else {");
    WriteValues(writer, *regular, kBranchIndent, false, !node.isOpalSwitch());
    writer.Line(kLoopIndent).Text("}");
  });
}

void WriteAdapterLoop(SourceWriter& writer, const SMP_PortInfo* regular) {
  if (regular == nullptr) {
    WriteDiagnostic(writer, "#error \"Failed to dump PortInfo MAD. Null pointer is provided.\"");
    return;
  }
  WritePortLoop<kPortInfo>(writer, kPortInfoLoop,
                           [&] { WriteValues(writer, *regular, kLoopIndent, true, true); });
}

}  // namespace

void SimInfoDumpCPP::GeneratePortInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  const bool is_switch = node.type == IB_SW_NODE;
  const auto info_of = [&](const IBPort& port) -> const SMP_PortInfo* {
    return m_fabscan.fabric_extended_info.getSMPPortInfo(port.createIndex);
  };

  // Port 0 counts whatever its state.
  const bool has_port0 = is_switch && !node.Ports.empty() && node.Ports[0] != nullptr;
  const SMP_PortInfo* port0 = has_port0 ? info_of(*node.Ports[0]) : nullptr;
  const auto groups = GroupPorts<const SMP_PortInfo*>(node, info_of);

  if (is_switch) {
    WriteSwitchLoop(writer, node, port0, groups.regular, groups.marked);
  } else {
    WriteAdapterLoop(writer, groups.regular);
  }
}

void SimInfoDumpCPP::GeneratePortInfoSW(
    const IBNode& node, std::ostream& out, const SMP_PortInfo* port0, const SMP_PortInfo* regular,
    const std::map<u_int8_t, const SMP_PortInfo*>& special) const {
  SourceWriter writer(out);
  WriteSwitchLoop(writer, node, port0, regular, special);
}

void SimInfoDumpCPP::GeneratePortInfoSW(std::ostream& out, const SMP_PortInfo* info, int indent,
                                        bool withCapNames, bool withLinkWidthSup) const {
  SourceWriter writer(out);
  if (info != nullptr) WriteValues(writer, *info, indent, withCapNames, withLinkWidthSup);
}

void SimInfoDumpCPP::GeneratePortInfoCA(std::ostream& out, const SMP_PortInfo* regular) const {
  SourceWriter writer(out);
  WriteAdapterLoop(writer, regular);
}

void SimInfoDumpCPP::PrintCapabilityMask(int indent, std::ostream& out, u_int32_t mask,
                                         bool isCapMask2) const {
  SourceWriter writer(out);
  WriteCapabilityNames(writer, indent, mask, isCapMask2);
}
