#ifndef FABSCAN_REDUCTION_GATES_H
#define FABSCAN_REDUCTION_GATES_H

#include <infiniband/fabscan/fabscan.h>

#include "attribute_block.h"
#include "capability_bits.h"
#include "node_gates.h"

/// Tests that the reduction emitters begin with: they write the diagnostic themselves and answer
/// whether they did.

/// Not a switch, or a switch without reduction management, which is nothing unusual.
inline bool DeclinesReduction(SourceWriter& writer, Fabscan& fabscan, const IBNode& node) {
  if (DeclinesAsNotSwitch(writer, node)) return true;
  if (fabscan.capability_module.IsSupportedSMPCapability(&node,
                                                         kIsWrenReductionManagementSupported)) {
    return false;
  }
  WriteDiagnostic(writer, "// The node=", node.name, " does not support Wren Reduction Management");
  return true;
}

/// The same for the port attributes, which a node serves only when it answers the reduction
/// management class at all.
inline bool DeclinesReductionPorts(SourceWriter& writer, Fabscan& fabscan, const IBNode& node) {
  if (DeclinesReduction(writer, fabscan, node)) return true;
  if (fabscan.fabric_extended_info.getWrenClassPortInfo(node.createIndex) != nullptr) return false;
  // The quote stays open.
  WriteDiagnostic(writer, "#error \"Failed to get WrenClassPortInfo mad for the node=", node.name);
  return true;
}

/// The generated loop stops before the last port; simulators rely on that.
inline constexpr std::string_view kReductionPortLoop =
    "for (phys_port_t i = 1; i < m_node->numPorts; i++) {";

#endif
