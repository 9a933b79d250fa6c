#ifndef SIMULATOR_CORE_DEVICE_H
#define SIMULATOR_CORE_DEVICE_H

#include "attributes.h"
#include "node.h"

/// For a device's header: the functions that a generated file defines, and the classes that declare
/// them.

#define SIMULATOR_DECLARE_SETTER(record, member, function) void function();
#define SIMULATOR_CALL_SETTER(record, member, function) function();

/// `APPLY(record, member, function)` for every function of a generated file, in its order.
#define SIMULATOR_EACH(APPLY) SIMULATOR_ATTRIBUTES(APPLY, APPLY, APPLY, APPLY, APPLY)

/// Declares a class for one type of node. A generated file defines its functions if that type was
/// dumped; a program links if it uses only dumped types.
#define SIMULATOR_DEVICE(Kind)                                    \
  class Kind : public fabscan::simulator::Device {                \
   public:                                                        \
    using Device::Device;                                         \
    SIMULATOR_EACH(SIMULATOR_DECLARE_SETTER)                      \
    /** Gives the node every value that the real one reported. */ \
    void setAll() { SIMULATOR_EACH(SIMULATOR_CALL_SETTER) }       \
  }

namespace fabscan::simulator {

/// A device of one type that sets the attributes of a node. The node must outlive it.
class Device {
 public:
  explicit Device(Node& node) : m_node(&node) {}

 protected:
  Node* m_node;
};

}  // namespace fabscan::simulator

#endif
