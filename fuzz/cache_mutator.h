#ifndef FABSCAN_FUZZ_CACHE_MUTATOR_H
#define FABSCAN_FUZZ_CACHE_MUTATOR_H

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "discovery/testing/cache_builder.h"

namespace fabscan {

/// Changes the nodes, ports and links of a discovery cache. Counts and repeated values agree
/// afterwards, so that most results are read completely. Bytes that are not a cache become a small
/// one.
class CacheMutator {
 public:
  /// Changes `size` bytes, 1 or more, and keeps their number.
  using ChangeBytes = void (*)(u_int8_t* data, std::size_t size);

  CacheMutator(unsigned seed, ChangeBytes change_bytes)
      : random_(seed), change_bytes_(change_bytes) {}

  std::string Mutated(std::string_view bytes);

 private:
  using Nodes = std::vector<CacheBuilder::Node>;

  std::size_t OneOf(std::size_t count) { return random_() % count; }
  std::size_t PortCount();
  CacheBuilder::Node& AnyNode(Nodes& nodes) { return nodes[OneOf(nodes.size())]; }
  CacheBuilder::Port* AnyPort(Nodes& nodes);

  void Change(Nodes& nodes);
  void AddNode(Nodes& nodes);
  void RemoveNode(Nodes& nodes);
  void AddPort(Nodes& nodes);
  void RemovePort(Nodes& nodes);
  void Link(Nodes& nodes);
  void ChangeIdentity(CacheBuilder::Node& node);
  void ChangeDescription(CacheBuilder::Node& node);
  void ChangePayload(Payload& payload);

  std::minstd_rand random_;
  ChangeBytes change_bytes_;
};

}  // namespace fabscan

#endif
