#ifndef INFINIBAND_FABSCAN_FABRIC_H
#define INFINIBAND_FABSCAN_FABRIC_H

#include <infiniband/fabscan/fabscan_types.h>

#include "../../../core/attributes.h"
#include "../../../core/packed.h"

/// The attribute records as a generated file uses them: for each record type RECORD, the functions
/// RECORD_unpack and RECORD_pack between the record and a node's packed bytes, and the types of the
/// reduction counters.

typedef u_int8_t phys_port_t;

// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a type.
#define FABSCAN_RECORD(Record, member, function)                           \
  inline void Record##_unpack(Record* record, const u_int8_t* bytes) {     \
    fabscan::UnpackRecord(fabscan::TableOf<Record>::value, bytes, record); \
  }                                                                        \
  inline void Record##_pack(const Record* record, u_int8_t* bytes) {       \
    const auto& table = fabscan::TableOf<Record>::value;                   \
    const auto observe = fabscan::simulator::pack_observer;                \
    if (observe != nullptr) observe(table, record, bytes);                 \
    fabscan::PackRecord(table, record, bytes);                             \
  }
// NOLINTEND(bugprone-macro-parentheses)
SIMULATOR_ATTRIBUTES(FABSCAN_RECORD, SIMULATOR_NOTHING, FABSCAN_RECORD, FABSCAN_RECORD,
                     FABSCAN_RECORD)
#undef FABSCAN_RECORD

/// The shorter name under which generated files declare a counter record.
typedef WrenReductionCounters WrenReductCounters;

/// One counter set as a node keeps it.
typedef fabscan::simulator::Packed<WrenReductionCounters> ib_wren_reduction_counters_t;

/// The push counters of one port and multicast LID as a node keeps them, behind a setter a counter.
class WrenPushReductionCounters_view_t {
 public:
#define FABSCAN_COUNTER(field) \
  void set_##field(u_int64_t value) { set(&WrenPushReductionCounters::field, value); }
  FABSCAN_COUNTER(incoming_good_push_gpu_ack_packets)
  FABSCAN_COUNTER(incoming_good_push_gpu_ack_data)
  FABSCAN_COUNTER(incoming_good_push_gpu_wr_req_packets)
  FABSCAN_COUNTER(incoming_good_push_gpu_wr_req_data)
  FABSCAN_COUNTER(generated_push_switch_ack_packets)
  FABSCAN_COUNTER(generated_push_switch_ack_data)
  FABSCAN_COUNTER(generated_push_switch_wr_req_packets)
  FABSCAN_COUNTER(dropped_push_packets)
  FABSCAN_COUNTER(trapped_push_packets)
  FABSCAN_COUNTER(jfto_event)
  FABSCAN_COUNTER(sent_push_switch_wr_req_packets)
  FABSCAN_COUNTER(reduction_errors)
  FABSCAN_COUNTER(dup_error)
  FABSCAN_COUNTER(mlid_error)
  FABSCAN_COUNTER(ingress_amap_errors)
  FABSCAN_COUNTER(alm_error_type0)
  FABSCAN_COUNTER(alm_error_type1)
#undef FABSCAN_COUNTER

  fabscan::simulator::Packed<WrenPushReductionCounters> packed;

 private:
  void set(u_int64_t WrenPushReductionCounters::*field, u_int64_t value) {
    WrenPushReductionCounters record;
    WrenPushReductionCounters_unpack(&record, packed.bytes);
    record.*field = value;
    WrenPushReductionCounters_pack(&record, packed.bytes);
  }
};

#endif
