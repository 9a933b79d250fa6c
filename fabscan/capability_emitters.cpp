#include <cstddef>
#include <string_view>
#include <vector>

#include "attribute_block.h"
#include "fabscan_sim_info_dump.h"

namespace {

/// What tells the two masks apart.
struct MaskKind {
  std::string_view header;
  Target target;
};

constexpr MaskKind kSMP = {"// ---------- SMP Caps ----------",
                           {"GeneralInfoCapabilityMask", "&m_node->capMaskSMP"}};
constexpr MaskKind kGMP = {"// ---------- GMP Caps ----------",
                           {"GeneralInfoCapabilityMask", "&m_node->capMaskGMP"}};

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
template <class IsSupported>
void WriteMask(SourceWriter& writer, const MaskKind& kind, const std::vector<const char*>& names,
               const capability_mask_t& mask, IsSupported is_supported) {
  writer.Indent(kBodyIndent).Text(kind.header);
  for (std::size_t bit = 0; bit < names.size(); ++bit) {
    if (names[bit] == nullptr || !is_supported(static_cast<u_int8_t>(bit))) continue;
    writer.Line(kBodyIndent).Text("// ").Text(names[bit]);
  }
  writer.EndLine().EndLine();
  WriteNodeBlock<kWords>(writer, kind.target, mask);
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
  WriteMask(writer, kSMP, SimInfoData::SMPCapMaskBits, mask, [&](u_int8_t bit) {
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
  WriteMask(writer, kGMP, SimInfoData::GMPCapMaskBits, mask, [&](u_int8_t bit) {
    return m_fabscan.capability_module.IsSupportedGMPCapability(&node, bit);
  });
}
