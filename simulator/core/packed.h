#ifndef SIMULATOR_CORE_PACKED_H
#define SIMULATOR_CORE_PACKED_H

#include "records/all_records.h"
#include "records/wire.h"

namespace fabscan::simulator {

/// A node's storage for one attribute, as it is on the wire.
template <class Record>
struct Packed {
  using RecordType = Record;
  u_int8_t bytes[PackedBytes(TableOf<Record>::value)] = {};
};

}  // namespace fabscan::simulator

#endif
