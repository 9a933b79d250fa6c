#ifndef INFINIBAND_FABSCAN_TYPES_H
#define INFINIBAND_FABSCAN_TYPES_H

#include <sys/types.h>

/// The attribute records: plain structures of unpacked fields, one for each attribute that the
/// tool collects. A field holds the device's value in the host's byte order; fields narrower than
/// eight bits on the wire use a whole byte here.

/// A device's 128 capability bits: bit b is bit b mod 32 of word b div 32.
struct capability_mask {
  u_int32_t mask[4];
};
typedef struct capability_mask capability_mask_t;

// ---------- Node attributes ----------

/// SMP NodeInfo.
struct SMP_NodeInfo {
  u_int8_t NumPorts;
  u_int8_t NodeType;
  u_int8_t ClassVersion;
  u_int8_t BaseVersion;
  u_int64_t SystemImageGUID;
  u_int64_t NodeGUID;
  u_int64_t PortGUID;
  u_int16_t DeviceID;
  u_int16_t PartitionCap;
  u_int32_t revision;
  u_int32_t VendorID;
  u_int8_t LocalPortNum;
};

/// SMP SwitchInfo.
struct SMP_SwitchInfo {
  u_int16_t RandomFDBCap;
  u_int16_t LinearFDBCap;
  u_int16_t LinearFDBTop;
  u_int16_t MCastFDBCap;
  u_int8_t OptimizedSLVLMapping;
  u_int8_t PortStateChange;
  u_int8_t LifeTimeValue;
  u_int8_t DefMCastNotPriPort;
  u_int8_t DefMCastPriPort;
  u_int8_t DefPort;
  u_int16_t PartEnfCap;
  u_int16_t LidsPerPort;
  u_int16_t MCastFDBTop;
  u_int8_t ENP0;
  u_int8_t FilterRawOutbCap;
  u_int8_t FilterRawInbCap;
  u_int8_t OutbEnfCap;
  u_int8_t InbEnfCap;
};

/// SMP RouterInfo.
struct SMP_RouterInfo {
  u_int32_t CapabilityMask;
  u_int32_t NextHopTableCap;
  u_int32_t NextHopTableTop;
  u_int8_t AdjacentSiteLocalSubnetsTableCap;
  u_int8_t AdjacentSiteLocalSubnetsTableTop;
  u_int16_t table_changes_bitmask;
  u_int16_t ar_group_to_router_lid_table_cap;
  u_int8_t cap_supported_subnets;
  u_int16_t cap_router_lid;
  u_int8_t AdjacentSubnetsRouterLIDInfo;
  u_int8_t pfrn_rtr_en;
  u_int32_t global_router_lid_base;
  u_int16_t max_ar_group_id;
  u_int32_t global_router_lid_top;
  u_int32_t local_router_lid_base;
  u_int32_t local_router_lid_top;
};

/// Vendor-specific SMP ExtendedSwitchInfo.
struct SMP_ExtendedSwitchInfo {
  u_int8_t turbo_path_enable;
  u_int8_t turbo_path_cap;
  u_int8_t request_issu;
  u_int8_t approve_issu;
  u_int8_t end_to_end_timescale;
  u_int16_t req_delay;
  u_int8_t req_trig_window_cap;
  u_int8_t rst_trig_th_cap;
  u_int8_t set_trig_th_cap;
  u_int8_t req_delay_cap;
  u_int16_t rst_trig_th;
  u_int16_t set_trig_th;
  u_int16_t req_trig_window;
};

/// Vendor-specific SMP ExtendedNodeInfo.
struct ib_extended_node_info {
  u_int8_t sl2vl_cap;
  u_int8_t sl2vl_act;
  u_int8_t num_pcie;
  u_int8_t num_oob;
  u_int8_t node_type_extended;
  u_int8_t AnycastLidCap;
  u_int8_t AnycastLIDTop;
  u_int8_t asic_max_planes;
  u_int8_t link_auto_retrain_en;
  u_int8_t multiplane_asymmetry_en;
};

