#ifndef FABSCAN_SIMULATOR_VERIFICATION_TESTING_TEST_FABRIC_H
#define FABSCAN_SIMULATOR_VERIFICATION_TESTING_TEST_FABRIC_H

#include <infiniband/fabscan/fabscan.h>

#include "simulator/core/packed.h"

namespace fabscan {

/// A record whose fields are all non-zero, and distinct as far as their bits allow. Every value
/// fits its field in the packed attribute.
template <class Record>
Record Filled(unsigned seed) {
  Record record{};
  u_int64_t state = seed;
  auto fill = [&state](simulator::Place place, const char*, int, auto& value) {
    state = state * 6364136223846793005U + 1442695040888963407U;
    const u_int64_t mixed = (state ^ state >> 29U) >> (64 - place.width);
    value = static_cast<std::decay_t<decltype(value)>>(mixed != 0 ? mixed : 1);
  };
  simulator::WalkFields(record, fill);
  return record;
}

/// A fabric in which every generated function assigns values:
///
/// - 0x10 "switch", supports reduction; of its six ports 1 is down, 2 and 3 are regular, 4 is an
/// FNM
///   port, 5 a special one, 6 an FNM1 port outside the sub-fabric
/// - 0x11 "adapter", 0x12 "router" and 0x13 "aggregation", two ports each
/// - 0x14 "bare", a switch without records
void MakeTestFabric(Fabscan& fabscan);

}  // namespace fabscan

#endif
