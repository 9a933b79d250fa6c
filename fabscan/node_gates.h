#ifndef FABSCAN_NODE_GATES_H
#define FABSCAN_NODE_GATES_H

#include <infiniband/fabscan/fabscan.h>

#include "attribute_block.h"

/// Tests that several emitters begin with: they write the diagnostic themselves and answer whether
/// they did.

inline bool DeclinesAsNotSwitch(SourceWriter& writer, const IBNode& node) {
  if (node.type == IB_SW_NODE) return false;
  WriteDiagnostic(writer, "// The node=", node.name, " is not a switch");
  return true;
}

#endif
