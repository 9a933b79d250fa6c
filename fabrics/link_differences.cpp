#include "fabrics/link_differences.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "fabrics/natural_order.h"
#include "model/guid_text.h"

namespace fabscan {

namespace {

/// A port, by a node GUID that means the same node in both fabrics.
using Place = std::pair<u_int64_t, phys_port_t>;
/// The other end of each port that has a link.
using Links = std::map<Place, Place>;
using Change = LinkDifference::Change;

class Comparison {
 public:
  Comparison(const IBFabric& first, const IBFabric& second, bool by_name)
      : first_(first), second_(second), by_name_(by_name) {}

  std::vector<LinkDifference> Run() {
    const Links before = LinksOf(first_);
    const Links after = LinksOf(second_);
    const auto end_in = [](const Links& links, const Place& place) {
      const auto found = links.find(place);
      return found == links.end() ? nullptr : &found->second;
    };
    const std::vector<Place> places = PlacesInOrder();
    // A port with another peer than before explains two links, so such ports come first.
    for (const Place& place : places) {
      const Place* was = end_in(before, place);
      const Place* is = end_in(after, place);
      if (was == nullptr || is == nullptr || *was == *is) continue;
      if (!IsTold(place, *was) && !IsTold(place, *is)) Tell(Change::kMoved, place, was, is);
    }
    for (const Place& place : places) {
      const Place* was = end_in(before, place);
      const Place* is = end_in(after, place);
      if (was != nullptr && is != nullptr && *was == *is) continue;
      if (was != nullptr && !IsTold(place, *was)) Tell(Change::kLost, place, was, nullptr);
      if (is != nullptr && !IsTold(place, *is)) Tell(Change::kAdded, place, nullptr, is);
    }
    std::stable_sort(told_in_order_.begin(), told_in_order_.end(),
                     [](auto& one, auto& other) { return one.change < other.change; });
    return std::move(told_in_order_);
  }

 private:
  /// The GUID in the first fabric of a node of the second, if nodes are matched by name.
  u_int64_t CommonGuid(const IBFabric& fabric, u_int64_t guid) const {
    if (!by_name_ || &fabric == &first_) return guid;
    const IBNode* node = fabric.getNodeByGuid(guid);
    if (node == nullptr) return guid;
    const auto partner = first_.NodeByName.find(node->name);
    return partner == first_.NodeByName.end() ? guid : partner->second->guid;
  }

  Links LinksOf(const IBFabric& fabric) const {
    Links links;
    for (const IBNode& node : fabric.nodes()) {
      for (const IBPort* port : node.Ports) {
        if (port == nullptr || !port->getRemotePort()) continue;
        const RemotePort remote = *port->getRemotePort();
        const Place one = {CommonGuid(fabric, node.guid), port->num};
        const Place other = {CommonGuid(fabric, remote.node_guid), remote.number};
        links[one] = other;
        links[other] = one;
      }
    }
    return links;
  }

  /// The ports of both fabrics, by node in natural order.
  std::vector<Place> PlacesInOrder() const {
    std::vector<Place> places;
    for (const IBFabric* fabric : {&first_, &second_}) {
      for (const IBNode* node : NodesInNaturalOrder(*fabric)) {
        for (const IBPort* port : node->Ports) {
          if (port != nullptr) places.push_back({CommonGuid(*fabric, node->guid), port->num});
        }
      }
    }
    return places;
  }

  bool IsTold(const Place& one, const Place& other) const {
    return told_.count(std::minmax(one, other)) != 0;
  }

  void Tell(Change change, const Place& place, const Place* before, const Place* after) {
    for (const Place* other : {before, after}) {
      if (other != nullptr) told_.insert(std::minmax(place, *other));
    }
    told_in_order_.push_back({change, EndOf(place), before == nullptr ? LinkEnd{} : EndOf(*before),
                              after == nullptr ? LinkEnd{} : EndOf(*after)});
  }

  LinkEnd EndOf(const Place& place) const {
    for (const IBFabric* fabric : {&first_, &second_}) {
      const IBNode* node = fabric->getNodeByGuid(place.first);
      if (node != nullptr) return {place.first, place.second, node->name};
    }
    return {place.first, place.second, GuidText(place.first)};
  }

  const IBFabric& first_;
  const IBFabric& second_;
  const bool by_name_;
  std::set<std::pair<Place, Place>> told_;  // the ends of links, the smaller one first
  std::vector<LinkDifference> told_in_order_;
};

}  // namespace

std::vector<LinkDifference> LinkDifferences(const IBFabric& first, const IBFabric& second,
                                            bool by_name) {
  return Comparison(first, second, by_name).Run();
}

}  // namespace fabscan
