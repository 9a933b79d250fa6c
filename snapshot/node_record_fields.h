#ifndef FABSCAN_SNAPSHOT_NODE_RECORD_FIELDS_H
#define FABSCAN_SNAPSHOT_NODE_RECORD_FIELDS_H

#include "snapshot/record_table.h"

// The fields of the node records, in declared order. DUMPED: the generator writes the field, so a
// snapshot must have it. KEPT: a snapshot carries it along; where it is missing, it is 0.

namespace fabscan {

// clang-format off
#define DUMPED(type, field) MakeRow<type, decltype(Record::field)>(#field, offsetof(Record, field), true)
#define KEPT(type, field) MakeRow<type, decltype(Record::field)>(#field, offsetof(Record, field), false)

template <>
struct FieldsOf<SMP_NodeInfo> {
  using Record = SMP_NodeInfo;
  static constexpr std::string_view kName = "SMP_NodeInfo";
  static constexpr FieldRow kRows[] = {
      KEPT(  u_int8_t,  NumPorts),
      KEPT(  u_int8_t,  NodeType),
      DUMPED(u_int8_t,  ClassVersion),
      DUMPED(u_int8_t,  BaseVersion),
      KEPT(  u_int64_t, SystemImageGUID),
      KEPT(  u_int64_t, NodeGUID),
      KEPT(  u_int64_t, PortGUID),
      DUMPED(u_int16_t, DeviceID),
      DUMPED(u_int16_t, PartitionCap),
      DUMPED(u_int32_t, revision),
      DUMPED(u_int32_t, VendorID),
      KEPT(  u_int8_t,  LocalPortNum),
  };
};

template <>
struct FieldsOf<SMP_SwitchInfo> {
  using Record = SMP_SwitchInfo;
  static constexpr std::string_view kName = "SMP_SwitchInfo";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int16_t, RandomFDBCap),
      DUMPED(u_int16_t, LinearFDBCap),
      KEPT(  u_int16_t, LinearFDBTop),
      DUMPED(u_int16_t, MCastFDBCap),
      DUMPED(u_int8_t,  OptimizedSLVLMapping),
      KEPT(  u_int8_t,  PortStateChange),
      KEPT(  u_int8_t,  LifeTimeValue),
      KEPT(  u_int8_t,  DefMCastNotPriPort),
      KEPT(  u_int8_t,  DefMCastPriPort),
      KEPT(  u_int8_t,  DefPort),
      DUMPED(u_int16_t, PartEnfCap),
      DUMPED(u_int16_t, LidsPerPort),
      KEPT(  u_int16_t, MCastFDBTop),
      DUMPED(u_int8_t,  ENP0),
      DUMPED(u_int8_t,  FilterRawOutbCap),
      DUMPED(u_int8_t,  FilterRawInbCap),
      DUMPED(u_int8_t,  OutbEnfCap),
      DUMPED(u_int8_t,  InbEnfCap),
  };
};

template <>
struct FieldsOf<SMP_RouterInfo> {
  using Record = SMP_RouterInfo;
  static constexpr std::string_view kName = "SMP_RouterInfo";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int32_t, CapabilityMask),
      DUMPED(u_int32_t, NextHopTableCap),
      KEPT(  u_int32_t, NextHopTableTop),
      DUMPED(u_int8_t,  AdjacentSiteLocalSubnetsTableCap),
      KEPT(  u_int8_t,  AdjacentSiteLocalSubnetsTableTop),
      KEPT(  u_int16_t, table_changes_bitmask),
      DUMPED(u_int16_t, ar_group_to_router_lid_table_cap),
      DUMPED(u_int8_t,  cap_supported_subnets),
      DUMPED(u_int16_t, cap_router_lid),
      KEPT(  u_int8_t,  AdjacentSubnetsRouterLIDInfo),
      KEPT(  u_int8_t,  pfrn_rtr_en),
      KEPT(  u_int32_t, global_router_lid_base),
      KEPT(  u_int16_t, max_ar_group_id),
      KEPT(  u_int32_t, global_router_lid_top),
      KEPT(  u_int32_t, local_router_lid_base),
      KEPT(  u_int32_t, local_router_lid_top),
  };
};

