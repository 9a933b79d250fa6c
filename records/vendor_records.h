#ifndef FABSCAN_RECORDS_VENDOR_RECORDS_H
#define FABSCAN_RECORDS_VENDOR_RECORDS_H

#include "records/record_table.h"

// Attributes without a published layout: packed in the order of the struct, big-endian, each field
// as wide as there.
//
// DUMPED: the generator writes the field, so a snapshot must have it. KEPT: a snapshot can
// have it; if missing, it is 0.

namespace fabscan {

// clang-format off
#define RECORD(type) FABSCAN_RECORD_ROWS(type, kAnyLength)
#define DUMPED(member) FABSCAN_ROW(member, true,  0, 0)
#define KEPT(member)   FABSCAN_ROW(member, false, 0, 0)
#define IDENTIFYING(member, identity) FABSCAN_ROW(member, false, 0, 0, identity)

RECORD(SMP_RouterInfo) = {
    DUMPED(CapabilityMask),
    DUMPED(NextHopTableCap),
    KEPT(  NextHopTableTop),
    DUMPED(AdjacentSiteLocalSubnetsTableCap),
    KEPT(  AdjacentSiteLocalSubnetsTableTop),
    KEPT(  table_changes_bitmask),
    DUMPED(ar_group_to_router_lid_table_cap),
    DUMPED(cap_supported_subnets),
    DUMPED(cap_router_lid),
    KEPT(  AdjacentSubnetsRouterLIDInfo),
    KEPT(  pfrn_rtr_en),
    KEPT(  global_router_lid_base),
    KEPT(  max_ar_group_id),
    KEPT(  global_router_lid_top),
    KEPT(  local_router_lid_base),
    KEPT(  local_router_lid_top),
};};

RECORD(SMP_ExtendedSwitchInfo) = {
    KEPT(  turbo_path_enable),
    DUMPED(turbo_path_cap),
    KEPT(  request_issu),
    KEPT(  approve_issu),
    KEPT(  end_to_end_timescale),
    KEPT(  req_delay),
    KEPT(  req_trig_window_cap),
    KEPT(  rst_trig_th_cap),
    KEPT(  set_trig_th_cap),
    KEPT(  req_delay_cap),
    KEPT(  rst_trig_th),
    KEPT(  set_trig_th),
    KEPT(  req_trig_window),
};};

RECORD(ib_extended_node_info) = {
    DUMPED(sl2vl_cap),
    KEPT(  sl2vl_act),
    DUMPED(num_pcie),
    DUMPED(num_oob),
    DUMPED(node_type_extended),
    DUMPED(AnycastLidCap),
    KEPT(  AnycastLIDTop),
    DUMPED(asic_max_planes),
    DUMPED(link_auto_retrain_en),
    DUMPED(multiplane_asymmetry_en),
};};

RECORD(ib_description_mode) = {
    DUMPED(NumOfLFTables),
    DUMPED(LFTableSize),
};};

RECORD(ib_private_lft_info) = {
    DUMPED(Active_Mode),
    DUMPED(ModeCap),
    DUMPED(NumPLFTs),
    DUMPED(NoFallback),
    DUMPED(Description_Mode),
};};

RECORD(adaptive_routing_info) = {
    KEPT(  e),
    DUMPED(is_arn_sup),
    DUMPED(is_frn_sup),
    DUMPED(is_fr_sup),
    KEPT(  fr_enabled),
    KEPT(  rn_xmit_enabled),
    DUMPED(is_ar_trials_supported),
    KEPT(  sub_grps_active),
    DUMPED(group_table_copy_sup),
    DUMPED(direction_num_sup),
    KEPT(  no_fallback),
    DUMPED(is4_mode),
    DUMPED(glb_groups),
    DUMPED(by_sl_cap),
    KEPT(  by_sl_en),
    DUMPED(by_transp_cap),
    DUMPED(dyn_cap_calc_sup),
    DUMPED(group_cap),
    KEPT(  group_top),
    DUMPED(group_table_cap),
    DUMPED(string_width_cap),
    DUMPED(ar_version_cap),
    DUMPED(rn_version_cap),
    DUMPED(sub_grps_supported),
    KEPT(  enable_by_sl_mask),
    KEPT(  by_transport_disable),
    KEPT(  ageing_time_value),
    KEPT(  pfrn_enabled),
    KEPT(  by_vl_en),
    KEPT(  whbf_en),
    KEPT(  by_sl_hbf_en),
    DUMPED(is_pfrn_supported),
    KEPT(  by_vl_cap),
    DUMPED(is_bth_dqp_hash_supported),
    DUMPED(is_dceth_hash_supported),
    DUMPED(is_symmetric_hash_supported),
    DUMPED(is_whbf_supported),
    DUMPED(is_hbf_supported),
    KEPT(  enable_by_sl_mask_hbf),
    KEPT(  whbf_granularity),
    KEPT(  enable_by_vl_mask),
    KEPT(  sl_vl_mode),
    KEPT(  enable_by_vl_mask_hbf),
};};