/// One mode of the private linear forwarding tables.
struct ib_description_mode {
  u_int8_t NumOfLFTables;
  u_int8_t LFTableSize;
};

/// Vendor-specific SMP PrivateLFTInfo.
struct ib_private_lft_info {
  u_int8_t Active_Mode;
  u_int8_t ModeCap;
  u_int8_t NumPLFTs;
  u_int8_t NoFallback;
  ib_description_mode Description_Mode[4];
};

/// Vendor-specific SMP AdaptiveRoutingInfo.
struct adaptive_routing_info {
  u_int8_t e;
  u_int8_t is_arn_sup;
  u_int8_t is_frn_sup;
  u_int8_t is_fr_sup;
  u_int8_t fr_enabled;
  u_int8_t rn_xmit_enabled;
  u_int8_t is_ar_trials_supported;
  u_int8_t sub_grps_active;
  u_int8_t group_table_copy_sup;
  u_int8_t direction_num_sup;
  u_int8_t no_fallback;
  u_int8_t is4_mode;
  u_int8_t glb_groups;
  u_int8_t by_sl_cap;
  u_int8_t by_sl_en;
  u_int8_t by_transp_cap;
  u_int8_t dyn_cap_calc_sup;
  u_int16_t group_cap;
  u_int16_t group_top;
  u_int8_t group_table_cap;
  u_int8_t string_width_cap;
  u_int8_t ar_version_cap;
  u_int8_t rn_version_cap;
  u_int8_t sub_grps_supported;
  u_int16_t enable_by_sl_mask;
  u_int8_t by_transport_disable;
  u_int32_t ageing_time_value;
  u_int8_t pfrn_enabled;
  u_int8_t by_vl_en;
  u_int8_t whbf_en;
  u_int8_t by_sl_hbf_en;
  u_int8_t is_pfrn_supported;
  u_int8_t by_vl_cap;
  u_int8_t is_bth_dqp_hash_supported;
  u_int8_t is_dceth_hash_supported;
  u_int8_t is_symmetric_hash_supported;
  u_int8_t is_whbf_supported;
  u_int8_t is_hbf_supported;
  u_int16_t enable_by_sl_mask_hbf;
  u_int8_t whbf_granularity;
  u_int16_t enable_by_vl_mask;
  u_int8_t sl_vl_mode;
  u_int16_t enable_by_vl_mask_hbf;
};

/// Hardware block of GeneralInfo.
struct HWInfo_Block_Element {
  u_int16_t DeviceID;
  u_int16_t DeviceHWRevision;
  u_int8_t pvs;
  u_int8_t technology;
  u_int8_t num_ports;
  u_int16_t hw_dev_id;
  u_int8_t cpo_indication;
  u_int8_t ga_valid;
  u_int8_t development;
  u_int16_t manufacturing_base_mac_32_47;
  u_int8_t ga;
  u_int8_t chip_type;
  u_int32_t manufacturing_base_mac_0_31;
  u_int32_t UpTime;
};

/// Parameter-set identification: 16 bytes, zero-padded.
struct PSID_Block_Element {
  u_int8_t PSID[16];
};

/// Firmware block of GeneralInfo.
struct FWInfo_Block_Element {
  u_int8_t SubMinor;
  u_int8_t Minor;
  u_int8_t Major;
  u_int8_t secure_fw;
  u_int8_t signed_fw;
  u_int8_t debug_fw;
  u_int8_t dev_fw;
  u_int32_t BuildID;
  u_int16_t Year;
  u_int8_t Day;
  u_int8_t Month;
  u_int16_t Hour;
  PSID_Block_Element PSID;
  u_int32_t INI_File_Version;
  u_int32_t Extended_Major;
  u_int32_t Extended_Minor;
  u_int32_t Extended_SubMinor;
  u_int16_t isfu_major;
  u_int8_t life_cycle;
  u_int8_t sec_boot;
};

