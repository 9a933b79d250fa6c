#ifndef FABSCAN_RECORDS_REDUCTION_RECORDS_H
#define FABSCAN_RECORDS_REDUCTION_RECORDS_H

#include "records/record_table.h"

// Attributes of in-network reduction, without a published layout: packed in the order of
// the struct, big-endian, each field as wide as there.
//
// DUMPED: the generator writes the field, so a snapshot must have it. KEPT: a snapshot can
// have it; if missing, it is 0.

namespace fabscan {

// clang-format off
#define RECORD(type) FABSCAN_RECORD_ROWS(type, kAnyLength)
#define DUMPED(member) FABSCAN_ROW(member, true,  0, 0)
#define KEPT(member)   FABSCAN_ROW(member, false, 0, 0)

RECORD(WrenReductionInfo) = {
    DUMPED(capability_mask),
    DUMPED(hbf_group_cap),
    DUMPED(reduction_fdb_cap),
    KEPT(  reduction_fdb_top),
    KEPT(  num_of_up_ports),
    KEPT(  num_of_down_ports),
    KEPT(  pull_reduction_fdb_base),
    KEPT(  mcto_timer),
    KEPT(  penalty_box_change_trap_disable),
    KEPT(  push_chunk_size_align_mode),
    KEPT(  push_rand_hbr_port_opt_en),
    KEPT(  push_double_wr_opt_en),
    KEPT(  push_join_fail_timer),
    KEPT(  pull_reductions_alloc_resources),
    KEPT(  push_reductions_used_resources),
    KEPT(  push_reductions_alloc_resources),
    KEPT(  push_reduction_fdb_base),
    KEPT(  push_reduction_fdb_top),
    KEPT(  reductions_resources_cap),
    KEPT(  push_reduction_fdb_cap),
    KEPT(  magic_square_table_cap),
    KEPT(  reductions_resource_size),
    KEPT(  push_ack_coal_pkts_th),
    KEPT(  push_ack_coal_timeout),
};};

RECORD(WrenReductionPortInfo) = {
    DUMPED(capability_mask),
    KEPT(  exclude_include_self),
    KEPT(  port_direction_is_up),
    KEPT(  push_ack_coal_en),
    KEPT(  amap_skein_mode),
    KEPT(  amap_hshub_port_index),
    KEPT(  amap_hshub_index),
    KEPT(  amap_num_hshub_skein_ports),
    KEPT(  amap_num_hshubs),
    KEPT(  push_error0_cnt_type),
    KEPT(  push_error1_cnt_type),
};};

RECORD(WrenReductionCounters) = {
    KEPT(  port_select),
    KEPT(  lean_pipe_select),
    KEPT(  mlid),
    KEPT(  counter_select),
    DUMPED(incoming_good_mc_read_req_pkt),
    DUMPED(incoming_good_mc_read_req_data),
    DUMPED(incoming_good_mc_write_req_pkt),
    DUMPED(incoming_good_mc_write_req_data),
    DUMPED(incoming_good_mc_read_resp_pkt),
    DUMPED(incoming_good_mc_read_resp_data),
    DUMPED(incoming_good_mc_write_resp_pkt),
    DUMPED(incoming_good_mc_write_resp_data),
    DUMPED(generated_mc_read_resp_pkt),
    DUMPED(generated_mc_read_resp_data),
    DUMPED(generated_mc_write_resp_pkt),
    DUMPED(generated_mc_write_resp_data),
    DUMPED(dropped_pkt),
    DUMPED(trapped_pkt),
    DUMPED(wren_reduction_errors),
    DUMPED(wren_reduction_penalty_box_errors),
    DUMPED(port_wrr_local_alm_id_allocations),
    DUMPED(port_wrr_global_alm_id_allocations),
    DUMPED(sent_good_mc_pull_write_req_packet),
    DUMPED(sent_good_mc_pull_read_req_packet),
};};

RECORD(WrenReductionConfigureMLIDMonitors) = {
    DUMPED(selector),
};};

RECORD(WrenPushReductionCounters) = {
    DUMPED(port_select),
    DUMPED(mlid),
    KEPT(  counter_select),
    DUMPED(incoming_good_push_gpu_ack_packets),
    DUMPED(incoming_good_push_gpu_ack_data),
    DUMPED(incoming_good_push_gpu_wr_req_packets),
    DUMPED(incoming_good_push_gpu_wr_req_data),
    DUMPED(generated_push_switch_ack_packets),
    DUMPED(generated_push_switch_ack_data),
    DUMPED(generated_push_switch_wr_req_packets),
    DUMPED(dropped_push_packets),
    DUMPED(trapped_push_packets),
    DUMPED(jfto_event),
    DUMPED(sent_push_switch_wr_req_packets),
    DUMPED(reduction_errors),
    DUMPED(dup_error),
    DUMPED(mlid_error),
    DUMPED(ingress_amap_errors),
    DUMPED(alm_error_type0),
    DUMPED(alm_error_type1),
};};

#undef KEPT
#undef DUMPED
#undef RECORD
// clang-format on

}  // namespace fabscan

#endif
