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

/// A value as the snapshot has it: a truth value, a number or a text; nothing on the side that does
/// not have it. Whether a whole node, port or record is there is a truth value.
using DifferingValue = std::variant<std::monostate, bool, u_int64_t, std::string>;

/// One thing in which two fabrics differ. A node, port or record that only one of them has is one
/// difference, whatever is in it.
struct Difference {
  static constexpr int kNone = -1;

  const IBNode* node;            // of the first fabric, or of the second where only that has it
  int port = kNone;              // its number
  std::string_view record = {};  // empty for what nodes and ports have besides records
  int index = kNone;             // of a counter set, or a monitor's selector
  std::string field = {};        // empty where the node, port or record as a whole is meant
  DifferingValue first = {};
  DifferingValue second = {};
  bool whole = false;  // a node, port or record that one side has and the other has not
};

struct ComparisonOptions {
  bool by_name = false;  // joins nodes by name, otherwise by GUID
  IgnoredFields ignored;
  IngressPort ingress_port = IngressPort::kIgnored;
  /// Counts the nodes of the first fabric.
  NodeProgress progress = {};
};

/// Calls `visit` with each difference: by node in natural order, those that only the second fabric
/// has at the end; of a node, what it has itself before its ports.
void ForEachDifference(const Fabscan& first, const Fabscan& second,
                       const ComparisonOptions& options,
                       const std::function<void(const Difference&)>& visit);

}  // namespace fabscan

#endif
