#include <gtest/gtest.h>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

TEST(PrivateLFTInfo, AssignsAllFourModes) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {0, 12});
  auto& record = fabric.Put<ib_private_lft_info>(node);
  record.Active_Mode = 0x81;
  record.ModeCap = 0x82;
  record.NumPLFTs = 0x83;
  record.NoFallback = 0x84;
  record.Description_Mode[0].LFTableSize = 0x85;
  record.Description_Mode[0].NumOfLFTables = 0x86;
  record.Description_Mode[1].LFTableSize = 0x87;
  record.Description_Mode[1].NumOfLFTables = 0x88;
  record.Description_Mode[2].LFTableSize = 0x89;
  record.Description_Mode[2].NumOfLFTables = 0x8a;
  record.Description_Mode[3].LFTableSize = 0x8b;
  record.Description_Mode[3].NumOfLFTables = 0x8c;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GeneratePrivateLFTInfo, node),
            R"(    ib_private_lft_info mad_buffer = {0};
    ib_private_lft_info_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->plftInfo));

    mad_buffer.Active_Mode = 0x81;
    mad_buffer.ModeCap = 0x82;
    mad_buffer.NumPLFTs = 0x83;
    mad_buffer.NoFallback = 0x84;
    mad_buffer.Description_Mode[0].LFTableSize = 0x85;
    mad_buffer.Description_Mode[0].NumOfLFTables = 0x86;
    mad_buffer.Description_Mode[1].LFTableSize = 0x87;
    mad_buffer.Description_Mode[1].NumOfLFTables = 0x88;
    mad_buffer.Description_Mode[2].LFTableSize = 0x89;
    mad_buffer.Description_Mode[2].NumOfLFTables = 0x8a;
    mad_buffer.Description_Mode[3].LFTableSize = 0x8b;
    mad_buffer.Description_Mode[3].NumOfLFTables = 0x8c;

    ib_private_lft_info_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->plftInfo));)");
}

TEST(PrivateLFTInfo, AssignsAllFourModesWhateverTheirNumber) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {0, 12});
  auto& record = fabric.Put<ib_private_lft_info>(node);
  record.Active_Mode = 0x0;
  record.ModeCap = 0x0;
  record.NumPLFTs = 0x1;
  record.NoFallback = 0x0;
  record.Description_Mode[0].LFTableSize = 0x0;
  record.Description_Mode[0].NumOfLFTables = 0x0;
  record.Description_Mode[1].LFTableSize = 0x0;
  record.Description_Mode[1].NumOfLFTables = 0x0;
  record.Description_Mode[2].LFTableSize = 0x0;
  record.Description_Mode[2].NumOfLFTables = 0x0;
  record.Description_Mode[3].LFTableSize = 0x0;
  record.Description_Mode[3].NumOfLFTables = 0x0;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GeneratePrivateLFTInfo, node),
            R"(    ib_private_lft_info mad_buffer = {0};
    ib_private_lft_info_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->plftInfo));

    mad_buffer.Active_Mode = 0x0;
    mad_buffer.ModeCap = 0x0;
    mad_buffer.NumPLFTs = 0x1;
    mad_buffer.NoFallback = 0x0;
    mad_buffer.Description_Mode[0].LFTableSize = 0x0;
    mad_buffer.Description_Mode[0].NumOfLFTables = 0x0;
    mad_buffer.Description_Mode[1].LFTableSize = 0x0;
    mad_buffer.Description_Mode[1].NumOfLFTables = 0x0;
    mad_buffer.Description_Mode[2].LFTableSize = 0x0;
    mad_buffer.Description_Mode[2].NumOfLFTables = 0x0;
    mad_buffer.Description_Mode[3].LFTableSize = 0x0;
    mad_buffer.Description_Mode[3].NumOfLFTables = 0x0;

    ib_private_lft_info_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->plftInfo));)");
}

TEST(PrivateLFTInfo, NeedsPrivateForwarding) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {12});
  fabric.Put<ib_private_lft_info>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GeneratePrivateLFTInfo, node),
            R"(#error "The node=S1 does not support Private LFT")");
}

TEST(PrivateLFTInfo, NeedsTheServiceLevelMap) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {0});
  fabric.Put<ib_private_lft_info>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GeneratePrivateLFTInfo, node),
            R"(#error "The node=S1 does not support Private LFT")");
}

TEST(PrivateLFTInfo, NeedsEither) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {});
  fabric.Put<ib_private_lft_info>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GeneratePrivateLFTInfo, node),
            R"(#error "The node=S1 does not support Private LFT")");
}

