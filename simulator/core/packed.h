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

/// Called, unless null, with each record before it is packed into `bytes`: packing truncates values
/// that do not fit their fields.
using PackObserver = void (*)(const RecordTable& table, const void* record, const u_int8_t* bytes);
inline PackObserver pack_observer = nullptr;

}  // namespace fabscan::simulator

#endif
