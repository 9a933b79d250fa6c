#ifndef SIMULATOR_CORE_REDUCTION_RECORDS_H
#define SIMULATOR_CORE_REDUCTION_RECORDS_H

#include <infiniband/fabscan/fabscan_types.h>

#include "fields.h"

/// Attributes of in-network reduction, packed in the order of the record, big-endian: each field as
/// wide as in the record.

namespace fabscan {
namespace simulator {

#define NEXT(member) field(#member, record.member);
// clang-format off

template <class Visit>
constexpr void WalkFields(WrenReductionInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(capability_mask) NEXT(hbf_group_cap) NEXT(reduction_fdb_cap) NEXT(reduction_fdb_top)
  NEXT(num_of_up_ports) NEXT(num_of_down_ports) NEXT(pull_reduction_fdb_base) NEXT(mcto_timer)
  NEXT(penalty_box_change_trap_disable) NEXT(push_chunk_size_align_mode)
  NEXT(push_rand_hbr_port_opt_en) NEXT(push_double_wr_opt_en) NEXT(push_join_fail_timer)
  NEXT(pull_reductions_alloc_resources) NEXT(push_reductions_used_resources)
  NEXT(push_reductions_alloc_resources) NEXT(push_reduction_fdb_base) NEXT(push_reduction_fdb_top)
  NEXT(reductions_resources_cap) NEXT(push_reduction_fdb_cap) NEXT(magic_square_table_cap)
  NEXT(reductions_resource_size) NEXT(push_ack_coal_pkts_th) NEXT(push_ack_coal_timeout)
}

template <class Visit>
constexpr void WalkFields(WrenReductionPortInfo& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(capability_mask) NEXT(exclude_include_self) NEXT(port_direction_is_up)
  NEXT(push_ack_coal_en) NEXT(amap_skein_mode) NEXT(amap_hshub_port_index) NEXT(amap_hshub_index)
  NEXT(amap_num_hshub_skein_ports) NEXT(amap_num_hshubs) NEXT(push_error0_cnt_type)
  NEXT(push_error1_cnt_type)
}

template <class Visit>
constexpr void WalkFields(WrenReductionCounters& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(port_select) NEXT(lean_pipe_select) NEXT(mlid) NEXT(counter_select)
  NEXT(incoming_good_mc_read_req_pkt) NEXT(incoming_good_mc_read_req_data)
  NEXT(incoming_good_mc_write_req_pkt) NEXT(incoming_good_mc_write_req_data)
  NEXT(incoming_good_mc_read_resp_pkt) NEXT(incoming_good_mc_read_resp_data)
  NEXT(incoming_good_mc_write_resp_pkt) NEXT(incoming_good_mc_write_resp_data)
  NEXT(generated_mc_read_resp_pkt) NEXT(generated_mc_read_resp_data)
  NEXT(generated_mc_write_resp_pkt) NEXT(generated_mc_write_resp_data) NEXT(dropped_pkt)
  NEXT(trapped_pkt) NEXT(wren_reduction_errors) NEXT(wren_reduction_penalty_box_errors)
  NEXT(port_wrr_local_alm_id_allocations) NEXT(port_wrr_global_alm_id_allocations)
  NEXT(sent_good_mc_pull_write_req_packet) NEXT(sent_good_mc_pull_read_req_packet)
}

template <class Visit>
constexpr void WalkFields(WrenPushReductionCounters& record, Visit& visit) {
  Placer<Visit> field(visit);
  NEXT(port_select) NEXT(mlid) NEXT(counter_select) NEXT(incoming_good_push_gpu_ack_packets)
  NEXT(incoming_good_push_gpu_ack_data) NEXT(incoming_good_push_gpu_wr_req_packets)
  NEXT(incoming_good_push_gpu_wr_req_data) NEXT(generated_push_switch_ack_packets)
  NEXT(generated_push_switch_ack_data) NEXT(generated_push_switch_wr_req_packets)
  NEXT(dropped_push_packets) NEXT(trapped_push_packets) NEXT(jfto_event)
  NEXT(sent_push_switch_wr_req_packets) NEXT(reduction_errors) NEXT(dup_error) NEXT(mlid_error)
  NEXT(ingress_amap_errors) NEXT(alm_error_type0) NEXT(alm_error_type1)
}

// clang-format on
#undef NEXT

}  // namespace simulator
}  // namespace fabscan

#endif
