#ifndef FABSCAN_FABRICS_CABLING_H
#define FABSCAN_FABRICS_CABLING_H

#include <infiniband/fabscan/fabscan.h>

#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "fabrics/link_differences.h"
#include "fabrics/link_rate.h"

namespace fabscan {

/// A plan that cannot be read. `what()` gives the line, the cause and the remedy.
class PlanError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Fills the empty `plan` from a table of links, as `export --format csv` writes it: the columns
/// `name`, `port`, `remote_name` and `remote_port`, and, if they are there, `guid`, `remote_guid`,
/// `width` and `speed`. A node without a GUID gets that of the node of its name in `actual`.
void ReadLinkTable(std::string_view csv, const Fabscan& actual, Fabscan& plan);

/// A link that is narrower or slower than planned.
struct SlowLink {
  LinkEnd end;
  LinkEnd other;
  LinkRate planned;
  LinkRate actual;
};

/// How the links of a fabric differ from a plan.
struct CablingDifferences {
  /// Moved: to another port than planned. Lost: missing. Added: not in the plan.
  std::vector<LinkDifference> links;
  std::vector<SlowLink> slow;
  /// Pairs of moved links that are as planned once the cables in these two ports are exchanged.
  std::vector<std::pair<LinkEnd, LinkEnd>> swaps;

  bool none() const { return links.empty() && slow.empty(); }
};

CablingDifferences CompareCabling(const Fabscan& plan, const Fabscan& actual);

}  // namespace fabscan

#endif
