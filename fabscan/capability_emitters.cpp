#include <cstddef>
#include <string_view>

#include "attribute_block.h"
#include "capability_names.h"
#include "fabscan_sim_info_dump.h"

namespace {

constexpr std::string_view kSMPHeader = "// ---------- SMP Caps ----------";
constexpr std::string_view kGMPHeader = "// ---------- GMP Caps ----------";
constexpr Target kSMP = {"GeneralInfoCapabilityMask", "&m_node->capMaskSMP"};
constexpr Target kGMP = {"GeneralInfoCapabilityMask", "&m_node->capMaskGMP"};

constexpr Field<capability_mask_t> kWords[] = {
    {"mad_buffer.capability0 = 0x",
     [](const capability_mask_t& m) -> u_int64_t { return m.mask[0]; }},
    {"mad_buffer.capability1 = 0x",
     [](const capability_mask_t& m) -> u_int64_t { return m.mask[1]; }},
    {"mad_buffer.capability2 = 0x",
     [](const capability_mask_t& m) -> u_int64_t { return m.mask[2]; }},
    {"mad_buffer.capability3 = 0x",
     [](const capability_mask_t& m) -> u_int64_t { return m.mask[3]; }},
};

capability_mask_t ZeroedMask() {
  capability_mask_t mask{};
  for (auto& word : mask.mask) word = 0;
  return mask;
}

/// The names of the bits that the module calls supported, then the block with all four words.
template <const Target& kTarget, class IsSupported>
void WriteMask(SourceWriter& writer, std::string_view header, const BitNames& names,
               const capability_mask_t& mask, IsSupported is_supported) {
  writer.Indent(kBodyIndent).Text(header);
  for (std::size_t bit = 0; bit < names.count; ++bit) {
    const PaddedText& name = names.names[bit];
    if (name.c_str() == nullptr || !is_supported(static_cast<u_int8_t>(bit))) continue;
    writer.AtOnce([&name](auto& to) { to.Line(kBodyIndent).Text("// ").Padded(name, 0); });
  }
  writer.EndLine().EndLine();
  WriteNodeBlock<kTarget, kWords>(writer, mask);
}

}  // namespace

void SimInfoDumpCPP::GenerateSMPCapabilityMask(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  capability_mask_t mask = ZeroedMask();
  const int status =
      m_fabscan.capability_module.GetCapability(const_cast<IBNode*>(&node), false, mask);
  if (status != 0) {
    WriteDiagnostic(writer, "#error \"Failed to get SMP capabilites for the node=", node.name,
                    " with rc=");
    writer.SignedDecimal(status).Text("\"");
    return;
  }
  WriteMask<kSMP>(writer, kSMPHeader, kSMPCapMaskNames, mask, [&](u_int8_t bit) {
    return m_fabscan.capability_module.IsSupportedSMPCapability(&node, bit);
  });
}

void SimInfoDumpCPP::GenerateGMPCapabilityMask(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (node.isSpecialNode()) {
    WriteDiagnostic(writer, "// The node=", node.name,
                    " is special and it should not support GMP capabilities.");
    return;
  }
  capability_mask_t mask = ZeroedMask();
  const int status =
      m_fabscan.capability_module.GetCapability(const_cast<IBNode*>(&node), true, mask);
  if (status != 0) {
    WriteDiagnostic(writer, "#error \"Failed to get GMP capabilites for the node=", node.name,
                    " with rc=");
    writer.SignedDecimal(status).Text("\"");
    return;
  }
  WriteMask<kGMP>(writer, kGMPHeader, kGMPCapMaskNames, mask, [&](u_int8_t bit) {
    return m_fabscan.capability_module.IsSupportedGMPCapability(&node, bit);
  });
}