template <>
struct FieldsOf<SMP_ExtendedSwitchInfo> {
  using Record = SMP_ExtendedSwitchInfo;
  static constexpr std::string_view kName = "SMP_ExtendedSwitchInfo";
  static constexpr FieldRow kRows[] = {
      KEPT(  u_int8_t,  turbo_path_enable),
      DUMPED(u_int8_t,  turbo_path_cap),
      KEPT(  u_int8_t,  request_issu),
      KEPT(  u_int8_t,  approve_issu),
      KEPT(  u_int8_t,  end_to_end_timescale),
      KEPT(  u_int16_t, req_delay),
      KEPT(  u_int8_t,  req_trig_window_cap),
      KEPT(  u_int8_t,  rst_trig_th_cap),
      KEPT(  u_int8_t,  set_trig_th_cap),
      KEPT(  u_int8_t,  req_delay_cap),
      KEPT(  u_int16_t, rst_trig_th),
      KEPT(  u_int16_t, set_trig_th),
      KEPT(  u_int16_t, req_trig_window),
  };
};

template <>
struct FieldsOf<ib_extended_node_info> {
  using Record = ib_extended_node_info;
  static constexpr std::string_view kName = "ib_extended_node_info";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int8_t, sl2vl_cap),
      KEPT(  u_int8_t, sl2vl_act),
      DUMPED(u_int8_t, num_pcie),
      DUMPED(u_int8_t, num_oob),
      DUMPED(u_int8_t, node_type_extended),
      DUMPED(u_int8_t, AnycastLidCap),
      KEPT(  u_int8_t, AnycastLIDTop),
      DUMPED(u_int8_t, asic_max_planes),
      DUMPED(u_int8_t, link_auto_retrain_en),
      DUMPED(u_int8_t, multiplane_asymmetry_en),
  };
};

template <>
struct FieldsOf<ib_description_mode> {
  using Record = ib_description_mode;
  static constexpr std::string_view kName = "ib_description_mode";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int8_t, NumOfLFTables),
      DUMPED(u_int8_t, LFTableSize),
  };
};

template <>
struct FieldsOf<ib_private_lft_info> {
  using Record = ib_private_lft_info;
  static constexpr std::string_view kName = "ib_private_lft_info";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int8_t,               Active_Mode),
      DUMPED(u_int8_t,               ModeCap),
      DUMPED(u_int8_t,               NumPLFTs),
      DUMPED(u_int8_t,               NoFallback),
      DUMPED(ib_description_mode[4], Description_Mode),
  };
};

template <>
struct FieldsOf<adaptive_routing_info> {
  using Record = adaptive_routing_info;
  static constexpr std::string_view kName = "adaptive_routing_info";
  static constexpr FieldRow kRows[] = {
      KEPT(  u_int8_t,  e),
      DUMPED(u_int8_t,  is_arn_sup),
      DUMPED(u_int8_t,  is_frn_sup),
      DUMPED(u_int8_t,  is_fr_sup),
      KEPT(  u_int8_t,  fr_enabled),
      KEPT(  u_int8_t,  rn_xmit_enabled),
      DUMPED(u_int8_t,  is_ar_trials_supported),
      KEPT(  u_int8_t,  sub_grps_active),
      DUMPED(u_int8_t,  group_table_copy_sup),
      DUMPED(u_int8_t,  direction_num_sup),
      KEPT(  u_int8_t,  no_fallback),
      DUMPED(u_int8_t,  is4_mode),
      DUMPED(u_int8_t,  glb_groups),
      DUMPED(u_int8_t,  by_sl_cap),
      KEPT(  u_int8_t,  by_sl_en),
      DUMPED(u_int8_t,  by_transp_cap),
      DUMPED(u_int8_t,  dyn_cap_calc_sup),
      DUMPED(u_int16_t, group_cap),
      KEPT(  u_int16_t, group_top),
      DUMPED(u_int8_t,  group_table_cap),
      DUMPED(u_int8_t,  string_width_cap),
      DUMPED(u_int8_t,  ar_version_cap),
      DUMPED(u_int8_t,  rn_version_cap),
      DUMPED(u_int8_t,  sub_grps_supported),
      KEPT(  u_int16_t, enable_by_sl_mask),
      KEPT(  u_int8_t,  by_transport_disable),
      KEPT(  u_int32_t, ageing_time_value),
      KEPT(  u_int8_t,  pfrn_enabled),
      KEPT(  u_int8_t,  by_vl_en),
      KEPT(  u_int8_t,  whbf_en),
      KEPT(  u_int8_t,  by_sl_hbf_en),
      DUMPED(u_int8_t,  is_pfrn_supported),
      KEPT(  u_int8_t,  by_vl_cap),
      DUMPED(u_int8_t,  is_bth_dqp_hash_supported),
      DUMPED(u_int8_t,  is_dceth_hash_supported),
      DUMPED(u_int8_t,  is_symmetric_hash_supported),
      DUMPED(u_int8_t,  is_whbf_supported),
      DUMPED(u_int8_t,  is_hbf_supported),
      KEPT(  u_int16_t, enable_by_sl_mask_hbf),
      KEPT(  u_int8_t,  whbf_granularity),
      KEPT(  u_int16_t, enable_by_vl_mask),
      KEPT(  u_int8_t,  sl_vl_mode),
      KEPT(  u_int16_t, enable_by_vl_mask_hbf),
  };
};

