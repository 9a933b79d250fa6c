#ifndef FABSCAN_EXAMPLES_PORT_VALUES_H
#define FABSCAN_EXAMPLES_PORT_VALUES_H

#include <infiniband/tessel/Fabric.h>

#include <cstdint>

#include "examples/capability_values.h"
#include "examples/field_values.h"

namespace fabscan {

/// What sets a port apart from its neighbours. A split port has half of its lanes.
enum class PortKind : std::uint8_t { kRegular, kSplit, kSpecial, kFnm, kFnm1 };

/// What the records of a port depend on.
struct PortModel {
  Generation generation;
  PortRole role;
  PortKind kind;
  IBPortState state;
};

/// Without LIDs and port number.
SMP_PortInfo MakePortInfo(const PortModel& port);
SMP_PortInfoExtended MakePortInfoExtended(const PortModel& port);
/// `special_type` is that of the device at the other end of a special port.
SMP_TarnExtPortInfo MakeExtendedPortInfo(const PortModel& port, u_int8_t special_type);

}  // namespace fabscan

#endif
