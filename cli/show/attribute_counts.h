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

/// What a sign in a matrix means for an attribute.
enum Sign : std::size_t { kCollected, kAbsent, kNotCollected, kNotApplicable, kMixed };

Sign SignOf(const Collected& collected);
/// The long form of the sign.
const char* MeaningOf(Sign sign);
Style StyleOf(Sign sign);
/// One letter per sign.
Cell SignCell(const std::vector<Sign>& signs);
/// For each position, the sign that all of `rows` have in common. `rows` is not empty.
std::vector<Sign> CommonSigns(const std::vector<std::vector<Sign>>& rows);

/// How often each attribute was collected, absent for a recorded reason, or not collected. The
/// matrices have one letter per attribute as column heads: first those of nodes, then those of
/// ports.
class AttributeCounts {
 public:
  std::vector<Sign> AddNode(const std::vector<Collected>& list) { return add(list, node_counts_); }
  std::vector<Sign> AddPort(const std::vector<Collected>& list) { return add(list, port_counts_); }

  static std::string NodeLetters() { return letters(0, kNodeAttributes); }
  static std::string PortLetters() { return letters(kNodeAttributes, kPortAttributes); }

  /// The meaning of signs and letters, and how often each sign occurs.
  std::string Legend(const Terminal& terminal) const;
  /// Why attributes are absent, for each the most frequent reason first; empty if none is absent.
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
