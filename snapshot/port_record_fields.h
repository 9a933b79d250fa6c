#ifndef FABSCAN_SNAPSHOT_PORT_RECORD_FIELDS_H
#define FABSCAN_SNAPSHOT_PORT_RECORD_FIELDS_H

#include "snapshot/record_table.h"

// The fields of the port records, in declared order. DUMPED: the generator writes the field, so a
// snapshot must have it. KEPT: a snapshot carries it along; where it is missing, it is 0.

namespace fabscan {

// clang-format off
#define DUMPED(type, field) MakeRow<type, decltype(Record::field)>(#field, offsetof(Record, field), true)
#define KEPT(type, field) MakeRow<type, decltype(Record::field)>(#field, offsetof(Record, field), false)

template <>
struct FieldsOf<SMP_PortInfo> {
  using Record = SMP_PortInfo;
  static constexpr std::string_view kName = "SMP_PortInfo";
  static constexpr FieldRow kRows[] = {
      KEPT(  u_int64_t, GIDPrefix),
      KEPT(  u_int16_t, LID),
      KEPT(  u_int16_t, MasterSMLID),
      DUMPED(u_int32_t, CapMsk),
      KEPT(  u_int16_t, DiagCode),
      KEPT(  u_int16_t, MKeyLeasePeriod),
      KEPT(  u_int8_t,  LocalPortNum),
      KEPT(  u_int8_t,  LinkWidthEnabled),
      DUMPED(u_int8_t,  LinkWidthSup),
      KEPT(  u_int8_t,  LinkWidthActive),
      DUMPED(u_int8_t,  LinkSpeedSup),
      KEPT(  u_int8_t,  PortState),
      KEPT(  u_int8_t,  PortPhysicalState),
      KEPT(  u_int8_t,  LinkDownDefaultState),
      KEPT(  u_int8_t,  MKeyProtectBits),
      KEPT(  u_int8_t,  LMC),
      KEPT(  u_int8_t,  LinkSpeedActive),
      KEPT(  u_int8_t,  LinkSpeedEnabled),
      KEPT(  u_int8_t,  NeighborMTU),
      KEPT(  u_int8_t,  MasterSMSL),
      KEPT(  u_int8_t,  VLCap),
      KEPT(  u_int8_t,  InitType),
      KEPT(  u_int8_t,  VLHighLimit),
      KEPT(  u_int8_t,  VLArbitrationHighCap),
      KEPT(  u_int8_t,  VLArbitrationLowCap),
      KEPT(  u_int8_t,  InitTypeReply),
      DUMPED(u_int8_t,  MTUCap),
      KEPT(  u_int8_t,  VLStallCount),
      KEPT(  u_int8_t,  HOQLife),
      KEPT(  u_int8_t,  OperationalVLs),
      KEPT(  u_int8_t,  PartitionEnforcementInbound),
      KEPT(  u_int8_t,  PartitionEnforcementOutbound),
      KEPT(  u_int8_t,  FilterRawInbound),
      KEPT(  u_int8_t,  FilterRawOutbound),
      KEPT(  u_int16_t, MKeyViolations),
      KEPT(  u_int16_t, PKeyViolations),
      KEPT(  u_int16_t, QKeyViolations),
      KEPT(  u_int8_t,  GUIDCap),
      KEPT(  u_int8_t,  ClientReregister),
      KEPT(  u_int8_t,  MulticastPKeyTrapSuppressionEnabled),
      KEPT(  u_int8_t,  SubnetTimeOut),
      KEPT(  u_int8_t,  RespTimeValue),
      KEPT(  u_int8_t,  LocalPhyErrors),
      KEPT(  u_int8_t,  OverrunErrors),
      KEPT(  u_int16_t, MaxCreditHint),
      KEPT(  u_int32_t, LinkRoundTripLatency),
      KEPT(  u_int8_t,  LinkSpeedExtActive2),
      DUMPED(u_int8_t,  LinkSpeedExtSup2),
      KEPT(  u_int8_t,  LinkSpeedExtEnabled2),
      KEPT(  u_int8_t,  LinkSpeedExtActive),
      DUMPED(u_int8_t,  LinkSpeedExtSup),
      KEPT(  u_int8_t,  LinkSpeedExtEnabled),
      DUMPED(u_int16_t, CapMsk2),
  };
};

template <>
struct FieldsOf<SMP_PortInfoExtended> {
  using Record = SMP_PortInfoExtended;
  static constexpr std::string_view kName = "SMP_PortInfoExtended";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int32_t, CapMsk),
      DUMPED(u_int16_t, FDRFECModeSupported),
      DUMPED(u_int16_t, FECModeActive),
      DUMPED(u_int16_t, EDRFECModeSupported),
      KEPT(  u_int16_t, FDRFECModeEnabled),
      DUMPED(u_int16_t, HDRFECModeSupported),
      KEPT(  u_int16_t, EDRFECModeEnabled),
      DUMPED(u_int16_t, NDRFECModeSupported),
      KEPT(  u_int16_t, HDRFECModeEnabled),
      KEPT(  u_int16_t, PartitionTop),
      KEPT(  u_int16_t, NDRFECModeEnabled),
  };
};

