#include "examples/reduction_values.h"

namespace fabscan {

namespace {

constexpr u_int64_t kLinkLocal = 0xFE80000000000000;
// Queue keys with the highest bit, of which only privileged software can send.
constexpr u_int32_t kRedirectQKey = 0x80A10048, kTrapQKey = 0x80A10051;
constexpr u_int16_t kDefaultPKey = 0xFFFF;

constexpr u_int16_t kFirstPullMlid = 0xC000;
constexpr u_int16_t kPushMlid = 0xC011;

/// Octets per packet: headers for a request, data for the others.
constexpr u_int64_t kRequestBytes = 48, kDataBytes = 4096, kAckBytes = 20;

}  // namespace

// clang-format off

const std::vector<PortTraffic> kReductionTraffic = {
    // port, index, reads, writes
    {1, 0, 1048576, 983041},
    {1, 6,   65537,  49157},
    {2, 0,  524309, 393241},
    {2, 1,  262147, 131101},
    {5, 2, 7340033, 6291469},
    {6, 3,   17011,  13007},
    {7, 0,    5021,   4019},
    {7, 4,    3067,   2069},
    {7, 7,    1087,   1033},
    {8, 5,   90007,  80021},
};

// clang-format on

IB_ClassPortInfo MakeReductionClassPortInfo(u_int64_t redirect_guid, u_int16_t redirect_lid,
                                            u_int64_t trap_guid, u_int16_t trap_lid) {
  IB_ClassPortInfo info{};
  info.BaseVersion = 1;
  info.ClassVersion = 2;
  info.CapMsk = 0x0300;
  info.CapMsk2 = 0x11;
  info.RespTimeValue = 18;
  info.RedirectGID[0] = kLinkLocal;
  info.RedirectGID[1] = redirect_guid;
  info.RedirectLID = redirect_lid;
  info.RedirectSL = 3;
  info.RedirectTC = 0x60;
  info.RedirectFL = 0x2A;
  info.RedirectPKey = kDefaultPKey;
  info.RedirectQP = 0x48;
  info.RedirectQKey = kRedirectQKey;
  info.TrapGID[0] = kLinkLocal >> 32U;
  info.TrapGID[2] = static_cast<u_int32_t>(trap_guid >> 32U);
  info.TrapGID[3] = static_cast<u_int32_t>(trap_guid);
  info.TrapLID = trap_lid;
  info.TrapPKey = kDefaultPKey;
  info.TrapQP = 0x51;
  info.TrapQKey = kTrapQKey;
  info.TrapHL = 64;
  return info;
}

WrenReductionInfo MakeReductionInfo() {
  WrenReductionInfo info{};
  info.capability_mask = 0x7F;
  info.hbf_group_cap = 0x100;
  info.reduction_fdb_cap = 0x400;
  info.reduction_fdb_top = 7;
  info.num_of_up_ports = 2;
  info.num_of_down_ports = 6;
  info.mcto_timer = 20;
  info.push_join_fail_timer = 18;
  info.push_chunk_size_align_mode = 1;
  info.pull_reductions_alloc_resources = 48;
  info.push_reductions_used_resources = 3;
  info.push_reductions_alloc_resources = 16;
  info.push_reduction_fdb_base = 17;
  info.push_reduction_fdb_top = 18;
  info.push_reduction_fdb_cap = 0x200;
  info.reductions_resources_cap = 64;
  info.reductions_resource_size = 2048;
  info.magic_square_table_cap = 8;
  info.push_ack_coal_pkts_th = 16;
  info.push_ack_coal_timeout = 250;
  return info;
}

WrenReductionPortInfo MakeReductionPortInfo(PortKind kind) {
  WrenReductionPortInfo info{};
  const bool is_management = kind == PortKind::kFnm || kind == PortKind::kFnm1;
  info.capability_mask = is_management ? (kind == PortKind::kFnm ? 0x3 : 0x7) : 0x3F;
  if (kind == PortKind::kSpecial) info.capability_mask = 0x1F;
  info.port_direction_is_up = kind == PortKind::kSpecial;
  info.push_ack_coal_en = !is_management;
  info.amap_num_hshubs = 2;
  info.amap_num_hshub_skein_ports = 4;
  info.push_error0_cnt_type = 1;
  info.push_error1_cnt_type = 5;
  return info;
}

WrenReductionCounters MakeReductionCounters(const PortTraffic& traffic) {
  WrenReductionCounters counters{};
  counters.port_select = traffic.port;
  counters.lean_pipe_select = 0xF;
  counters.mlid = static_cast<u_int16_t>(kFirstPullMlid + traffic.index);
  const u_int64_t reads = traffic.reads, writes = traffic.writes;
  // A few requests are answered late, dropped or trapped.
  const u_int64_t read_responses = reads - 3, write_responses = writes - 2;
  const u_int64_t made_read_responses = reads / 4, made_write_responses = writes / 4;
  counters.incoming_good_mc_read_req_pkt = reads;
  counters.incoming_good_mc_read_req_data = reads * kRequestBytes;
  counters.incoming_good_mc_write_req_pkt = writes;
  counters.incoming_good_mc_write_req_data = writes * kDataBytes;
  counters.incoming_good_mc_read_resp_pkt = read_responses;
  counters.incoming_good_mc_read_resp_data = read_responses * kDataBytes;
  counters.incoming_good_mc_write_resp_pkt = write_responses;
  counters.incoming_good_mc_write_resp_data = write_responses * kAckBytes;
  counters.generated_mc_read_resp_pkt = made_read_responses;
  counters.generated_mc_read_resp_data = made_read_responses * kDataBytes;
  counters.generated_mc_write_resp_pkt = made_write_responses;
  counters.generated_mc_write_resp_data = made_write_responses * kAckBytes;
  counters.dropped_pkt = 3;
  counters.trapped_pkt = 2;
  counters.wren_reduction_errors = 5;
  counters.wren_reduction_penalty_box_errors = 1;
  counters.port_wrr_local_alm_id_allocations = reads / 16;
  counters.port_wrr_global_alm_id_allocations = reads / 64;
  counters.sent_good_mc_pull_write_req_packet = writes / 8;
  counters.sent_good_mc_pull_read_req_packet = reads / 8;
  return counters;
}

WrenPushReductionCounters MakePushCounters(phys_port_t port) {
  WrenPushReductionCounters counters{};
  counters.port_select = port;
  counters.mlid = kPushMlid;
  const u_int64_t writes = 40000 + 1009 * u_int64_t{port};
  const u_int64_t acks = writes - 7;
  counters.incoming_good_push_gpu_ack_packets = acks;
  counters.incoming_good_push_gpu_ack_data = acks * kAckBytes;
  counters.incoming_good_push_gpu_wr_req_packets = writes;
  counters.incoming_good_push_gpu_wr_req_data = writes * kDataBytes;
  counters.generated_push_switch_ack_packets = writes - 1;
  counters.generated_push_switch_ack_data = (writes - 1) * kAckBytes;
  counters.generated_push_switch_wr_req_packets = writes / 2;
  counters.sent_push_switch_wr_req_packets = writes / 2 - 1;
  counters.dropped_push_packets = 6;
  counters.trapped_push_packets = 4;
  counters.jfto_event = 2;
  counters.reduction_errors = 9;
  counters.dup_error = 3;
  counters.mlid_error = 1;
  counters.ingress_amap_errors = 5;
  counters.alm_error_type0 = 8;
  counters.alm_error_type1 = 7;
  return counters;
}

}  // namespace fabscan
