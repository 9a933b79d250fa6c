#include <cstddef>

#include "body.h"
#include "capability_names.h"
#include "fabscan_sim_info_dump.h"

namespace fabscan::generator {
namespace {

constexpr Target kSMP = {"GeneralInfoCapabilityMask", "&m_node->capMaskSMP"};
constexpr Target kGMP = {"GeneralInfoCapabilityMask", "&m_node->capMaskGMP"};

constexpr Template kSMPNames(R"(
// ---------- SMP Caps ----------
$names$

)",
                             {"names"});
constexpr Template kGMPNames(R"(
// ---------- GMP Caps ----------
$names$

)",
                             {"names"});
constexpr Template kName(R"(
// $name$)",
                         {"name"});

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
template <const Template& kNames, const Target& kTarget, class IsSupported>
void WriteMask(SourceWriter& writer, const BitNames& names, const capability_mask_t& mask,
               const IsSupported& is_supported) {
  writer.Emit<kNames>(kBodyIndent, [&](SourceWriter& to, int indent) {
    for (std::size_t bit = 0; bit < names.count; ++bit) {
      const std::string_view name = names.names[bit];
      if (name.empty() || !is_supported(static_cast<u_int8_t>(bit))) continue;
      to.EmitLines<kName>(indent, BitName{name});
    }
  });
  WriteNodeBlock<kTarget, kWords>(writer, mask);
}

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

void SimInfoDumpCPP::GenerateSMPCapabilityMask(std::ostream& out, const IBNode& node) const {
  Body body(out, m_fabscan, node);
  auto& capabilities = m_fabscan.capability_module;
  capability_mask_t mask = ZeroedMask();
  const int status = capabilities.GetCapability(const_cast<IBNode*>(&node), false, mask);
  if (status != 0) {
    body.Write("#error \"Failed to get SMP capabilites for the node=$ with rc=")
        .SignedDecimal(status)
        .Text("\"");
    return;
  }
  WriteMask<kSMPNames, kSMP>(body.writer(), kSMPCapMaskNames, mask, [&](u_int8_t bit) {
    return capabilities.IsSupportedSMPCapability(&node, bit);
  });
}

void SimInfoDumpCPP::GenerateGMPCapabilityMask(std::ostream& out, const IBNode& node) const {
  Body body(out, m_fabscan, node);
  if (body.Unless(IsNotSpecial,
                  "// The node=$ is special and it should not support GMP capabilities.")) {
    return;
  }
  auto& capabilities = m_fabscan.capability_module;
  capability_mask_t mask = ZeroedMask();
  const int status = capabilities.GetCapability(const_cast<IBNode*>(&node), true, mask);
  if (status != 0) {
    body.Write("#error \"Failed to get GMP capabilites for the node=$ with rc=")
        .SignedDecimal(status)
        .Text("\"");
    return;
  }
  WriteMask<kGMPNames, kGMP>(body.writer(), kGMPCapMaskNames, mask, [&](u_int8_t bit) {
    return capabilities.IsSupportedGMPCapability(&node, bit);
  });
}
