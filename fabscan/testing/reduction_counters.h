#ifndef FABSCAN_TESTING_REDUCTION_COUNTERS_H
#define FABSCAN_TESTING_REDUCTION_COUNTERS_H

#include "fabric_builder.h"

namespace fabscan {

inline constexpr char kNoNormalPort[] =
    "#error \"Failed to dump WrenReductionCountersInfo MAD. Normal port data is not provided.\"";
inline constexpr char kNoSpecialPort[] =
    "#error \"Failed to dump WrenReductionCountersInfo MAD. Special port data is not provided.\"";

/// A set that differs from the others in every counter; its selectors are never written.
inline WrenReductionCounters Counters(unsigned k) {
  const u_int64_t step = k * u_int64_t{0x100};
  WrenReductionCounters counters = {};
  counters.port_select = counters.mlid = 0xffff;
  counters.lean_pipe_select = 0xff;
  counters.counter_select = 0xffffffff;
  counters.incoming_good_mc_read_req_pkt = 0xfedcba9876540001 + step;
  counters.incoming_good_mc_read_req_data = 0xfedcba9876541001 + step;
  counters.incoming_good_mc_write_req_pkt = 0xfedcba9876542001 + step;
  counters.incoming_good_mc_write_req_data = 0xfedcba9876543001 + step;
  counters.incoming_good_mc_read_resp_pkt = 0xfedcba9876544001 + step;
  counters.incoming_good_mc_read_resp_data = 0xfedcba9876545001 + step;
  counters.incoming_good_mc_write_resp_pkt = 0xfedcba9876546001 + step;
  counters.incoming_good_mc_write_resp_data = 0xfedcba9876547001 + step;
  counters.generated_mc_read_resp_pkt = 0xfedcba9876548001 + step;
  counters.dropped_pkt = 0xfedcba9876549001 + step;
  counters.trapped_pkt = 0xfedcba987654a001 + step;
  counters.wren_reduction_errors = 0xfedcba987654b001 + step;
  counters.wren_reduction_penalty_box_errors = 0xfedcba987654c001 + step;
  counters.port_wrr_local_alm_id_allocations = 0xfedcba987654d001 + step;
  counters.port_wrr_global_alm_id_allocations = 0xfedcba987654e001 + step;
  counters.sent_good_mc_pull_write_req_packet = 0xfedcba987654f001 + step;
  counters.sent_good_mc_pull_read_req_packet = 0xfedcba9876550001 + step;
  counters.generated_mc_write_resp_pkt = 0xfedcba9876551001 + step;
  counters.generated_mc_write_resp_data = 0xfedcba9876552001 + step;
  counters.generated_mc_read_resp_data = 0xfedcba9876553001 + step;
  return counters;
}

inline IBNode& ReductionSwitch(FabricBuilder& fabric, phys_port_t ports) {
  IBNode& node = fabric.Switch("S1", ports);
  fabric.Support(node, {55});
  fabric.Put<IB_ClassPortInfo>(node);
  return node;
}

inline void PutCounters(FabricBuilder& fabric, const IBNode& node, std::size_t port, unsigned index,
                        const WrenReductionCounters& counters) {
  fabric.fabscan.fabric_extended_info.putMonitors(*node.Ports[port], 0);
  fabric.fabscan.fabric_extended_info.putCounters(*node.Ports[port], index) = counters;
}

}  // namespace fabscan

#endif
