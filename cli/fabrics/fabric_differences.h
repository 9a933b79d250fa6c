#ifndef FABSCAN_CLI_FABRIC_DIFFERENCES_H
#define FABSCAN_CLI_FABRIC_DIFFERENCES_H

#include <infiniband/fabscan/fabscan.h>

#include <functional>
#include <string>

#include "ignored_fields.h"

namespace fabscan {

/// One thing in which two fabrics differ. A node, port or record that only one of them has is one
/// difference, whatever is in it.
struct Difference {
  static constexpr int kNone = -1;

  const IBNode* node;            // of the first fabric, or of the second where only that has it
  int port = kNone;              // its number
  std::string_view record = {};  // empty for what nodes and ports have besides records
  int index = kNone;             // of a counter set, or a monitor's selector
  std::string field = {};        // empty where the node, port or record as a whole is meant
  std::string first = {};        // the values; empty on the side that does not have it
  std::string second = {};
  bool whole = false;  // a node, port or record that one side has and the other has not
};

/// What stands for the value of a whole node, port or record on the side that has it.
inline constexpr char kThere[] = "there";

struct ComparisonOptions {
  bool by_name = false;  // joins nodes by name, otherwise by GUID
  IgnoredFields ignored;
  /// Called for each node of the first fabric with how many were compared, and how many there are.
  std::function<void(std::size_t done, std::size_t total)> progress = {};
};

/// Calls `visit` with each difference: by node in the order of the first fabric's names, then the
/// nodes that only the second one has; of a node, what it has itself before its ports.
void ForEachDifference(const Fabscan& first, const Fabscan& second,
                       const ComparisonOptions& options,
                       const std::function<void(const Difference&)>& visit);

}  // namespace fabscan

#endif
