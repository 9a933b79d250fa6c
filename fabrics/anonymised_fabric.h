#ifndef FABSCAN_FABRICS_ANONYMISED_FABRIC_H
#define FABSCAN_FABRICS_ANONYMISED_FABRIC_H

#include <infiniband/fabscan/fabscan.h>

#include "fabrics/keyed_mapping.h"
#include "fabrics/progress.h"

namespace fabscan {

/// Replaces a reason, which may contain names.
inline constexpr char kWithheldReason[] = "withheld";

/// Fills the empty `to` with a copy of `from` with other names, GUIDs, GID prefixes, MAC addresses
/// and queue keys, and without `extra` objects. `keep_reasons` keeps the reasons of absence, which
/// are free text. Throws std::invalid_argument if two nodes get the same name or GUID.
void AnonymiseFabric(const Fabscan& from, const KeyedMapping& mapping, bool keep_reasons,
                     Fabscan& to, const NodeProgress& progress = {});

}  // namespace fabscan

#endif