TEST(PrivateLFTInfo, StopsTheBuildWithAnOpenQuoteWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {0, 12});
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GeneratePrivateLFTInfo, node),
            R"(#error "Failed to get PrivateLFTInfo mad for the node=S1)");
}

TEST(ARInfo, AssignsTheTwentyThreeCapabilityFields) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {2});
  auto& record = fabric.Put<adaptive_routing_info>(node);
  record.dyn_cap_calc_sup = 0x81;
  record.by_transp_cap = 0x82;
  record.by_sl_cap = 0x83;
  record.glb_groups = 0x84;
  record.is4_mode = 0x85;
  record.direction_num_sup = 0x86;
  record.group_table_copy_sup = 0x87;
  record.group_cap = 0x8808;
  record.is_ar_trials_supported = 0x89;
  record.is_fr_sup = 0x8a;
  record.is_frn_sup = 0x8b;
  record.is_arn_sup = 0x8c;
  record.string_width_cap = 0x8d;
  record.group_table_cap = 0x8e;
  record.sub_grps_supported = 0x8f;
  record.rn_version_cap = 0x90;
  record.ar_version_cap = 0x91;
  record.is_hbf_supported = 0x92;
  record.is_whbf_supported = 0x93;
  record.is_symmetric_hash_supported = 0x94;
  record.is_dceth_hash_supported = 0x95;
  record.is_bth_dqp_hash_supported = 0x96;
  record.is_pfrn_supported = 0x97;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateARInfo, node),
            R"(    adaptive_routing_info mad_buffer = {0};
    adaptive_routing_info_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->AdaptiveRoutingInfo));

    mad_buffer.dyn_cap_calc_sup = 0x81;
    mad_buffer.by_transp_cap = 0x82;
    mad_buffer.by_sl_cap = 0x83;
    mad_buffer.glb_groups = 0x84;
    mad_buffer.is4_mode = 0x85;
    mad_buffer.direction_num_sup = 0x86;
    mad_buffer.group_table_copy_sup = 0x87;
    mad_buffer.group_cap = 0x8808;
    mad_buffer.is_ar_trials_supported = 0x89;
    mad_buffer.is_fr_sup = 0x8a;
    mad_buffer.is_frn_sup = 0x8b;
    mad_buffer.is_arn_sup = 0x8c;
    mad_buffer.string_width_cap = 0x8d;
    mad_buffer.group_table_cap = 0x8e;
    mad_buffer.sub_grps_supported = 0x8f;
    mad_buffer.rn_version_cap = 0x90;
    mad_buffer.ar_version_cap = 0x91;
    mad_buffer.is_hbf_supported = 0x92;
    mad_buffer.is_whbf_supported = 0x93;
    mad_buffer.is_symmetric_hash_supported = 0x94;
    mad_buffer.is_dceth_hash_supported = 0x95;
    mad_buffer.is_bth_dqp_hash_supported = 0x96;
    mad_buffer.is_pfrn_supported = 0x97;

    adaptive_routing_info_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->AdaptiveRoutingInfo));)");
}

TEST(ARInfo, LeavesSettingsToTheSimulatedNode) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {2});
  auto& record = fabric.Put<adaptive_routing_info>(node);
  const std::string before = fabric.Body(&SimInfoDumpCPP::GenerateARInfo, node);
  record.e = 1;
  record.fr_enabled = 1;
  record.rn_xmit_enabled = 1;
  record.sub_grps_active = 1;
  record.no_fallback = 1;
  record.by_sl_en = 1;
  record.by_transport_disable = 1;
  record.pfrn_enabled = 1;
  record.by_vl_en = 1;
  record.whbf_en = 1;
  record.by_sl_hbf_en = 1;
  record.by_vl_cap = 1;
  record.whbf_granularity = 1;
  record.sl_vl_mode = 1;
  record.group_top = record.enable_by_sl_mask = record.enable_by_sl_mask_hbf = 1;
  record.enable_by_vl_mask = record.enable_by_vl_mask_hbf = 1;
  record.ageing_time_value = 1;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateARInfo, node), before);
}

TEST(ARInfo, NeedsTheFirstRevisionNotJustAdaptiveRouting) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {1});
  fabric.Put<adaptive_routing_info>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateARInfo, node),
            R"(#error "The node=S1 does not support AR")");
}

TEST(ARInfo, StopsTheBuildWithAnOpenQuoteWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {2});
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateARInfo, node),
            R"(#error "Failed to get VS ArInfo mad for the node=S1)");
}

}  // namespace
}  // namespace fabscan
