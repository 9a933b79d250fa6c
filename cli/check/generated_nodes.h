#ifndef FABSCAN_CLI_GENERATED_NODES_H
#define FABSCAN_CLI_GENERATED_NODES_H

#include <infiniband/fabscan/fabscan.h>

#include <functional>
#include <set>

#include "cli/dump/generated_file.h"

namespace fabscan {

/// Has the generator write the nodes of the sub-fabric, by ascending name, and calls `visit` with
/// each node and what was written of it. `guids` chooses nodes; empty means all.
///
/// The text goes through a temporary folder, some nodes at a time, so that its size does not
/// matter. Throws CommandError when that folder cannot be written.
void ForEachGeneratedNode(Fabscan& fabscan, const std::set<u_int64_t>& guids,
                          const std::function<void(const IBNode&, const GeneratedNode&)>& visit);

}  // namespace fabscan

#endif
