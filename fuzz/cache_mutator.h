#ifndef FABSCAN_FUZZ_CACHE_MUTATOR_H
#define FABSCAN_FUZZ_CACHE_MUTATOR_H

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "discovery/testing/cache_builder.h"

namespace fabscan {

/// Changes a discovery cache by what it is made of: nodes, ports and links. Its counts, and what it
/// says twice, agree again afterwards, so that most of the results are read to their end. Bytes
/// that are no cache become a small one.
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
