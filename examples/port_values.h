#ifndef FABSCAN_EXAMPLES_PORT_VALUES_H
#define FABSCAN_EXAMPLES_PORT_VALUES_H

#include <infiniband/tessel/Fabric.h>

#include <cstdint>

#include "examples/capability_values.h"
#include "examples/field_values.h"

namespace fabscan {

/// The special property of a port. A split port has half of its lanes.
enum class PortKind : std::uint8_t { kRegular, kSplit, kSpecial, kFnm, kFnm1 };

/// The properties that determine the records of a port.
struct PortModel {
  Generation generation;
  PortRole role;
  PortKind kind;
  IBPortState state;
};

/// Without LIDs and port number.
SMP_PortInfo MakePortInfo(const PortModel& port);
SMP_PortInfoExtended MakePortInfoExtended(const PortModel& port);
/// `special_type` is the type of the device at the remote end of a special port.
SMP_TarnExtPortInfo MakeExtendedPortInfo(const PortModel& port, u_int8_t special_type);

}  // namespace fabscan

#endif
