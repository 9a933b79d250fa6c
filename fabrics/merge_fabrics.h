#ifndef FABSCAN_FABRICS_MERGE_FABRICS_H
#define FABSCAN_FABRICS_MERGE_FABRICS_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <string>

#include "fabrics/ingress_port.h"
#include "fabrics/progress.h"

namespace fabscan {

/// Whose value stands where two snapshots contradict each other.
enum class Prefer { kNeither, kBase, kExtra };

struct MergeResult {
  std::size_t added_nodes = 0;    // that the base lacked
  std::size_t added_records = 0;  // and capability masks, likewise
  std::size_t conflicts = 0;
  std::string first_conflict;  // node, port, field and both values
};

/// Joins two snapshots of one fabric into the empty `result`, node by GUID and port by number. What
/// only one of them says is taken; a name is the base's. A value that snapshots leave out (a flag
/// that is as usual, an unknown state, a 0 in a field that is not dumped) says nothing. Where both
/// say something and differ, that is a conflict, and `prefer` decides; the base stands where it
/// does not.
///
/// The values that depend on the ingress port are the base's, unless they are included.
///
/// Throws std::invalid_argument when the preferred values do not fit together, as a port above the
/// number of ports.
MergeResult MergeFabrics(const Fabscan& base, const Fabscan& extra, Prefer prefer, Fabscan& result,
                         IngressPort ingress_port = IngressPort::kIgnored,
                         const NodeProgress& progress = {});

}  // namespace fabscan

#endif