template <>
struct FieldsOf<HWInfo_Block_Element> {
  using Record = HWInfo_Block_Element;
  static constexpr std::string_view kName = "HWInfo_Block_Element";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int16_t, DeviceID),
      DUMPED(u_int16_t, DeviceHWRevision),
      DUMPED(u_int8_t,  pvs),
      DUMPED(u_int8_t,  technology),
      DUMPED(u_int8_t,  num_ports),
      DUMPED(u_int16_t, hw_dev_id),
      KEPT(  u_int8_t,  cpo_indication),
      KEPT(  u_int8_t,  ga_valid),
      KEPT(  u_int8_t,  development),
      KEPT(  u_int16_t, manufacturing_base_mac_32_47),
      KEPT(  u_int8_t,  ga),
      KEPT(  u_int8_t,  chip_type),
      KEPT(  u_int32_t, manufacturing_base_mac_0_31),
      KEPT(  u_int32_t, UpTime),
  };
};

template <>
struct FieldsOf<PSID_Block_Element> {
  using Record = PSID_Block_Element;
  static constexpr std::string_view kName = "PSID_Block_Element";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int8_t[16], PSID),
  };
};

template <>
struct FieldsOf<FWInfo_Block_Element> {
  using Record = FWInfo_Block_Element;
  static constexpr std::string_view kName = "FWInfo_Block_Element";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int8_t,           SubMinor),
      DUMPED(u_int8_t,           Minor),
      DUMPED(u_int8_t,           Major),
      KEPT(  u_int8_t,           secure_fw),
      KEPT(  u_int8_t,           signed_fw),
      KEPT(  u_int8_t,           debug_fw),
      KEPT(  u_int8_t,           dev_fw),
      DUMPED(u_int32_t,          BuildID),
      KEPT(  u_int16_t,          Year),
      KEPT(  u_int8_t,           Day),
      KEPT(  u_int8_t,           Month),
      KEPT(  u_int16_t,          Hour),
      DUMPED(PSID_Block_Element, PSID),
      DUMPED(u_int32_t,          INI_File_Version),
      DUMPED(u_int32_t,          Extended_Major),
      DUMPED(u_int32_t,          Extended_Minor),
      DUMPED(u_int32_t,          Extended_SubMinor),
      DUMPED(u_int16_t,          isfu_major),
      KEPT(  u_int8_t,           life_cycle),
      DUMPED(u_int8_t,           sec_boot),
  };
};

template <>
struct FieldsOf<SWInfo_Block_Element> {
  using Record = SWInfo_Block_Element;
  static constexpr std::string_view kName = "SWInfo_Block_Element";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int8_t,     SubMinor),
      DUMPED(u_int8_t,     Minor),
      DUMPED(u_int8_t,     Major),
      KEPT(  u_int8_t,     Reserved8),
      KEPT(  u_int32_t[7], Reserved_Dword),
  };
};

template <>
struct FieldsOf<GeneralInfoCapabilityMask> {
  using Record = GeneralInfoCapabilityMask;
  static constexpr std::string_view kName = "GeneralInfoCapabilityMask";
  static constexpr FieldRow kRows[] = {
      KEPT(  u_int32_t, capability0),
      KEPT(  u_int32_t, capability1),
      KEPT(  u_int32_t, capability2),
      KEPT(  u_int32_t, capability3),
  };
};

template <>
struct FieldsOf<VendorSpec_GeneralInfo> {
  using Record = VendorSpec_GeneralInfo;
  static constexpr std::string_view kName = "VendorSpec_GeneralInfo";
  static constexpr FieldRow kRows[] = {
      DUMPED(HWInfo_Block_Element,      HWInfo),
      DUMPED(FWInfo_Block_Element,      FWInfo),
      DUMPED(SWInfo_Block_Element,      SWInfo),
      KEPT(  GeneralInfoCapabilityMask, CapabilityMask),
  };
};

