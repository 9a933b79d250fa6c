#ifndef SIMULATOR_RUNNER_STORAGES_H
#define SIMULATOR_RUNNER_STORAGES_H

#include <string>
#include <vector>

#include "../core/node.h"

namespace fabscan::simulator {

/// One packed attribute of a node, for any record type.
struct Storage {
  std::string name;  // as generated code writes it after "m_node->"
  const RecordTable* table;
  u_int8_t* bytes;
  std::size_t size;
};

/// Every packed attribute of the node. The storages are valid while the node exists and no counter
/// set is added to it.
std::vector<Storage> StoragesOf(Node& node);

}  // namespace fabscan::simulator

#endif
