#include "attribute_block.h"
#include "capability_bits.h"
#include "fabscan_sim_info_dump.h"
#include "node_gates.h"

namespace {

// What is dumped of each record, in the order of the generated text.
// clang-format off

constexpr Target kNodeInfo = {"SMP_NodeInfo", "&m_node->nodeInfo"};
constexpr Field<SMP_NodeInfo> kNodeInfoFields[] = {
    FABSCAN_FIELD(SMP_NodeInfo, BaseVersion),
    FABSCAN_FIELD(SMP_NodeInfo, ClassVersion),
    FABSCAN_FIELD(SMP_NodeInfo, PartitionCap),
    FABSCAN_FIELD(SMP_NodeInfo, DeviceID),
    FABSCAN_FIELD(SMP_NodeInfo, revision),
    FABSCAN_FIELD(SMP_NodeInfo, VendorID),
};

constexpr Target kSwitchInfo = {"SMP_SwitchInfo", "&m_node->switchInfo"};
constexpr Field<SMP_SwitchInfo> kSwitchInfoFields[] = {
    FABSCAN_FIELD(SMP_SwitchInfo, LinearFDBCap),
    FABSCAN_FIELD(SMP_SwitchInfo, RandomFDBCap),
    FABSCAN_FIELD(SMP_SwitchInfo, MCastFDBCap),
    FABSCAN_FIELD(SMP_SwitchInfo, OptimizedSLVLMapping),
    FABSCAN_FIELD(SMP_SwitchInfo, LidsPerPort),
    FABSCAN_FIELD(SMP_SwitchInfo, PartEnfCap),
    FABSCAN_FIELD(SMP_SwitchInfo, InbEnfCap),
    FABSCAN_FIELD(SMP_SwitchInfo, OutbEnfCap),
    FABSCAN_FIELD(SMP_SwitchInfo, FilterRawInbCap),
    FABSCAN_FIELD(SMP_SwitchInfo, FilterRawOutbCap),
    FABSCAN_FIELD(SMP_SwitchInfo, ENP0),
};

// The accessor's result is the address already.
constexpr Target kExtendedSwitchInfo = {"SMP_ExtendedSwitchInfo", "m_node->getExtendedSwitchInfo()"};
constexpr Field<SMP_ExtendedSwitchInfo> kExtendedSwitchInfoFields[] = {
    FABSCAN_FIELD(SMP_ExtendedSwitchInfo, turbo_path_cap),
};

constexpr Target kRouterInfo = {"SMP_RouterInfo", "&m_node->routerInfo"};
constexpr Field<SMP_RouterInfo> kRouterInfoFields[] = {
    FABSCAN_FIELD(SMP_RouterInfo, CapabilityMask),
    FABSCAN_FIELD(SMP_RouterInfo, NextHopTableCap),
    FABSCAN_FIELD(SMP_RouterInfo, AdjacentSiteLocalSubnetsTableCap),
    FABSCAN_FIELD(SMP_RouterInfo, ar_group_to_router_lid_table_cap),
    FABSCAN_FIELD(SMP_RouterInfo, cap_supported_subnets),
    FABSCAN_FIELD(SMP_RouterInfo, cap_router_lid),
};

constexpr Target kExtendedNodeInfo = {"ib_extended_node_info", "&m_node->extNodeInfo"};
constexpr Field<ib_extended_node_info> kExtendedNodeInfoFields[] = {
    FABSCAN_FIELD(ib_extended_node_info, sl2vl_cap),
    FABSCAN_FIELD(ib_extended_node_info, node_type_extended),
    FABSCAN_FIELD(ib_extended_node_info, num_pcie),
    FABSCAN_FIELD(ib_extended_node_info, num_oob),
    FABSCAN_FIELD(ib_extended_node_info, AnycastLidCap),
    FABSCAN_FIELD(ib_extended_node_info, asic_max_planes),
    FABSCAN_FIELD(ib_extended_node_info, link_auto_retrain_en),
    FABSCAN_FIELD(ib_extended_node_info, multiplane_asymmetry_en),
};

constexpr Target kPrivateLFTInfo = {"ib_private_lft_info", "&m_node->plftInfo"};
constexpr Field<ib_private_lft_info> kPrivateLFTInfoFields[] = {
    FABSCAN_FIELD(ib_private_lft_info, Active_Mode),
    FABSCAN_FIELD(ib_private_lft_info, ModeCap),
    FABSCAN_FIELD(ib_private_lft_info, NumPLFTs),
    FABSCAN_FIELD(ib_private_lft_info, NoFallback),
    FABSCAN_FIELD(ib_private_lft_info, Description_Mode[0].LFTableSize),
    FABSCAN_FIELD(ib_private_lft_info, Description_Mode[0].NumOfLFTables),
    FABSCAN_FIELD(ib_private_lft_info, Description_Mode[1].LFTableSize),
    FABSCAN_FIELD(ib_private_lft_info, Description_Mode[1].NumOfLFTables),
    FABSCAN_FIELD(ib_private_lft_info, Description_Mode[2].LFTableSize),
    FABSCAN_FIELD(ib_private_lft_info, Description_Mode[2].NumOfLFTables),
    FABSCAN_FIELD(ib_private_lft_info, Description_Mode[3].LFTableSize),
    FABSCAN_FIELD(ib_private_lft_info, Description_Mode[3].NumOfLFTables),
};

constexpr Target kARInfo = {"adaptive_routing_info", "&m_node->AdaptiveRoutingInfo"};
constexpr Field<adaptive_routing_info> kARInfoFields[] = {
    FABSCAN_FIELD(adaptive_routing_info, dyn_cap_calc_sup),
    FABSCAN_FIELD(adaptive_routing_info, by_transp_cap),
    FABSCAN_FIELD(adaptive_routing_info, by_sl_cap),
    FABSCAN_FIELD(adaptive_routing_info, glb_groups),
    FABSCAN_FIELD(adaptive_routing_info, is4_mode),
    FABSCAN_FIELD(adaptive_routing_info, direction_num_sup),
    FABSCAN_FIELD(adaptive_routing_info, group_table_copy_sup),
    FABSCAN_FIELD(adaptive_routing_info, group_cap),
    FABSCAN_FIELD(adaptive_routing_info, is_ar_trials_supported),
    FABSCAN_FIELD(adaptive_routing_info, is_fr_sup),
    FABSCAN_FIELD(adaptive_routing_info, is_frn_sup),
    FABSCAN_FIELD(adaptive_routing_info, is_arn_sup),
    FABSCAN_FIELD(adaptive_routing_info, string_width_cap),
    FABSCAN_FIELD(adaptive_routing_info, group_table_cap),
    FABSCAN_FIELD(adaptive_routing_info, sub_grps_supported),
    FABSCAN_FIELD(adaptive_routing_info, rn_version_cap),
    FABSCAN_FIELD(adaptive_routing_info, ar_version_cap),
    FABSCAN_FIELD(adaptive_routing_info, is_hbf_supported),
    FABSCAN_FIELD(adaptive_routing_info, is_whbf_supported),
    FABSCAN_FIELD(adaptive_routing_info, is_symmetric_hash_supported),
    FABSCAN_FIELD(adaptive_routing_info, is_dceth_hash_supported),
    FABSCAN_FIELD(adaptive_routing_info, is_bth_dqp_hash_supported),
    FABSCAN_FIELD(adaptive_routing_info, is_pfrn_supported),
};

// clang-format on

}  // namespace

