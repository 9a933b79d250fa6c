#ifndef FABSCAN_FABRICS_NATURAL_ORDER_H
#define FABSCAN_FABRICS_NATURAL_ORDER_H

#include <infiniband/fabscan/fabscan.h>

#include <string_view>
#include <vector>

namespace fabscan {

/// Whether `one` comes before `other` in a list for people: numbers in the texts compare by value
/// (leaf2 before leaf10), everything else byte by byte, in any locale. A total order: texts
/// that differ only in leading zeros are ordered by the first such number, fewer zeros first.
bool NaturallyBefore(std::string_view one, std::string_view other);

/// By name, then by GUID. The generator uses a different order.
bool NaturallyBefore(const IBNode& one, const IBNode& other);
void SortNaturally(std::vector<const IBNode*>& nodes);

/// All nodes in that order.
std::vector<const IBNode*> NodesInNaturalOrder(const IBFabric& fabric);

}  // namespace fabscan

#endif