RECORD(HWInfo_Block_Element) = {
    DUMPED(DeviceID),
    DUMPED(DeviceHWRevision),
    DUMPED(pvs),
    DUMPED(technology),
    DUMPED(num_ports),
    DUMPED(hw_dev_id),
    KEPT(  cpo_indication),
    KEPT(  ga_valid),
    KEPT(  development),
    IDENTIFYING(manufacturing_base_mac_32_47, Identity::kMacAddress),
    KEPT(  ga),
    KEPT(  chip_type),
    IDENTIFYING(manufacturing_base_mac_0_31, Identity::kMacAddress),
    KEPT(  UpTime),
};};

RECORD(PSID_Block_Element) = {
    DUMPED(PSID),
};};

RECORD(FWInfo_Block_Element) = {
    DUMPED(SubMinor),
    DUMPED(Minor),
    DUMPED(Major),
    KEPT(  secure_fw),
    KEPT(  signed_fw),
    KEPT(  debug_fw),
    KEPT(  dev_fw),
    DUMPED(BuildID),
    KEPT(  Year),
    KEPT(  Day),
    KEPT(  Month),
    KEPT(  Hour),
    DUMPED(PSID),
    DUMPED(INI_File_Version),
    DUMPED(Extended_Major),
    DUMPED(Extended_Minor),
    DUMPED(Extended_SubMinor),
    DUMPED(isfu_major),
    KEPT(  life_cycle),
    DUMPED(sec_boot),
};};

RECORD(SWInfo_Block_Element) = {
    DUMPED(SubMinor),
    DUMPED(Minor),
    DUMPED(Major),
    KEPT(  Reserved8),
    KEPT(  Reserved_Dword),
};};

RECORD(GeneralInfoCapabilityMask) = {
    KEPT(  capability0),
    KEPT(  capability1),
    KEPT(  capability2),
    KEPT(  capability3),
};};

RECORD(VendorSpec_GeneralInfo) = {
    DUMPED(HWInfo),
    DUMPED(FWInfo),
    DUMPED(SWInfo),
    KEPT(  CapabilityMask),
};};

RECORD(CC_EnhancedCongestionInfo) = {
    DUMPED(ver1),
    DUMPED(ver0),
    DUMPED(CC_Capability_Mask),
};};

RECORD(CC_CongestionSwitchGeneralSettings) = {
    KEPT(  aqs_time),
    KEPT(  aqs_weight),
    KEPT(  en),
    DUMPED(cap_total_buffer_size),
    DUMPED(cap_cc_profile_step_size),
};};

RECORD(SMP_TarnExtPortInfo) = {
    DUMPED(LinkSpeedSupported),
    DUMPED(CapabilityMask),
    DUMPED(FECModeActive),
    DUMPED(RetransMode),
    DUMPED(FDR10FECModeSupported),
    DUMPED(FDRFECModeSupported),
    DUMPED(EDR20FECModeSupported),
    DUMPED(EDRFECModeSupported),
    DUMPED(FDR10RetranSupported),
    DUMPED(FDRRetranSupported),
    DUMPED(EDR20RetranSupported),
    DUMPED(EDRRetranSupported),
    DUMPED(SpecialPortType),
    DUMPED(IsSpecialPort),
    DUMPED(SpecialPortCapabilityMask),
    DUMPED(is_fnm_port),
    DUMPED(HDRFECModeSupported),
    DUMPED(NDRFECModeSupported),
    DUMPED(XDRFECModeSupported),
    KEPT(  LinkSpeedEnabled),
};};

#undef IDENTIFYING
#undef KEPT
#undef DUMPED
#undef RECORD
// clang-format on

}  // namespace fabscan

#endif
