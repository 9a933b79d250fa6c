#ifndef SIMULATOR_RUNNER_STORAGES_H
#define SIMULATOR_RUNNER_STORAGES_H

#include <string>
#include <vector>

#include "../core/node.h"

namespace fabscan {
namespace simulator {

struct FieldValue {
  std::string name;  // as generated code writes it behind "mad_buffer."
  unsigned width;    // bits that a packed attribute has for it
  u_int64_t value;
};

/// One packed attribute of a node, whatever its record type.
struct Storage {
  std::string name;  // as generated code writes it behind "m_node->"
  u_int8_t* bytes;
  std::size_t size;
  std::vector<FieldValue> (*fields)(const u_int8_t* bytes);
  void (*clear_fields)(u_int8_t* bytes);  // leaves the bits that belong to no field
};

/// Every packed attribute of the node. The storages hold while the node lives and no counter set is
/// added to it.
std::vector<Storage> StoragesOf(Node& node);

}  // namespace simulator
}  // namespace fabscan

#endif
