#include "discovery/node_names.h"

#include <fmt/format.h>
#include <infiniband/tessel/place_index.h>

#include <cstddef>

#include "model/guid_text.h"

namespace fabscan {

namespace {

std::string WithGuid(const NodeDescription& node) {
  return fmt::format("{}{}[{}]", node.text, node.text.empty() ? "" : " ", GuidText(node.guid));
}

/// Which nodes share their description with another node.
std::vector<bool> SharedTexts(const std::vector<NodeDescription>& nodes) {
  PlaceIndex<std::string_view> first(nodes.size());
  std::vector<bool> shared(nodes.size());
  for (u_int32_t place = 0; place < nodes.size(); ++place) {
    if (first.Insert(nodes[place].text, place)) continue;
    shared[place] = true;
    shared[first.Find(nodes[place].text)] = true;
  }
  return shared;
}

}  // namespace

NodeNames::NodeNames(const std::vector<NodeDescription>& nodes) {
  names_.reserve(nodes.size());
  for (const NodeDescription& node : nodes) names_.push_back(node.text);
  const std::vector<bool> shared = SharedTexts(nodes);

  // Names with a GUID differ from each other in that GUID, but a description may look like one of
  // them. Its node then gets its GUID as well, which can bring up another such case.
  std::vector<bool> has_guid(nodes.size());
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      if (has_guid[i]) continue;
      const bool distinct = !nodes[i].text.empty() && !shared[i];
      if (distinct && (with_guid_.empty() || with_guid_.count(nodes[i].text) == 0)) continue;
      names_[i] = *with_guid_.insert(WithGuid(nodes[i])).first;
      has_guid[i] = true;
      changed = true;
    }
  }
}

}  // namespace fabscan
