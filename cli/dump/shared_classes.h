#ifndef FABSCAN_CLI_SHARED_CLASSES_H
#define FABSCAN_CLI_SHARED_CLASSES_H

#include <infiniband/fabscan/fabscan.h>

#include <set>
#include <string>

namespace fabscan {

/// Throws CommandError if two of the selected nodes define the same class: no edit makes such a
/// file compile. `guids` selects nodes; empty means all of the sub-fabric.
void RefuseSharedClasses(Fabscan& fabscan, const std::set<u_int64_t>& guids,
                         const std::string& prefix);

}  // namespace fabscan

#endif
