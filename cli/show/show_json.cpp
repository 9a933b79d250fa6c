#include <optional>
#include <string>

#include "cli/output/json_result.h"
#include "cli/show/attribute_counts.h"
#include "cli/show/show_report.h"
#include "fabrics/device_models.h"
#include "fabrics/link_rate.h"
#include "model/words.h"

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

/// The hardware and firmware of the node, as far as collected.
void WriteModel(JsonResult& json, const Fabscan& fabscan, const IBNode& node) {
  const DeviceModelKey key = DeviceModelOf(fabscan, node);
  if (fabscan.fabric_extended_info.getSMPNodeInfo(node.createIndex) != nullptr) {
    json.Count("vendorID", key.vendor_id);
    json.Count("deviceID", key.device_id);
    json.Count("revision", key.revision);
  }
  const std::string psid = PsidText(key);
  const std::string firmware = FirmwareText(key);
  if (!psid.empty()) json.Text("psid", psid);
  if (!firmware.empty()) json.Text("firmware", firmware);
}

void WriteLink(JsonResult& json, const Fabscan& fabscan, const IBPort& port) {
  if (port.guid != 0) json.Guid("portGuid", port.guid);
  const std::optional<RemotePort> remote = port.getRemotePort();
  if (!remote) return;
  json.Key("peer");
  json.BeginObject();
  json.Guid("guid", remote->node_guid);
  json.Count("port", remote->number);
  const IBNode* node = fabscan.discovered_fabric.getNodeByGuid(remote->node_guid);
  if (node != nullptr) json.Text("name", node->name);
  json.EndObject();
  const LinkRate rate = LinkRateOf(fabscan, port);
  if (rate.width != IB_UNKNOWN_LINK_WIDTH) json.Text("width", rate.width_text());
  if (rate.speed != IB_UNKNOWN_LINK_SPEED) json.Text("speed", rate.speed_text());
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
    if (node->getDescription()) json.Text("description", *node->getDescription());
    json.Truth("inSubFabric", node->in_sub_fabric);
    json.Truth("opalSwitch", node->isOpalSwitch());
    json.Count("numPorts", node->numPorts);
    WriteModel(json, shown.fabscan, *node);
    WriteCollected(json, CollectedOf(shown.fabscan, *node));
    json.BeginObjects("ports");
    for (const IBPort* port : PortsOf(*node)) {
      json.BeginObject();
      json.Count("num", port->num);
      json.Text("state", WordFor(kPortStateWords, port->port_state));
      if (const auto lid = LidOf(shown.fabscan, *port)) json.Count("lid", *lid);
      WriteLink(json, shown.fabscan, *port);
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