/// Software block of GeneralInfo.
struct SWInfo_Block_Element {
  u_int8_t SubMinor;
  u_int8_t Minor;
  u_int8_t Major;
  u_int8_t Reserved8;
  u_int32_t Reserved_Dword[7];
};

/// A capability mask as GeneralInfo carries it.
struct GeneralInfoCapabilityMask {
  u_int32_t capability0;
  u_int32_t capability1;
  u_int32_t capability2;
  u_int32_t capability3;
};

/// Vendor-specific GMP GeneralInfo.
struct VendorSpec_GeneralInfo {
  HWInfo_Block_Element HWInfo;
  FWInfo_Block_Element FWInfo;
  SWInfo_Block_Element SWInfo;
  GeneralInfoCapabilityMask CapabilityMask;
};

/// Congestion control: EnhancedCongestionInfo.
struct CC_EnhancedCongestionInfo {
  u_int8_t ver1;
  u_int8_t ver0;
  u_int64_t CC_Capability_Mask;
};

/// Congestion control: general settings of a switch.
struct CC_CongestionSwitchGeneralSettings {
  u_int8_t aqs_time;
  u_int8_t aqs_weight;
  u_int8_t en;
  u_int32_t cap_total_buffer_size;
  u_int8_t cap_cc_profile_step_size;
};

/// ClassPortInfo of a management class; the store holds the reduction manager's.
struct IB_ClassPortInfo {
  u_int16_t CapMsk;
  u_int8_t ClassVersion;
  u_int8_t BaseVersion;
  u_int8_t RespTimeValue;
  u_int32_t CapMsk2;
  u_int64_t RedirectGID[2];
  u_int32_t RedirectFL;
  u_int8_t RedirectSL;
  u_int8_t RedirectTC;
  u_int16_t RedirectPKey;
  u_int16_t RedirectLID;
  u_int32_t RedirectQP;
  u_int32_t RedirectQKey;
  u_int32_t TrapGID[4];
  u_int32_t TrapFL;
  u_int8_t TrapSL;
  u_int8_t TrapTC;
  u_int16_t TrapPKey;
  u_int16_t TrapLID;
  u_int32_t TrapQP;
  u_int8_t TrapHL;
  u_int32_t TrapQKey;
};

/// Reduction capabilities and configuration of a switch.
struct WrenReductionInfo {
  u_int32_t capability_mask;
  u_int16_t hbf_group_cap;
  u_int16_t reduction_fdb_cap;
  u_int16_t reduction_fdb_top;
  u_int16_t num_of_up_ports;
  u_int16_t num_of_down_ports;
  u_int16_t pull_reduction_fdb_base;
  u_int8_t mcto_timer;
  u_int8_t penalty_box_change_trap_disable;
  u_int8_t push_chunk_size_align_mode;
  u_int8_t push_rand_hbr_port_opt_en;
  u_int8_t push_double_wr_opt_en;
  u_int8_t push_join_fail_timer;
  u_int16_t pull_reductions_alloc_resources;
  u_int16_t push_reductions_used_resources;
  u_int16_t push_reductions_alloc_resources;
  u_int16_t push_reduction_fdb_base;
  u_int16_t push_reduction_fdb_top;
  u_int16_t reductions_resources_cap;
  u_int16_t push_reduction_fdb_cap;
  u_int16_t magic_square_table_cap;
  u_int16_t reductions_resource_size;
  u_int8_t push_ack_coal_pkts_th;
  u_int16_t push_ack_coal_timeout;
};

// ---------- Port attributes ----------