void SimInfoDumpCPP::GenerateNodeInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  const SMP_NodeInfo* record = m_fabscan.fabric_extended_info.getSMPNodeInfo(node.createIndex);
  if (record == nullptr) {
    WriteDiagnostic(writer, "#error \"Failed to get NodeInfo mad for the node=", node.name, "\"");
    return;
  }
  WriteNodeBlock<kNodeInfo, kNodeInfoFields>(writer, *record);
  writer.EndLine();
  writer.Line(kBodyIndent).Text("m_node->resizePortPkeyTable(mad_buffer.PartitionCap);");
}

void SimInfoDumpCPP::GenerateSwitchInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesAsNotSwitch(writer, node)) return;
  const SMP_SwitchInfo* record = m_fabscan.fabric_extended_info.getSMPSwitchInfo(node.createIndex);
  if (record == nullptr) {
    WriteDiagnostic(writer, "// Failed to get SwitchInfo mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kSwitchInfo, kSwitchInfoFields>(writer, *record);
}

void SimInfoDumpCPP::GenerateExtendedSwitchInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesAsNotSwitch(writer, node)) return;
  const SMP_ExtendedSwitchInfo* record =
      m_fabscan.fabric_extended_info.getSMP_ExtendedSwitchInfo(node.createIndex);
  if (record == nullptr) {
    WriteDiagnostic(writer, "// Failed to get VS ExtendedSwitchInfo mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kExtendedSwitchInfo, kExtendedSwitchInfoFields>(writer, *record);
}

void SimInfoDumpCPP::GenerateRouterInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (node.type != IB_RTR_NODE) {
    WriteDiagnostic(writer, "// The node=", node.name, " is not a router");
    return;
  }
  const SMP_RouterInfo* record = m_fabscan.fabric_extended_info.getSMPRouterInfo(node.createIndex);
  if (record == nullptr) {
    WriteDiagnostic(writer, "// Failed to get RouterInfo mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kRouterInfo, kRouterInfoFields>(writer, *record);
}

void SimInfoDumpCPP::GenerateExtendedNodeInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (!m_fabscan.capability_module.IsSupportedSMPCapability(&node, kIsExtendedNodeInfoSupported)) {
    WriteDiagnostic(writer, "// The ExtendedNodeInfo mad is not supported on the node=", node.name);
    return;
  }
  const ib_extended_node_info* record =
      m_fabscan.fabric_extended_info.getSMPExtNodeInfo(node.createIndex);
  if (record == nullptr) {
    WriteDiagnostic(writer, "// Failed to get VS ExtendedNodeInfo mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kExtendedNodeInfo, kExtendedNodeInfoFields>(writer, *record);
}

void SimInfoDumpCPP::GeneratePrivateLFTInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesAsNotSwitch(writer, node)) return;
  auto& capabilities = m_fabscan.capability_module;
  if (!capabilities.IsSupportedSMPCapability(&node, kIsPrivateLinearForwardingSupported) ||
      !capabilities.IsSupportedSMPCapability(&node, kIsPortSLToPrivateLFTMapSupported)) {
    WriteDiagnostic(writer, "#error \"The node=", node.name, " does not support Private LFT\"");
    return;
  }
  const ib_private_lft_info* record = m_fabscan.fabric_extended_info.getPLFTInfo(node.createIndex);
  if (record == nullptr) {
    // The quote stays open, unlike the one above.
    WriteDiagnostic(writer, "#error \"Failed to get PrivateLFTInfo mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kPrivateLFTInfo, kPrivateLFTInfoFields>(writer, *record);
}

void SimInfoDumpCPP::GenerateARInfo(std::ostream& out, const IBNode& node) const {
  SourceWriter writer(out);
  if (DeclinesAsNotSwitch(writer, node)) return;
  if (!m_fabscan.capability_module.IsSupportedSMPCapability(&node,
                                                            kIsAdaptiveRoutingRev1Supported)) {
    WriteDiagnostic(writer, "#error \"The node=", node.name, " does not support AR\"");
    return;
  }
  const adaptive_routing_info* record = m_fabscan.fabric_extended_info.getARInfo(node.createIndex);
  if (record == nullptr) {
    // The quote stays open, unlike the one above.
    WriteDiagnostic(writer, "#error \"Failed to get VS ArInfo mad for the node=", node.name);
    return;
  }
  WriteNodeBlock<kARInfo, kARInfoFields>(writer, *record);
}
