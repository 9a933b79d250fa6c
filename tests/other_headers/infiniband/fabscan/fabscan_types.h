#ifndef OTHER_HEADERS_FABSCAN_TYPES_H
#define OTHER_HEADERS_FABSCAN_TYPES_H

#include <sys/types.h>

// The attribute records with members in an order of their own: nothing that reads them may depend
// on how they are laid out.

// Not zero where nobody writes zeros.
struct capability_mask {
  capability_mask() : mask{1, 1, 1, 1} {}
  capability_mask(const u_int32_t (&words)[4]) : mask{words[0], words[1], words[2], words[3]} {}

  u_int32_t mask[4];
};

typedef capability_mask capability_mask_t;

struct SMP_NodeInfo {
  u_int64_t NodeGUID, PortGUID, SystemImageGUID;
  u_int32_t revision, VendorID;
  u_int16_t DeviceID, PartitionCap;
  u_int8_t BaseVersion, ClassVersion, LocalPortNum, NodeType, NumPorts;
};

struct SMP_SwitchInfo {
  u_int16_t LidsPerPort, LinearFDBCap, LinearFDBTop, MCastFDBCap, MCastFDBTop, PartEnfCap,
      RandomFDBCap;
  u_int8_t DefMCastNotPriPort, DefMCastPriPort, DefPort, ENP0, FilterRawInbCap, FilterRawOutbCap,
      InbEnfCap, LifeTimeValue, OptimizedSLVLMapping, OutbEnfCap, PortStateChange;
};

struct SMP_RouterInfo {
  u_int32_t CapabilityMask, global_router_lid_base, global_router_lid_top, local_router_lid_base,
      local_router_lid_top, NextHopTableCap, NextHopTableTop;
  u_int16_t ar_group_to_router_lid_table_cap, cap_router_lid, max_ar_group_id,
      table_changes_bitmask;
  u_int8_t AdjacentSiteLocalSubnetsTableCap, AdjacentSiteLocalSubnetsTableTop,
      AdjacentSubnetsRouterLIDInfo, cap_supported_subnets, pfrn_rtr_en;
};

struct SMP_ExtendedSwitchInfo {
  u_int16_t req_delay, req_trig_window, rst_trig_th, set_trig_th;
  u_int8_t approve_issu, end_to_end_timescale, req_delay_cap, req_trig_window_cap, request_issu,
      rst_trig_th_cap, set_trig_th_cap, turbo_path_cap, turbo_path_enable;
};

struct ib_extended_node_info {
  u_int8_t AnycastLidCap, AnycastLIDTop, asic_max_planes, link_auto_retrain_en,
      multiplane_asymmetry_en, node_type_extended, num_oob, num_pcie, sl2vl_act, sl2vl_cap;
};

struct ib_description_mode {
  u_int8_t LFTableSize, NumOfLFTables;
};

struct ib_private_lft_info {
  u_int8_t Active_Mode, ModeCap, NoFallback, NumPLFTs;
  ib_description_mode Description_Mode[4];
};

struct adaptive_routing_info {
  u_int32_t ageing_time_value;
  u_int16_t enable_by_sl_mask, enable_by_sl_mask_hbf, enable_by_vl_mask, enable_by_vl_mask_hbf,
      group_cap, group_top;
  u_int8_t ar_version_cap, by_sl_cap, by_sl_en, by_sl_hbf_en, by_transp_cap, by_transport_disable,
      by_vl_cap, by_vl_en, direction_num_sup, dyn_cap_calc_sup, e, fr_enabled, glb_groups,
      group_table_cap, group_table_copy_sup, is4_mode, is_ar_trials_supported, is_arn_sup,
      is_bth_dqp_hash_supported, is_dceth_hash_supported, is_fr_sup, is_frn_sup, is_hbf_supported,
      is_pfrn_supported, is_symmetric_hash_supported, is_whbf_supported, no_fallback, pfrn_enabled,
      rn_version_cap, rn_xmit_enabled, sl_vl_mode, string_width_cap, sub_grps_active,
      sub_grps_supported, whbf_en, whbf_granularity;
};

struct HWInfo_Block_Element {
  u_int32_t manufacturing_base_mac_0_31, UpTime;
  u_int16_t DeviceHWRevision, DeviceID, hw_dev_id, manufacturing_base_mac_32_47;
  u_int8_t chip_type, cpo_indication, development, ga, ga_valid, num_ports, pvs, technology;
};

struct PSID_Block_Element {
  u_int8_t PSID[16];
};

struct FWInfo_Block_Element {
  u_int32_t BuildID, Extended_Major, Extended_Minor, Extended_SubMinor, INI_File_Version;
  u_int16_t Hour, isfu_major, Year;
  u_int8_t Day, debug_fw, dev_fw, life_cycle, Major, Minor, Month, sec_boot, secure_fw, signed_fw,
      SubMinor;
  PSID_Block_Element PSID;
};

struct SWInfo_Block_Element {
  u_int32_t Reserved_Dword[7];
  u_int8_t Major, Minor, Reserved8, SubMinor;
};

struct GeneralInfoCapabilityMask {
  u_int32_t capability0, capability1, capability2, capability3;
};

struct VendorSpec_GeneralInfo {
  HWInfo_Block_Element HWInfo;
  FWInfo_Block_Element FWInfo;
  SWInfo_Block_Element SWInfo;
  GeneralInfoCapabilityMask CapabilityMask;
};

struct CC_EnhancedCongestionInfo {
  u_int64_t CC_Capability_Mask;
  u_int8_t ver0, ver1;
};

struct CC_CongestionSwitchGeneralSettings {
  u_int32_t cap_total_buffer_size;
  u_int8_t aqs_time, aqs_weight, cap_cc_profile_step_size, en;
};

