#ifndef FABSCAN_FUZZ_RECORD_FILLER_H
#define FABSCAN_FUZZ_RECORD_FILLER_H

#include <infiniband/fabscan/fabscan.h>

#include "fuzz/bytes.h"

namespace fabscan {

/// Gives the node or port some of the records that it can have, with any values; also masks and
/// reasons for absence.
void FillRecords(Bytes& bytes, Fabscan& fabscan, const IBNode& node);
void FillRecords(Bytes& bytes, Fabscan& fabscan, const IBPort& port);

/// The marks of a port: state, sub-fabric, FNM, FNM1, special.
void FillMarks(Bytes& bytes, IBPort& port);

}  // namespace fabscan

#endif
