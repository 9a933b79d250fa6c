#ifndef FABSCAN_FUZZ_INCONSISTENT_FABRIC_H
#define FABSCAN_FUZZ_INCONSISTENT_FABRIC_H

#include <infiniband/fabscan/fabscan.h>

#include <cstdint>
#include <deque>
#include <set>
#include <string>
#include <vector>

#include "fuzz/bytes.h"

namespace fabscan {

/// A fabric that no discovery would create: port numbers beyond `numPorts` or shared, null ports
/// and nodes, one port under several nodes, creation indices that are shared or beyond every
/// record, types and states that have no word, names with any bytes. Only the names are made
/// harmless, as in the model.
class InconsistentFabric {
 public:
  InconsistentFabric(Bytes& bytes, Fabscan& fabscan);

  /// Replaces the nodes' names with `<N0>`, `<N1>`, … and the alternative ones for `<A0>`, `<A1>`,
  /// …; nothing else changes.
  void UsePlainNames();
  /// The text for a fabric with plain names, with the original names inserted.
  std::string WithFirstNames(const std::string& plain_text) const;

  /// What to dump; empty for all.
  const std::set<std::uint64_t>& guids() const { return guids_; }
  /// The nodes to dump, in order.
  std::vector<const IBNode*> Selected() const;

 private:
  void AddNode(Bytes& bytes);
  void AddPorts(Bytes& bytes, IBNode& node);
  IBPort* TakePort(Bytes& bytes, std::size_t slot);

  Fabscan& fabscan_;
  std::deque<IBNode> nodes_;
  std::deque<IBNode> plain_nodes_;
  std::deque<IBPort> ports_;
  std::set<std::uint64_t> guids_;
};

}  // namespace fabscan

#endif