struct IB_ClassPortInfo {
  u_int64_t RedirectGID[2];
  u_int32_t CapMsk2, RedirectFL, RedirectQKey, RedirectQP, TrapFL, TrapGID[4], TrapQKey, TrapQP;
  u_int16_t CapMsk, RedirectLID, RedirectPKey, TrapLID, TrapPKey;
  u_int8_t BaseVersion, ClassVersion, RedirectSL, RedirectTC, RespTimeValue, TrapHL, TrapSL, TrapTC;
};

struct WrenReductionInfo {
  u_int32_t capability_mask;
  u_int16_t hbf_group_cap, magic_square_table_cap, num_of_down_ports, num_of_up_ports,
      pull_reduction_fdb_base, pull_reductions_alloc_resources, push_ack_coal_timeout,
      push_reduction_fdb_base, push_reduction_fdb_cap, push_reduction_fdb_top,
      push_reductions_alloc_resources, push_reductions_used_resources, reduction_fdb_cap,
      reduction_fdb_top, reductions_resource_size, reductions_resources_cap;
  u_int8_t mcto_timer, penalty_box_change_trap_disable, push_ack_coal_pkts_th,
      push_chunk_size_align_mode, push_double_wr_opt_en, push_join_fail_timer,
      push_rand_hbr_port_opt_en;
};

struct SMP_PortInfo {
  u_int64_t GIDPrefix;
  u_int32_t CapMsk, LinkRoundTripLatency;
  u_int16_t CapMsk2, DiagCode, LID, MasterSMLID, MaxCreditHint, MKeyLeasePeriod, MKeyViolations,
      PKeyViolations, QKeyViolations;
  u_int8_t ClientReregister, FilterRawInbound, FilterRawOutbound, GUIDCap, HOQLife, InitType,
      InitTypeReply, LinkDownDefaultState, LinkSpeedActive, LinkSpeedEnabled, LinkSpeedExtActive,
      LinkSpeedExtActive2, LinkSpeedExtEnabled, LinkSpeedExtEnabled2, LinkSpeedExtSup,
      LinkSpeedExtSup2, LinkSpeedSup, LinkWidthActive, LinkWidthEnabled, LinkWidthSup, LMC,
      LocalPhyErrors, LocalPortNum, MasterSMSL, MKeyProtectBits, MTUCap,
      MulticastPKeyTrapSuppressionEnabled, NeighborMTU, OperationalVLs, OverrunErrors,
      PartitionEnforcementInbound, PartitionEnforcementOutbound, PortPhysicalState, PortState,
      RespTimeValue, SubnetTimeOut, VLArbitrationHighCap, VLArbitrationLowCap, VLCap, VLHighLimit,
      VLStallCount;
};

struct SMP_PortInfoExtended {
  u_int32_t CapMsk;
  u_int16_t EDRFECModeEnabled, EDRFECModeSupported, FDRFECModeEnabled, FDRFECModeSupported,
      FECModeActive, HDRFECModeEnabled, HDRFECModeSupported, NDRFECModeEnabled, NDRFECModeSupported,
      PartitionTop;
};

struct SMP_TarnExtPortInfo {
  u_int16_t CapabilityMask, EDR20FECModeSupported, EDRFECModeSupported, FDR10FECModeSupported,
      FDRFECModeSupported, HDRFECModeSupported, NDRFECModeSupported, XDRFECModeSupported;
  u_int8_t EDR20RetranSupported, EDRRetranSupported, FDR10RetranSupported, FDRRetranSupported,
      FECModeActive, is_fnm_port, IsSpecialPort, LinkSpeedSupported, RetransMode,
      SpecialPortCapabilityMask, SpecialPortType;
};

struct WrenReductionPortInfo {
  u_int32_t capability_mask;
  u_int8_t amap_hshub_index, amap_hshub_port_index, amap_num_hshub_skein_ports, amap_num_hshubs,
      amap_skein_mode, exclude_include_self, port_direction_is_up, push_ack_coal_en,
      push_error0_cnt_type, push_error1_cnt_type;
};

struct WrenReductionCounters {
  u_int64_t dropped_pkt, generated_mc_read_resp_data, generated_mc_read_resp_pkt,
      generated_mc_write_resp_data, generated_mc_write_resp_pkt, incoming_good_mc_read_req_data,
      incoming_good_mc_read_req_pkt, incoming_good_mc_read_resp_data,
      incoming_good_mc_read_resp_pkt, incoming_good_mc_write_req_data,
      incoming_good_mc_write_req_pkt, incoming_good_mc_write_resp_data,
      incoming_good_mc_write_resp_pkt, port_wrr_global_alm_id_allocations,
      port_wrr_local_alm_id_allocations, sent_good_mc_pull_read_req_packet,
      sent_good_mc_pull_write_req_packet, trapped_pkt, wren_reduction_errors,
      wren_reduction_penalty_box_errors;
  u_int32_t counter_select;
  u_int16_t mlid, port_select;
  u_int8_t lean_pipe_select;
};

struct WrenReductionConfigureMLIDMonitors {
  u_int8_t selector;
};

struct WrenPushReductionCounters {
  u_int64_t alm_error_type0, alm_error_type1, dropped_push_packets, dup_error,
      generated_push_switch_ack_data, generated_push_switch_ack_packets,
      generated_push_switch_wr_req_packets, incoming_good_push_gpu_ack_data,
      incoming_good_push_gpu_ack_packets, incoming_good_push_gpu_wr_req_data,
      incoming_good_push_gpu_wr_req_packets, ingress_amap_errors, jfto_event, mlid_error,
      reduction_errors, sent_push_switch_wr_req_packets, trapped_push_packets;
  u_int32_t counter_select;
  u_int16_t mlid, port_select;
};

#endif
