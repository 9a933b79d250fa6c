#ifndef FABSCAN_BENCH_CACHE_MAKER_H
#define FABSCAN_BENCH_CACHE_MAKER_H

#include <string>

#include "bench/fabric_maker.h"

namespace fabscan {

/// The bytes of a discovery cache of such a fabric; its adapters have one port. Every port of a
/// switch leads to an adapter, to another switch or nowhere, and every answer is there.
std::string MakeCache(const FabricShape& shape);

}  // namespace fabscan

#endif
