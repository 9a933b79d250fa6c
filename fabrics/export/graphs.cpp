#include <fmt/format.h>
#include <fmt/ostream.h>

#include <map>
#include <string>

#include "fabrics/export/formats.h"
#include "fabrics/export/links.h"
#include "fabrics/natural_order.h"
#include "model/guid_text.h"
#include "model/words.h"

namespace fabscan {

namespace {

/// The nodes of the fabric, and those outside to which links lead: GUID -> name.
std::vector<std::pair<u_int64_t, std::string>> GraphNodes(const IBFabric& fabric,
                                                          const std::vector<Link>& links) {
  std::vector<std::pair<u_int64_t, std::string>> nodes;
  for (const IBNode* node : NodesInNaturalOrder(fabric)) nodes.emplace_back(node->guid, node->name);
  std::map<u_int64_t, std::string> outside;
  for (const Link& link : links) {
    if (link.second.node == nullptr) outside.emplace(link.second.guid, link.second.name());
  }
  nodes.insert(nodes.end(), outside.begin(), outside.end());
  return nodes;
}

std::string RateText(const LinkRate& rate) {
  return fmt::format("{} {}", rate.width_text(), rate.speed_text());
}

const char* ShapeOf(const IBNode* node) {
  if (node == nullptr) return "plaintext";
  return node->type == IB_SW_NODE ? "box" : node->type == IB_RTR_NODE ? "diamond" : "ellipse";
}

/// A name within double quotes; harmless names contain neither quotes nor backslashes.
std::string JsonText(std::string_view name) { return fmt::format("\"{}\"", name); }

}  // namespace

void WriteDot(std::ostream& out, const Fabscan& fabscan) {
  const std::vector<Link> links = LinksOf(fabscan);
  fmt::print(out, "graph fabric {{\n");
  for (const auto& [guid, name] : GraphNodes(fabscan.discovered_fabric, links)) {
    fmt::print(out, "  \"{}\" [label=\"{}\", shape={}]\n", GuidText(guid), name,
               ShapeOf(fabscan.discovered_fabric.getNodeByGuid(guid)));
  }
  for (const Link& link : links) {
    fmt::print(out, "  \"{}\" -- \"{}\" [taillabel=\"{}\", headlabel=\"{}\", label=\"{}\"]\n",
               GuidText(link.first.guid), GuidText(link.second.guid), link.first.number,
               link.second.number, RateText(link.rate));
  }
  fmt::print(out, "}}\n");
}

void WriteMermaid(std::ostream& out, const Fabscan& fabscan) {
  const std::vector<Link> links = LinksOf(fabscan);
  fmt::print(out, "graph LR\n");
  for (const auto& [guid, name] : GraphNodes(fabscan.discovered_fabric, links)) {
    // '#' begins an entity there, such as #35; which stands for itself.
    std::string label;
    for (const char c : name) label += c == '#' ? std::string("#35;") : std::string(1, c);
    fmt::print(out, "  n{:016x}[\"{}\"]\n", guid, label);
  }
  for (const Link& link : links) {
    fmt::print(out, "  n{:016x} ---|\"{} - {}\"| n{:016x}\n", link.first.guid, link.first.number,
               link.second.number, link.second.guid);
  }
}

void WriteNodeLinkJson(std::ostream& out, const Fabscan& fabscan) {
  const std::vector<Link> links = LinksOf(fabscan);
  fmt::print(out, "{{\"directed\":false,\"multigraph\":true,\"graph\":{{}},\n\"nodes\":[");
  const char* comma = "\n";
  for (const auto& [guid, name] : GraphNodes(fabscan.discovered_fabric, links)) {
    const IBNode* node = fabscan.discovered_fabric.getNodeByGuid(guid);
    fmt::print(out, "{}{{\"id\":\"{}\",\"name\":{},\"type\":\"{}\"}}", comma, GuidText(guid),
               JsonText(name), node == nullptr ? "outside" : WordFor(kNodeTypeWords, node->type));
    comma = ",\n";
  }
  fmt::print(out, "],\n\"links\":[");
  comma = "\n";
  for (const Link& link : links) {
    fmt::print(out, "{}{{\"source\":\"{}\",\"sourcePort\":{},\"target\":\"{}\",\"targetPort\":{}",
               comma, GuidText(link.first.guid), link.first.number, GuidText(link.second.guid),
               link.second.number);
    if (link.rate.gbps() > 0) {
      fmt::print(out, ",\"width\":\"{}\",\"speed\":\"{}\",\"gbps\":{}", link.rate.width_text(),
                 link.rate.speed_text(), link.rate.gbps());
    }
    fmt::print(out, "}}");
    comma = ",\n";
  }
  fmt::print(out, "]}}\n");
}

}  // namespace fabscan
