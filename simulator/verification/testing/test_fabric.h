#ifndef FABSCAN_SIMULATOR_VERIFICATION_TESTING_TEST_FABRIC_H
#define FABSCAN_SIMULATOR_VERIFICATION_TESTING_TEST_FABRIC_H

#include <infiniband/fabscan/fabscan.h>

#include "records/all_records.h"
#include "records/number.h"

namespace fabscan {

/// A record whose fields are all non-zero, and distinct as far as their bits allow. Every value
/// fits its field in the packed attribute.
template <class Record>
Record Filled(unsigned seed) {
  Record record{};
  u_int64_t state = seed;
  ForEachNumber(TableOf<Record>::value, [&](const Number& number) {
    state = state * 6364136223846793005U + 1442695040888963407U;
    const u_int64_t mixed = (state ^ state >> 29U) >> (64 - number.place.bits);
    number.Store(&record, mixed != 0 ? mixed : 1);
  });
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