template <>
struct FieldsOf<CC_EnhancedCongestionInfo> {
  using Record = CC_EnhancedCongestionInfo;
  static constexpr std::string_view kName = "CC_EnhancedCongestionInfo";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int8_t,  ver1),
      DUMPED(u_int8_t,  ver0),
      DUMPED(u_int64_t, CC_Capability_Mask),
  };
};

template <>
struct FieldsOf<CC_CongestionSwitchGeneralSettings> {
  using Record = CC_CongestionSwitchGeneralSettings;
  static constexpr std::string_view kName = "CC_CongestionSwitchGeneralSettings";
  static constexpr FieldRow kRows[] = {
      KEPT(  u_int8_t,  aqs_time),
      KEPT(  u_int8_t,  aqs_weight),
      KEPT(  u_int8_t,  en),
      DUMPED(u_int32_t, cap_total_buffer_size),
      DUMPED(u_int8_t,  cap_cc_profile_step_size),
  };
};

template <>
struct FieldsOf<IB_ClassPortInfo> {
  using Record = IB_ClassPortInfo;
  static constexpr std::string_view kName = "IB_ClassPortInfo";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int16_t,    CapMsk),
      DUMPED(u_int8_t,     ClassVersion),
      DUMPED(u_int8_t,     BaseVersion),
      DUMPED(u_int8_t,     RespTimeValue),
      DUMPED(u_int32_t,    CapMsk2),
      DUMPED(u_int64_t[2], RedirectGID),
      DUMPED(u_int32_t,    RedirectFL),
      DUMPED(u_int8_t,     RedirectSL),
      DUMPED(u_int8_t,     RedirectTC),
      DUMPED(u_int16_t,    RedirectPKey),
      DUMPED(u_int16_t,    RedirectLID),
      DUMPED(u_int32_t,    RedirectQP),
      DUMPED(u_int32_t,    RedirectQKey),
      KEPT(  u_int32_t[4], TrapGID),
      KEPT(  u_int32_t,    TrapFL),
      KEPT(  u_int8_t,     TrapSL),
      KEPT(  u_int8_t,     TrapTC),
      KEPT(  u_int16_t,    TrapPKey),
      KEPT(  u_int16_t,    TrapLID),
      KEPT(  u_int32_t,    TrapQP),
      KEPT(  u_int8_t,     TrapHL),
      KEPT(  u_int32_t,    TrapQKey),
  };
};

template <>
struct FieldsOf<WrenReductionInfo> {
  using Record = WrenReductionInfo;
  static constexpr std::string_view kName = "WrenReductionInfo";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int32_t, capability_mask),
      DUMPED(u_int16_t, hbf_group_cap),
      DUMPED(u_int16_t, reduction_fdb_cap),
      KEPT(  u_int16_t, reduction_fdb_top),
      KEPT(  u_int16_t, num_of_up_ports),
      KEPT(  u_int16_t, num_of_down_ports),
      KEPT(  u_int16_t, pull_reduction_fdb_base),
      KEPT(  u_int8_t,  mcto_timer),
      KEPT(  u_int8_t,  penalty_box_change_trap_disable),
      KEPT(  u_int8_t,  push_chunk_size_align_mode),
      KEPT(  u_int8_t,  push_rand_hbr_port_opt_en),
      KEPT(  u_int8_t,  push_double_wr_opt_en),
      KEPT(  u_int8_t,  push_join_fail_timer),
      KEPT(  u_int16_t, pull_reductions_alloc_resources),
      KEPT(  u_int16_t, push_reductions_used_resources),
      KEPT(  u_int16_t, push_reductions_alloc_resources),
      KEPT(  u_int16_t, push_reduction_fdb_base),
      KEPT(  u_int16_t, push_reduction_fdb_top),
      KEPT(  u_int16_t, reductions_resources_cap),
      KEPT(  u_int16_t, push_reduction_fdb_cap),
      KEPT(  u_int16_t, magic_square_table_cap),
      KEPT(  u_int16_t, reductions_resource_size),
      KEPT(  u_int8_t,  push_ack_coal_pkts_th),
      KEPT(  u_int16_t, push_ack_coal_timeout),
  };
};

#undef KEPT
#undef DUMPED
// clang-format on

}  // namespace fabscan

#endif
