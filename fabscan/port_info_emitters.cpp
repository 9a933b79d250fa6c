#include <cstddef>
#include <string_view>

#include "body.h"
#include "capability_names.h"
#include "fabscan_sim_info_dump.h"
#include "port_walk.h"

namespace fabscan::generator {
namespace {

constexpr Target kPortInfo = {"SMP_PortInfo", "&m_node->nodePortsInfo[i]",
                              "for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {"};

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

constexpr Template kMasks(R"(
$capMsk$
$capMsk2$
)",
                          {"capMsk", "capMsk2"});
constexpr Template kNamedMasks(R"(
$names$
$capMsk$

$names2$
$capMsk2$
)",
                               {"names", "capMsk", "names2", "capMsk2"});
constexpr Template kLinkWidth(R"(
$linkWidth$
)",
                              {"linkWidth"});

constexpr Template kNamesTitle(R"(
// ---------- CapMask$2$)",
                               {"2"});
constexpr Template kName(R"(
// $name$$blanks$ = 1)",
                         {"name", "blanks"});

constexpr Template kSwitchPorts(R"(
if (!i) {
    $port0$
$special$
} else {
    $regular$
})",
                                {"port0", "special", "regular"});
constexpr Template kSpecialPort(R"(
} else if (i == $port$) {
    $values$)",
                                {"port", "values"});

/// Comment lines that name the set bits of a mask, with the values in a column.
auto CapabilityNames(u_int32_t mask, bool is_cap_mask2) {
  return [=](SourceWriter& writer, int indent) {
    // As wide as the column.
    constexpr std::string_view kBlanks = "                                              ";
    const BitNames& names = is_cap_mask2 ? kPortInfoCapMask2Names : kPortInfoCapMaskNames;
    writer.EmitLines<kNamesTitle>(indent, is_cap_mask2 ? "2" : "");
    for (std::size_t bit = 0; bit < names.count; ++bit) {
      const std::string_view name = names.names[bit];
      if (name.empty() || ((mask >> (bit % 32)) & 1U) == 0) continue;
      writer.EmitLines<kName>(indent, BitName{name}, BitName{kBlanks.substr(name.size())});
    }
  };
}

/// The values of one branch. An empty line follows each mask and the link width.
auto PortValues(const SMP_PortInfo& info, bool with_cap_names, bool with_link_width) {
  return [&info, with_cap_names, with_link_width](SourceWriter& writer, int indent) {
    const auto cap_msk = Statements<kCapMsk>(info);
    const auto cap_msk2 = Statements<kCapMsk2>(info);
    if (with_cap_names) {
      writer.EmitLines<kNamedMasks>(indent, CapabilityNames(CapMskWithoutSM(info), false), cap_msk,
                                    CapabilityNames(info.CapMsk2, true), cap_msk2);
    } else {
      writer.EmitLines<kMasks>(indent, cap_msk, cap_msk2);
    }
    if (with_link_width) writer.EmitLines<kLinkWidth>(indent, Statements<kLinkWidthSup>(info));
    writer.Append(Statements<kSpeedsAndMTU>(info), indent);
  };
}

template <class Marked>
void WriteSwitchLoop(SourceWriter& writer, const IBNode& node, const SMP_PortInfo* port0,
                     const SMP_PortInfo* regular, const Marked& special) {
  if (port0 == nullptr || regular == nullptr) {
    writer.Text(
        "#error \"Failed to dump PortInfo MAD. Zero and a regular ports must be provided.\"");
    return;
  }
  const auto special_ports = [&special](SourceWriter& to, int indent) {
    for (const auto& [number, info] : special) {
      if (info == nullptr) continue;
      to.EmitLines<kSpecialPort>(indent, unsigned{number}, PortValues(*info, false, true));
    }
  };
  WritePortLoop<kPortInfo>(writer,
                           Filled<kSwitchPorts>(PortValues(*port0, true, true), special_ports,
                                                PortValues(*regular, false, !node.isOpalSwitch())));
}

void WriteAdapterLoop(SourceWriter& writer, const SMP_PortInfo* regular) {
  if (regular == nullptr) {
    writer.Text("#error \"Failed to dump PortInfo MAD. Null pointer is provided.\"");
    return;
  }
  WritePortLoop<kPortInfo>(writer, PortValues(*regular, true, true));
}

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

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
  if (info != nullptr) PortValues(*info, withCapNames, withLinkWidthSup)(writer, indent);
}

void SimInfoDumpCPP::GeneratePortInfoCA(std::ostream& out, const SMP_PortInfo* regular) const {
  SourceWriter writer(out);
  WriteAdapterLoop(writer, regular);
}

void SimInfoDumpCPP::PrintCapabilityMask(int indent, std::ostream& out, u_int32_t mask,
                                         bool isCapMask2) const {
  SourceWriter writer(out);
  CapabilityNames(mask, isCapMask2)(writer, indent);
}
