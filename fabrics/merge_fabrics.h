#ifndef FABSCAN_FABRICS_MERGE_FABRICS_H
#define FABSCAN_FABRICS_MERGE_FABRICS_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <string>

#include "fabrics/ingress_port.h"
#include "fabrics/progress.h"

namespace fabscan {

/// Which value is used if two snapshots contradict each other.
enum class Prefer { kNeither, kBase, kExtra };

struct MergeResult {
  std::size_t added_nodes = 0;    // missing in the base
  std::size_t added_records = 0;  // and capability masks, likewise
  std::size_t conflicts = 0;
  std::string first_conflict;  // node, port, field and both values
};

/// Merges two snapshots of one fabric into the empty `result`, matching nodes by GUID and ports by
/// number. Data in only one of them is copied; names come from the base. Values that snapshots omit
/// (a flag with its default, an unknown state, a 0 in a field that is not dumped) count as missing.
/// If both have a value and they differ, this is a conflict, which `prefer` decides; by default,
/// the base's value is kept.
///
/// The values that depend on the ingress port are the base's, unless they are included.
///
/// Throws std::invalid_argument if the preferred values are inconsistent, such as a port above the
/// number of ports.
MergeResult MergeFabrics(const Fabscan& base, const Fabscan& extra, Prefer prefer, Fabscan& result,
                         IngressPort ingress_port = IngressPort::kIgnored,
                         const NodeProgress& progress = {});

}  // namespace fabscan

#endif
