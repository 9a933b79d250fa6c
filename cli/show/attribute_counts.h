#ifndef FABSCAN_CLI_ATTRIBUTE_COUNTS_H
#define FABSCAN_CLI_ATTRIBUTE_COUNTS_H

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/output/table.h"
#include "fabrics/collected_attributes.h"

namespace fabscan {

/// What one letter of a matrix says of an attribute.
enum Sign : std::size_t { kCollected, kAbsent, kNotCollected, kNotApplicable, kMixed };

Sign SignOf(const Collected& collected);
/// What the sign is called where there is room.
const char* MeaningOf(Sign sign);
Style StyleOf(Sign sign);
/// A letter each.
Cell SignCell(const std::vector<Sign>& signs);
/// Sign by sign what all of `rows`, which is not empty, have in common.
std::vector<Sign> CommonSigns(const std::vector<std::vector<Sign>>& rows);

/// How often each attribute was collected, was absent for a recorded reason, or not collected. Its
/// letters stand at the head of matrices: a and on for the attributes of nodes, the next ones for
/// those of ports.
class AttributeCounts {
 public:
  std::vector<Sign> AddNode(const std::vector<Collected>& list) { return add(list, node_counts_); }
  std::vector<Sign> AddPort(const std::vector<Collected>& list) { return add(list, port_counts_); }

  static std::string NodeLetters() { return letters(0, kNodeAttributes); }
  static std::string PortLetters() { return letters(kNodeAttributes, kPortAttributes); }

  /// What signs and letters stand for, and how often each sign is there.
  std::string Legend(const Terminal& terminal) const;
  /// Why attributes are absent, the most frequent reason of each first; empty when none is.
  std::string Reasons(const Terminal& terminal) const;

 private:
  struct Count {
    std::string_view attribute;
    std::size_t signs[kMixed] = {};
    std::map<std::string_view, std::size_t> reasons;
  };
  static std::vector<Sign> add(const std::vector<Collected>& list, std::vector<Count>& counts);
  static std::string letters(std::size_t first, std::size_t count);
  template <class Visit>
  void forEach(const Visit& visit) const;

  std::vector<Count> node_counts_;
  std::vector<Count> port_counts_;
};

}  // namespace fabscan

#endif