/// SMP PortInfo. The management key is never collected, so the record has no field for it.
struct SMP_PortInfo {
  u_int64_t GIDPrefix;
  u_int16_t LID;
  u_int16_t MasterSMLID;
  u_int32_t CapMsk;
  u_int16_t DiagCode;
  u_int16_t MKeyLeasePeriod;
  u_int8_t LocalPortNum;
  u_int8_t LinkWidthEnabled;
  u_int8_t LinkWidthSup;
  u_int8_t LinkWidthActive;
  u_int8_t LinkSpeedSup;
  u_int8_t PortState;
  u_int8_t PortPhysicalState;
  u_int8_t LinkDownDefaultState;
  u_int8_t MKeyProtectBits;
  u_int8_t LMC;
  u_int8_t LinkSpeedActive;
  u_int8_t LinkSpeedEnabled;
  u_int8_t NeighborMTU;
  u_int8_t MasterSMSL;
  u_int8_t VLCap;
  u_int8_t InitType;
  u_int8_t VLHighLimit;
  u_int8_t VLArbitrationHighCap;
  u_int8_t VLArbitrationLowCap;
  u_int8_t InitTypeReply;
  u_int8_t MTUCap;
  u_int8_t VLStallCount;
  u_int8_t HOQLife;
  u_int8_t OperationalVLs;
  u_int8_t PartitionEnforcementInbound;
  u_int8_t PartitionEnforcementOutbound;
  u_int8_t FilterRawInbound;
  u_int8_t FilterRawOutbound;
  u_int16_t MKeyViolations;
  u_int16_t PKeyViolations;
  u_int16_t QKeyViolations;
  u_int8_t GUIDCap;
  u_int8_t ClientReregister;
  u_int8_t MulticastPKeyTrapSuppressionEnabled;
  u_int8_t SubnetTimeOut;
  u_int8_t RespTimeValue;
  u_int8_t LocalPhyErrors;
  u_int8_t OverrunErrors;
  u_int16_t MaxCreditHint;
  u_int32_t LinkRoundTripLatency;
  u_int8_t LinkSpeedExtActive2;
  u_int8_t LinkSpeedExtSup2;
  u_int8_t LinkSpeedExtEnabled2;
  u_int8_t LinkSpeedExtActive;
  u_int8_t LinkSpeedExtSup;
  u_int8_t LinkSpeedExtEnabled;
  u_int16_t CapMsk2;
};

/// SMP PortInfoExtended.
struct SMP_PortInfoExtended {
  u_int32_t CapMsk;
  u_int16_t FDRFECModeSupported;
  u_int16_t FECModeActive;
  u_int16_t EDRFECModeSupported;
  u_int16_t FDRFECModeEnabled;
  u_int16_t HDRFECModeSupported;
  u_int16_t EDRFECModeEnabled;
  u_int16_t NDRFECModeSupported;
  u_int16_t HDRFECModeEnabled;
  u_int16_t PartitionTop;
  u_int16_t NDRFECModeEnabled;
};

/// Vendor-specific SMP ExtendedPortInfo.
struct SMP_TarnExtPortInfo {
  u_int8_t LinkSpeedSupported;
  u_int16_t CapabilityMask;
  u_int8_t FECModeActive;
  u_int8_t RetransMode;
  u_int16_t FDR10FECModeSupported;
  u_int16_t FDRFECModeSupported;
  u_int16_t EDR20FECModeSupported;
  u_int16_t EDRFECModeSupported;
  u_int8_t FDR10RetranSupported;
  u_int8_t FDRRetranSupported;
  u_int8_t EDR20RetranSupported;
  u_int8_t EDRRetranSupported;
  u_int8_t SpecialPortType;
  u_int8_t IsSpecialPort;
  u_int8_t SpecialPortCapabilityMask;
  u_int8_t is_fnm_port;
  u_int16_t HDRFECModeSupported;
  u_int16_t NDRFECModeSupported;
  u_int16_t XDRFECModeSupported;
  u_int8_t LinkSpeedEnabled;
};

/// Reduction capabilities and configuration of a port.
struct WrenReductionPortInfo {
  u_int32_t capability_mask;
  u_int8_t exclude_include_self;
  u_int8_t port_direction_is_up;
  u_int8_t push_ack_coal_en;
  u_int8_t amap_skein_mode;
  u_int8_t amap_hshub_port_index;
  u_int8_t amap_hshub_index;
  u_int8_t amap_num_hshub_skein_ports;
  u_int8_t amap_num_hshubs;
  u_int8_t push_error0_cnt_type;
  u_int8_t push_error1_cnt_type;
};

