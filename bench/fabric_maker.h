#ifndef FABSCAN_BENCH_FABRIC_MAKER_H
#define FABSCAN_BENCH_FABRIC_MAKER_H

#include <infiniband/fabscan/fabscan.h>

#include <cstdint>

namespace fabscan {

/// What a made fabric is to look like: a fat tree of switches with adapters at its leaves.
struct FabricShape {
  unsigned switches = 2000;
  unsigned ports = 64;     // of a switch; 1 to 254
  unsigned adapters = 0;   // of two ports each
  std::uint64_t seed = 1;  // the same shape and seed give the same fabric everywhere
};

/// Fills an empty fabric: realistic names, records of every kind on every switch and adapter that
/// serves them, marked ports (FNM, FNM1 and special) on every switch.
void MakeFabric(const FabricShape& shape, Fabscan& fabscan);

}  // namespace fabscan

#endif
