#ifndef FABSCAN_EXAMPLES_EXAMPLE_VALUES_H
#define FABSCAN_EXAMPLES_EXAMPLE_VALUES_H

#include "record_fields.h"

namespace fabscan {

/// Gives every number of the record a value of its own, so that two fields that are mixed up show;
/// values fit the width that the field has on the wire. `seed` tells records of one kind apart.
void FillRecord(const RecordTable& table, void* record, unsigned seed);

template <class Record>
Record MakeRecord(unsigned seed) {
  Record record{};
  FillRecord(TableOf<Record>::value, &record, seed);
  return record;
}

}  // namespace fabscan

#endif
