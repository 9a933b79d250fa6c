#ifndef FABSCAN_FABRICS_FABRIC_DIFFERENCES_H
#define FABSCAN_FABRICS_FABRIC_DIFFERENCES_H

#include <infiniband/fabscan/fabscan.h>

#include <functional>
#include <string>
#include <variant>

#include "fabrics/ignored_fields.h"
#include "fabrics/ingress_port.h"
#include "fabrics/progress.h"

namespace fabscan {

/// A value as in the snapshot: a boolean, a number or text; nothing on a side without it. A boolean
/// also means that a whole node, port or record is present.
using DifferingValue = std::variant<std::monostate, bool, u_int64_t, std::string>;

/// One difference between two fabrics. A node, port or record in only one of them is one
/// difference.
struct Difference {
  static constexpr int kNone = -1;

  const IBNode* node;            // of the first fabric, or of the second if only that has it
  int port = kNone;              // its number
  std::string_view record = {};  // empty for other properties of nodes and ports
  int index = kNone;             // index of a counter set, or selector of a monitor
  std::string field = {};        // empty for a whole node, port or record
  DifferingValue first = {};
  DifferingValue second = {};
  bool whole = false;  // a node, port or record that only one side has
};

struct ComparisonOptions {
  bool by_name = false;  // matches nodes by name, otherwise by GUID
  IgnoredFields ignored;
  IngressPort ingress_port = IngressPort::kIgnored;
  /// Counts the nodes of the first fabric.
  NodeProgress progress = {};
};

/// Calls `visit` with each difference: by node in natural order, nodes of only the second
/// fabric last; for a node, its own differences before those of its ports.
void ForEachDifference(const Fabscan& first, const Fabscan& second,
                       const ComparisonOptions& options,
                       const std::function<void(const Difference&)>& visit);

}  // namespace fabscan

#endif
