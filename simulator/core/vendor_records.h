#ifndef SIMULATOR_CORE_VENDOR_RECORDS_H
#define SIMULATOR_CORE_VENDOR_RECORDS_H

#include <infiniband/fabscan/fabscan_types.h>

#include "fields.h"

/// Attributes whose wire layout nobody published, packed in the order of the record, big-endian:
/// each field as wide as in the record.

namespace fabscan {
namespace simulator {

#define NEXT(member) field(#member, record.member);
// clang-format off

template <class Visit>
constexpr void WalkFields(SMP_RouterInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(CapabilityMask) NEXT(NextHopTableCap) NEXT(NextHopTableTop)
  NEXT(AdjacentSiteLocalSubnetsTableCap) NEXT(AdjacentSiteLocalSubnetsTableTop)
  NEXT(table_changes_bitmask) NEXT(ar_group_to_router_lid_table_cap) NEXT(cap_supported_subnets)
  NEXT(cap_router_lid) NEXT(AdjacentSubnetsRouterLIDInfo) NEXT(pfrn_rtr_en)
  NEXT(global_router_lid_base) NEXT(max_ar_group_id) NEXT(global_router_lid_top)
  NEXT(local_router_lid_base) NEXT(local_router_lid_top)
}

template <class Visit>
constexpr void WalkFields(SMP_ExtendedSwitchInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(turbo_path_enable) NEXT(turbo_path_cap) NEXT(request_issu) NEXT(approve_issu)
  NEXT(end_to_end_timescale) NEXT(req_delay) NEXT(req_trig_window_cap) NEXT(rst_trig_th_cap)
  NEXT(set_trig_th_cap) NEXT(req_delay_cap) NEXT(rst_trig_th) NEXT(set_trig_th)
  NEXT(req_trig_window)
}

template <class Visit>
constexpr void WalkFields(ib_extended_node_info& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(sl2vl_cap) NEXT(sl2vl_act) NEXT(num_pcie) NEXT(num_oob) NEXT(node_type_extended)
  NEXT(AnycastLidCap) NEXT(AnycastLIDTop) NEXT(asic_max_planes) NEXT(link_auto_retrain_en)
  NEXT(multiplane_asymmetry_en)
}

template <class Visit>
constexpr void WalkFields(ib_private_lft_info& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(Active_Mode) NEXT(ModeCap) NEXT(NumPLFTs) NEXT(NoFallback)
  NEXT(Description_Mode[0].NumOfLFTables) NEXT(Description_Mode[0].LFTableSize)
  NEXT(Description_Mode[1].NumOfLFTables) NEXT(Description_Mode[1].LFTableSize)
  NEXT(Description_Mode[2].NumOfLFTables) NEXT(Description_Mode[2].LFTableSize)
  NEXT(Description_Mode[3].NumOfLFTables) NEXT(Description_Mode[3].LFTableSize)
}

template <class Visit>
constexpr void WalkFields(adaptive_routing_info& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(e) NEXT(is_arn_sup) NEXT(is_frn_sup) NEXT(is_fr_sup) NEXT(fr_enabled) NEXT(rn_xmit_enabled)
  NEXT(is_ar_trials_supported) NEXT(sub_grps_active) NEXT(group_table_copy_sup)
  NEXT(direction_num_sup) NEXT(no_fallback) NEXT(is4_mode) NEXT(glb_groups) NEXT(by_sl_cap)
  NEXT(by_sl_en) NEXT(by_transp_cap) NEXT(dyn_cap_calc_sup) NEXT(group_cap) NEXT(group_top)
  NEXT(group_table_cap) NEXT(string_width_cap) NEXT(ar_version_cap) NEXT(rn_version_cap)
  NEXT(sub_grps_supported) NEXT(enable_by_sl_mask) NEXT(by_transport_disable)
  NEXT(ageing_time_value) NEXT(pfrn_enabled) NEXT(by_vl_en) NEXT(whbf_en) NEXT(by_sl_hbf_en)
  NEXT(is_pfrn_supported) NEXT(by_vl_cap) NEXT(is_bth_dqp_hash_supported)
  NEXT(is_dceth_hash_supported) NEXT(is_symmetric_hash_supported) NEXT(is_whbf_supported)
  NEXT(is_hbf_supported) NEXT(enable_by_sl_mask_hbf) NEXT(whbf_granularity)
  NEXT(enable_by_vl_mask) NEXT(sl_vl_mode) NEXT(enable_by_vl_mask_hbf)
}

template <class Visit>
constexpr void WalkFields(HWInfo_Block_Element& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(DeviceID) NEXT(DeviceHWRevision) NEXT(pvs) NEXT(technology) NEXT(num_ports) NEXT(hw_dev_id)
  NEXT(cpo_indication) NEXT(ga_valid) NEXT(development) NEXT(manufacturing_base_mac_32_47)
  NEXT(ga) NEXT(chip_type) NEXT(manufacturing_base_mac_0_31) NEXT(UpTime)
}

template <class Visit>
constexpr void WalkFields(FWInfo_Block_Element& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(SubMinor) NEXT(Minor) NEXT(Major) NEXT(secure_fw) NEXT(signed_fw) NEXT(debug_fw)
  NEXT(dev_fw) NEXT(BuildID) NEXT(Year) NEXT(Day) NEXT(Month) NEXT(Hour) NEXT(PSID.PSID)
  NEXT(INI_File_Version) NEXT(Extended_Major) NEXT(Extended_Minor) NEXT(Extended_SubMinor)
  NEXT(isfu_major) NEXT(life_cycle) NEXT(sec_boot)
}

template <class Visit>
constexpr void WalkFields(SWInfo_Block_Element& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(SubMinor) NEXT(Minor) NEXT(Major) NEXT(Reserved8) NEXT(Reserved_Dword)
}

template <class Visit>
constexpr void WalkFields(GeneralInfoCapabilityMask& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(capability0) NEXT(capability1) NEXT(capability2) NEXT(capability3)
}

template <class Visit>
constexpr void WalkFields(CC_EnhancedCongestionInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(ver1) NEXT(ver0) NEXT(CC_Capability_Mask)
}

template <class Visit>
constexpr void WalkFields(CC_CongestionSwitchGeneralSettings& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(aqs_time) NEXT(aqs_weight) NEXT(en) NEXT(cap_total_buffer_size)
  NEXT(cap_cc_profile_step_size)
}

template <class Visit>
constexpr void WalkFields(SMP_TarnExtPortInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(LinkSpeedSupported) NEXT(CapabilityMask) NEXT(FECModeActive) NEXT(RetransMode)
  NEXT(FDR10FECModeSupported) NEXT(FDRFECModeSupported) NEXT(EDR20FECModeSupported)
  NEXT(EDRFECModeSupported) NEXT(FDR10RetranSupported) NEXT(FDRRetranSupported)
  NEXT(EDR20RetranSupported) NEXT(EDRRetranSupported) NEXT(SpecialPortType) NEXT(IsSpecialPort)
  NEXT(SpecialPortCapabilityMask) NEXT(is_fnm_port) NEXT(HDRFECModeSupported)
  NEXT(NDRFECModeSupported) NEXT(XDRFECModeSupported)
}

// clang-format on
#undef NEXT

}  // namespace simulator
}  // namespace fabscan

#endif
