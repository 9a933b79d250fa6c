#include "node_names.h"

#include <fmt/format.h>
#include <guid_text.h>

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace fabscan {

namespace {

std::string WithGuid(const NodeDescription& node) {
  return fmt::format("{}{}[{}]", node.text, node.text.empty() ? "" : " ", GuidText(node.guid));
}

}  // namespace

std::vector<std::string> DistinctNames(const std::vector<NodeDescription>& nodes) {
  std::unordered_map<std::string_view, std::size_t> uses;
  for (const NodeDescription& node : nodes) ++uses[node.text];

  // Names with a GUID differ from each other in that GUID, but a description may look like one of
  // them. Its node then gets its GUID as well, which can bring up another such case.
  std::vector<std::string> names(nodes.size());
  std::unordered_set<std::string> with_guid;
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      if (!names[i].empty()) continue;
      const std::string& text = nodes[i].text;
      if (!text.empty() && uses[text] == 1 && with_guid.count(text) == 0) continue;
      names[i] = WithGuid(nodes[i]);
      with_guid.insert(names[i]);
      changed = true;
    }
  }
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (names[i].empty()) names[i] = nodes[i].text;
  }
  return names;
}

}  // namespace fabscan
