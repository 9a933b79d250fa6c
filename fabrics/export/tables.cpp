#include <fmt/format.h>
#include <fmt/ostream.h>

#include <string>

#include "fabrics/export/formats.h"
#include "fabrics/export/links.h"
#include "fabrics/natural_order.h"
#include "fabrics/topology_levels.h"
#include "model/guid_text.h"

namespace fabscan {

namespace {

/// A field of a table; in quotes if it contains a comma. Harmless names contain no quotes.
std::string Field(const std::string& text) {
  return text.find(',') == std::string::npos ? text : '"' + text + '"';
}

std::string LidField(const Fabscan& fabscan, const LinkedPort& end) {
  if (end.port == nullptr) return {};
  const auto lid = BaseLidOf(fabscan, *end.node, *end.port);
  return lid ? std::to_string(*lid) : std::string();
}

}  // namespace

void WriteLinkTable(std::ostream& out, const Fabscan& fabscan) {
  fmt::print(out,
             "name,guid,port,lid,remote_name,remote_guid,remote_port,remote_lid,width,speed\n");
  for (const Link& link : LinksOf(fabscan)) {
    fmt::print(out, "{},{},{},{},{},{},{},{},{},{}\n", Field(link.first.name()),
               GuidText(link.first.guid), link.first.number, LidField(fabscan, link.first),
               Field(link.second.node == nullptr ? "" : link.second.name()),
               GuidText(link.second.guid), link.second.number, LidField(fabscan, link.second),
               link.rate.width_text(), link.rate.speed_text());
  }
}

void WriteNodeNameMap(std::ostream& out, const Fabscan& fabscan) {
  for (const IBNode* node : NodesInNaturalOrder(fabscan.discovered_fabric)) {
    fmt::print(out, "{} \"{}\"\n", GuidText(node->guid), node->name);
  }
}

void WriteRootGuids(std::ostream& out, const Fabscan& fabscan) {
  const TopologyLevels levels(fabscan.discovered_fabric);
  for (const IBNode* node : NodesInNaturalOrder(fabscan.discovered_fabric)) {
    const bool is_root = node->type == IB_SW_NODE && levels.Of(*node) == levels.top();
    if (is_root) fmt::print(out, "{}\n", GuidText(node->guid));
  }
}

void WriteAdapterGuids(std::ostream& out, const Fabscan& fabscan) {
  for (const IBNode* node : NodesInNaturalOrder(fabscan.discovered_fabric)) {
    if (node->type != IB_CA_NODE || node->isSpecialNode()) continue;
    for (const IBPort* port : node->Ports) {
      if (port != nullptr && port->guid != 0) fmt::print(out, "{}\n", GuidText(port->guid));
    }
  }
}

}  // namespace fabscan
