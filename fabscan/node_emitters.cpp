#include "body.h"
#include "fabscan_sim_info_dump.h"

namespace fabscan::generator {
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

constexpr Template kResizePkeyTable(R"(

m_node->resizePortPkeyTable(mad_buffer.PartitionCap);)");

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

// clang-format off

void SimInfoDumpCPP::GenerateNodeInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Block<kNodeInfo, kNodeInfoFields>(FABSCAN_STORED(getSMPNodeInfo),
                        "#error \"Failed to get NodeInfo mad for the node=$\"")
      .Below<kResizePkeyTable>();
}

void SimInfoDumpCPP::GenerateSwitchInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(IsSwitch, "// The node=$ is not a switch")
      .Block<kSwitchInfo, kSwitchInfoFields>(FABSCAN_STORED(getSMPSwitchInfo),
                        "// Failed to get SwitchInfo mad for the node=$");
}

void SimInfoDumpCPP::GenerateExtendedSwitchInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(IsSwitch, "// The node=$ is not a switch")
      .Block<kExtendedSwitchInfo, kExtendedSwitchInfoFields>(FABSCAN_STORED(getSMP_ExtendedSwitchInfo),
                        "// Failed to get VS ExtendedSwitchInfo mad for the node=$");
}

void SimInfoDumpCPP::GenerateRouterInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(IsRouter, "// The node=$ is not a router")
      .Block<kRouterInfo, kRouterInfoFields>(FABSCAN_STORED(getSMPRouterInfo),
                        "// Failed to get RouterInfo mad for the node=$");
}

void SimInfoDumpCPP::GenerateExtendedNodeInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(Supports<kIsExtendedNodeInfoSupported>,
                        "// The ExtendedNodeInfo mad is not supported on the node=$")
      .Block<kExtendedNodeInfo, kExtendedNodeInfoFields>(FABSCAN_STORED(getSMPExtNodeInfo),
                        "// Failed to get VS ExtendedNodeInfo mad for the node=$");
}

// The quotes of the "Failed to get" lines below stay open.

void SimInfoDumpCPP::GeneratePrivateLFTInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(IsSwitch, "// The node=$ is not a switch")
      .Unless(Supports<kIsPrivateLinearForwardingSupported, kIsPortSLToPrivateLFTMapSupported>,
                        "#error \"The node=$ does not support Private LFT\"")
      .Block<kPrivateLFTInfo, kPrivateLFTInfoFields>(FABSCAN_STORED(getPLFTInfo),
                        "#error \"Failed to get PrivateLFTInfo mad for the node=$");
}

void SimInfoDumpCPP::GenerateARInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(IsSwitch, "// The node=$ is not a switch")
      .Unless(Supports<kIsAdaptiveRoutingRev1Supported>,
                        "#error \"The node=$ does not support AR\"")
      .Block<kARInfo, kARInfoFields>(FABSCAN_STORED(getARInfo),
                        "#error \"Failed to get VS ArInfo mad for the node=$");
}

// clang-format on
