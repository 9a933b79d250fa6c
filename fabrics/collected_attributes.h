#ifndef FABSCAN_FABRICS_COLLECTED_ATTRIBUTES_H
#define FABSCAN_FABRICS_COLLECTED_ATTRIBUTES_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "records/record_kinds.h"

namespace fabscan {

/// The contents of a snapshot for one attribute of a node or a port.
struct Collected {
  std::string_view attribute;  // as snapshots name it
  std::size_t records = 0;     // a port can have several counter sets and monitors
  std::optional<std::string_view> absent = std::nullopt;  // why it is absent, if recorded
  bool applies = true;                                    // whether a node of this type can have it
};

/// Records, and capability masks of a node, counter sets and monitors of a port.
inline constexpr std::size_t kNodeAttributes = kNodeRecords.size() + 2;
inline constexpr std::size_t kPortAttributes = kPortRecords.size() + 2;

/// Every attribute that a node, or a port, can have, in the order of snapshots; a node's capability
/// masks follow its records.
std::vector<Collected> CollectedOf(const Fabscan& fabscan, const IBNode& node);
std::vector<Collected> CollectedOf(const Fabscan& fabscan, const IBPort& port);

/// The attributes that a node of this type, or its ports, can have. An attribute of ports counts as
/// collected if one port has it.
struct Completeness {
  std::size_t attributes = 0;
  std::vector<std::string_view> missing;  // attributes without records, in the order of snapshots

  std::size_t collected() const { return attributes - missing.size(); }
};
Completeness CompletenessOf(const Fabscan& fabscan, const IBNode& node);

/// The ports that the node has.
std::vector<const IBPort*> PortsOf(const IBNode& node);

}  // namespace fabscan

#endif