template <>
struct FieldsOf<SMP_TarnExtPortInfo> {
  using Record = SMP_TarnExtPortInfo;
  static constexpr std::string_view kName = "SMP_TarnExtPortInfo";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int8_t,  LinkSpeedSupported),
      DUMPED(u_int16_t, CapabilityMask),
      DUMPED(u_int8_t,  FECModeActive),
      DUMPED(u_int8_t,  RetransMode),
      DUMPED(u_int16_t, FDR10FECModeSupported),
      DUMPED(u_int16_t, FDRFECModeSupported),
      DUMPED(u_int16_t, EDR20FECModeSupported),
      DUMPED(u_int16_t, EDRFECModeSupported),
      DUMPED(u_int8_t,  FDR10RetranSupported),
      DUMPED(u_int8_t,  FDRRetranSupported),
      DUMPED(u_int8_t,  EDR20RetranSupported),
      DUMPED(u_int8_t,  EDRRetranSupported),
      DUMPED(u_int8_t,  SpecialPortType),
      DUMPED(u_int8_t,  IsSpecialPort),
      DUMPED(u_int8_t,  SpecialPortCapabilityMask),
      DUMPED(u_int8_t,  is_fnm_port),
      DUMPED(u_int16_t, HDRFECModeSupported),
      DUMPED(u_int16_t, NDRFECModeSupported),
      DUMPED(u_int16_t, XDRFECModeSupported),
  };
};

template <>
struct FieldsOf<WrenReductionPortInfo> {
  using Record = WrenReductionPortInfo;
  static constexpr std::string_view kName = "WrenReductionPortInfo";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int32_t, capability_mask),
      KEPT(  u_int8_t,  exclude_include_self),
      KEPT(  u_int8_t,  port_direction_is_up),
      KEPT(  u_int8_t,  push_ack_coal_en),
      KEPT(  u_int8_t,  amap_skein_mode),
      KEPT(  u_int8_t,  amap_hshub_port_index),
      KEPT(  u_int8_t,  amap_hshub_index),
      KEPT(  u_int8_t,  amap_num_hshub_skein_ports),
      KEPT(  u_int8_t,  amap_num_hshubs),
      KEPT(  u_int8_t,  push_error0_cnt_type),
      KEPT(  u_int8_t,  push_error1_cnt_type),
  };
};

template <>
struct FieldsOf<WrenReductionCounters> {
  using Record = WrenReductionCounters;
  static constexpr std::string_view kName = "WrenReductionCounters";
  static constexpr FieldRow kRows[] = {
      KEPT(  u_int16_t, port_select),
      KEPT(  u_int8_t,  lean_pipe_select),
      KEPT(  u_int16_t, mlid),
      KEPT(  u_int32_t, counter_select),
      DUMPED(u_int64_t, incoming_good_mc_read_req_pkt),
      DUMPED(u_int64_t, incoming_good_mc_read_req_data),
      DUMPED(u_int64_t, incoming_good_mc_write_req_pkt),
      DUMPED(u_int64_t, incoming_good_mc_write_req_data),
      DUMPED(u_int64_t, incoming_good_mc_read_resp_pkt),
      DUMPED(u_int64_t, incoming_good_mc_read_resp_data),
      DUMPED(u_int64_t, incoming_good_mc_write_resp_pkt),
      DUMPED(u_int64_t, incoming_good_mc_write_resp_data),
      DUMPED(u_int64_t, generated_mc_read_resp_pkt),
      DUMPED(u_int64_t, generated_mc_read_resp_data),
      DUMPED(u_int64_t, generated_mc_write_resp_pkt),
      DUMPED(u_int64_t, generated_mc_write_resp_data),
      DUMPED(u_int64_t, dropped_pkt),
      DUMPED(u_int64_t, trapped_pkt),
      DUMPED(u_int64_t, wren_reduction_errors),
      DUMPED(u_int64_t, wren_reduction_penalty_box_errors),
      DUMPED(u_int64_t, port_wrr_local_alm_id_allocations),
      DUMPED(u_int64_t, port_wrr_global_alm_id_allocations),
      DUMPED(u_int64_t, sent_good_mc_pull_write_req_packet),
      DUMPED(u_int64_t, sent_good_mc_pull_read_req_packet),
  };
};

template <>
struct FieldsOf<WrenReductionConfigureMLIDMonitors> {
  using Record = WrenReductionConfigureMLIDMonitors;
  static constexpr std::string_view kName = "WrenReductionConfigureMLIDMonitors";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int8_t, selector),
  };
};

template <>
struct FieldsOf<WrenPushReductionCounters> {
  using Record = WrenPushReductionCounters;
  static constexpr std::string_view kName = "WrenPushReductionCounters";
  static constexpr FieldRow kRows[] = {
      DUMPED(u_int16_t, port_select),
      DUMPED(u_int16_t, mlid),
      KEPT(  u_int32_t, counter_select),
      DUMPED(u_int64_t, incoming_good_push_gpu_ack_packets),
      DUMPED(u_int64_t, incoming_good_push_gpu_ack_data),
      DUMPED(u_int64_t, incoming_good_push_gpu_wr_req_packets),
      DUMPED(u_int64_t, incoming_good_push_gpu_wr_req_data),
      DUMPED(u_int64_t, generated_push_switch_ack_packets),
      DUMPED(u_int64_t, generated_push_switch_ack_data),
      DUMPED(u_int64_t, generated_push_switch_wr_req_packets),
      DUMPED(u_int64_t, dropped_push_packets),
      DUMPED(u_int64_t, trapped_push_packets),
      DUMPED(u_int64_t, jfto_event),
      DUMPED(u_int64_t, sent_push_switch_wr_req_packets),
      DUMPED(u_int64_t, reduction_errors),
      DUMPED(u_int64_t, dup_error),
      DUMPED(u_int64_t, mlid_error),
      DUMPED(u_int64_t, ingress_amap_errors),
      DUMPED(u_int64_t, alm_error_type0),
      DUMPED(u_int64_t, alm_error_type1),
  };
};

#undef KEPT
#undef DUMPED
// clang-format on

}  // namespace fabscan

#endif
