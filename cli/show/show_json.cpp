#include <words.h>

#include "attribute_counts.h"
#include "json_result.h"
#include "show_report.h"

namespace fabscan {

namespace {

void WriteCollected(JsonResult& json, const std::vector<Collected>& list) {
  json.Key("collected");
  json.BeginObject();
  for (const Collected& collected : list) {
    if (collected.records != 0) json.Count(collected.attribute, collected.records);
  }
  json.EndObject();
  json.Key("absent");
  json.BeginObject();
  for (const Collected& collected : list) {
    if (collected.absent) json.Text(collected.attribute, *collected.absent);
  }
  json.EndObject();
}

}  // namespace

void ShowJson(const ShownSnapshot& shown) {
  JsonResult json;
  json.Text("snapshot", shown.path);
  if (!shown.header.source.empty()) json.Text("source", shown.header.source);
  if (!shown.header.created.empty()) json.Text("created", shown.header.created);
  json.BeginObjects("nodes");
  for (const IBNode* node : shown.nodes) {
    json.BeginObject();
    json.Text("name", node->name);
    json.Guid("guid", node->guid);
    json.Text("type", WordFor(kNodeTypeWords, node->type));
    if (node->isSpecialNode()) {
      json.Text("specialNode", WordFor(kSpecialNodeWords, node->getSpecialNodeType()));
    }
    if (!node->getAlternativeName().empty()) {
      json.Text("alternativeName", node->getAlternativeName());
    }
    json.Truth("inSubFabric", node->in_sub_fabric);
    json.Truth("opalSwitch", node->isOpalSwitch());
    json.Count("numPorts", node->numPorts);
    WriteCollected(json, CollectedOf(shown.fabscan, *node));
    json.BeginObjects("ports");
    for (const IBPort* port : PortsOf(*node)) {
      json.BeginObject();
      json.Count("num", port->num);
      json.Text("state", WordFor(kPortStateWords, port->port_state));
      const SMP_PortInfo* info =
          shown.fabscan.fabric_extended_info.getSMPPortInfo(port->createIndex);
      if (info != nullptr) json.Count("lid", info->LID);
      json.Truth("inSubFabric", port->getInSubFabric());
      json.Truth("fnm", port->isFNMPort());
      json.Truth("fnm1", port->isFNM1Port());
      json.Truth("special", port->isSpecialPort());
      WriteCollected(json, CollectedOf(shown.fabscan, *port));
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.Flush();
  }
  json.EndArray();
}

}  // namespace fabscan