/// One set of reduction counters of a port; a port has up to eight.
struct WrenReductionCounters {
  u_int16_t port_select;
  u_int8_t lean_pipe_select;
  u_int16_t mlid;
  u_int32_t counter_select;
  u_int64_t incoming_good_mc_read_req_pkt;
  u_int64_t incoming_good_mc_read_req_data;
  u_int64_t incoming_good_mc_write_req_pkt;
  u_int64_t incoming_good_mc_write_req_data;
  u_int64_t incoming_good_mc_read_resp_pkt;
  u_int64_t incoming_good_mc_read_resp_data;
  u_int64_t incoming_good_mc_write_resp_pkt;
  u_int64_t incoming_good_mc_write_resp_data;
  u_int64_t generated_mc_read_resp_pkt;
  u_int64_t generated_mc_read_resp_data;
  u_int64_t generated_mc_write_resp_pkt;
  u_int64_t generated_mc_write_resp_data;
  u_int64_t dropped_pkt;
  u_int64_t trapped_pkt;
  u_int64_t wren_reduction_errors;
  u_int64_t wren_reduction_penalty_box_errors;
  u_int64_t port_wrr_local_alm_id_allocations;
  u_int64_t port_wrr_global_alm_id_allocations;
  u_int64_t sent_good_mc_pull_write_req_packet;
  u_int64_t sent_good_mc_pull_read_req_packet;
};

/// A monitor configuration of a port. Its selector is 0 for the reduction counters and 1 for the
/// push reduction counters.
struct WrenReductionConfigureMLIDMonitors {
  u_int8_t selector;
};

/// Push reduction counters of a port.
struct WrenPushReductionCounters {
  u_int16_t port_select;
  u_int16_t mlid;
  u_int32_t counter_select;
  u_int64_t incoming_good_push_gpu_ack_packets;
  u_int64_t incoming_good_push_gpu_ack_data;
  u_int64_t incoming_good_push_gpu_wr_req_packets;
  u_int64_t incoming_good_push_gpu_wr_req_data;
  u_int64_t generated_push_switch_ack_packets;
  u_int64_t generated_push_switch_ack_data;
  u_int64_t generated_push_switch_wr_req_packets;
  u_int64_t dropped_push_packets;
  u_int64_t trapped_push_packets;
  u_int64_t jfto_event;
  u_int64_t sent_push_switch_wr_req_packets;
  u_int64_t reduction_errors;
  u_int64_t dup_error;
  u_int64_t mlid_error;
  u_int64_t ingress_amap_errors;
  u_int64_t alm_error_type0;
  u_int64_t alm_error_type1;
};

// ---------- Which records there are ----------

namespace fabscan {

/// A list of record types.
template <class... Records>
struct RecordList {};

/// The records of nodes, in the order in which snapshots hold them.
using NodeRecords =
    RecordList<SMP_NodeInfo, SMP_SwitchInfo, SMP_RouterInfo, SMP_ExtendedSwitchInfo,
               ib_extended_node_info, ib_private_lft_info, adaptive_routing_info,
               VendorSpec_GeneralInfo, CC_EnhancedCongestionInfo,
               CC_CongestionSwitchGeneralSettings, IB_ClassPortInfo, WrenReductionInfo>;

/// The records that a port has once, in the same order.
using PortRecords = RecordList<SMP_PortInfo, SMP_PortInfoExtended, SMP_TarnExtPortInfo,
                               WrenReductionPortInfo, WrenPushReductionCounters>;

/// The records of which a port has several: counter sets by index, monitors by selector.
using IndexedPortRecords = RecordList<WrenReductionCounters, WrenReductionConfigureMLIDMonitors>;

}  // namespace fabscan

#endif
