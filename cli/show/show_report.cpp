#include "cli/show/show_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

#include "cli/files/standard_streams.h"
#include "cli/output/counted.h"
#include "cli/output/node_text.h"
#include "cli/output/table.h"
#include "cli/selection/guid_options.h"
#include "cli/show/attribute_counts.h"
#include "fabrics/device_models.h"
#include "fabrics/link_rate.h"
#include "model/harmless_name.h"
#include "model/links.h"
#include "model/words.h"

namespace fabscan {

namespace {

/// The LID of a port; a dash if it was not collected.
std::string LidText(const Fabscan& fabscan, const IBPort& port) {
  const std::optional<u_int16_t> lid = LidOf(fabscan, port);
  return lid ? std::to_string(*lid) : "-";
}

/// The width and speed of the port's link; nothing if it is down.
LinkRate RateOf(const Fabscan& fabscan, const IBPort& port) {
  return port.num == 0 || port.port_state == IB_PORT_STATE_DOWN ? LinkRate()
                                                                : LinkRateOf(fabscan, port);
}

/// A switch has the LID of its port 0; each port of other nodes has its own.
std::string LidsText(const Fabscan& fabscan, const IBNode& node) {
  std::string text;
  for (const IBPort* port : PortsOf(node)) {
    if (node.type == IB_SW_NODE && port->num != 0) break;
    const std::string lid = LidText(fabscan, *port);
    if (lid != "-") text += (text.empty() ? "" : ",") + lid;
  }
  return OrDash(text);
}

/// `7/8`: active ports, and all ports except port 0.
std::string ActiveText(const IBNode& node) {
  std::size_t active = 0;
  for (const IBPort* port : PortsOf(node)) {
    active += port->num != 0 && port->port_state == IB_PORT_STATE_ACTIVE;
  }
  return fmt::format("{}/{}", active, node.numPorts);
}

/// The number of nodes of each type: `4 SW, 1 RTR`.
std::string TypeCounts(const std::vector<const IBNode*>& nodes) {
  std::string text;
  for (const auto& word : kNodeTypeWords) {
    const auto count = std::count_if(nodes.begin(), nodes.end(), [&word](const IBNode* node) {
      return node->type == word.value;
    });
    if (count != 0) text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, word.text);
  }
  return text.empty() ? text : " (" + text + ")";
}

/// `links: 12, 2 of them to ports outside the snapshot`
std::string LinksText(const IBFabric& fabric) {
  std::size_t ends = 0;
  std::size_t outside = 0;
  for (const IBNode& node : fabric.nodes()) {
    for (const IBPort* port : node.Ports) {
      if (port == nullptr || !port->getRemotePort()) continue;
      ++(RemotePortIn(fabric, *port) == nullptr ? outside : ends);
    }
  }
  if (!KnowsLinks(fabric)) return "links: none collected";
  if (ends + outside == 0) return {};
  std::string text = fmt::format("links: {}", ends / 2 + outside);
  if (outside != 0) text += fmt::format(", {} of them to ports outside the snapshot", outside);
  return text;
}

using Rows = std::vector<std::vector<Sign>>;

/// Counts the node's ports, and adds a row for each except port 0 of a switch, which has no link.
void AddPorts(const Fabscan& fabscan, const IBNode& node, AttributeCounts& counts, Rows& rows) {
  for (const IBPort* port : PortsOf(node)) {
    std::vector<Sign> signs = counts.AddPort(CollectedOf(fabscan, *port));
    if (port->num != 0) rows.push_back(std::move(signs));
  }
}

/// The signs that the nodes, and their ports, have in common.
Cell CommonCell(const Rows& nodes, const Rows& ports) {
  Cell cell = SignCell(CommonSigns(nodes));
  cell.Add(" ", Style::kPlain);
  cell.Add(SignCell(ports.empty() ? std::vector<Sign>(kPortAttributes, kNotCollected)
                                  : CommonSigns(ports)));
  return cell;
}

std::string MatrixLetters() {
  return AttributeCounts::NodeLetters() + ' ' + AttributeCounts::PortLetters();
}

std::string NotesText(const IBNode& node) {
  std::string notes = node.in_sub_fabric ? "" : "outside the sub-fabric";
  if (node.isOpalSwitch()) notes += notes.empty() ? "opal switch" : ", opal switch";
  return notes;
}

std::string NotesText(const IBPort& port) {
  std::string notes;
  const auto add = [&notes](bool holds, const char* note) {
    if (holds) notes += fmt::format("{}{}", notes.empty() ? "" : ", ", note);
  };
  add(!port.getInSubFabric(), "outside the sub-fabric");
  add(port.isFNMPort(), "fnm");
  add(port.isFNM1Port(), "fnm1");
  add(port.isSpecialPort(), "special");
  return notes;
}

std::string MaskText(const capability_mask_t* mask) {
  if (mask == nullptr) return {};
  return fmt::format("0x{:08x} 0x{:08x} 0x{:08x} 0x{:08x}", mask->mask[0], mask->mask[1],
                     mask->mask[2], mask->mask[3]);
}

/// The properties of the node besides its attributes.
std::string IdentityText(const Fabscan& fabscan, const IBNode& node, const Terminal& terminal) {
  Table table({{"node"}, {node.name, false, Narrow::kWrap}});
  const auto add = [&table](const char* what, const std::string& text) {
    if (!text.empty() && text != "-") table.AddRow({what, text});
  };
  const DeviceModelKey key = DeviceModelOf(fabscan, node);
  const SMP_NodeInfo* info = fabscan.fabric_extended_info.getSMPNodeInfo(node.createIndex);
  add("GUID", GuidText(node.guid));
  add("type", KindText(node.type, node.getSpecialNodeType()));
  add("alternative name", node.getAlternativeName());
  if (info != nullptr) add("system GUID", GuidText(info->SystemImageGUID));
  add("vendor", IdText(key.vendor_id, 6));
  add("device", IdText(key.device_id, 4));
  add("revision", IdText(key.revision, 1));
  add("PSID", PsidText(key));
  add("firmware", FirmwareText(key));
  add("SMP capabilities", MaskText(fabscan.capability_module.find(node, false)));
  add("GMP capabilities", MaskText(fabscan.capability_module.find(node, true)));
  add("active ports", ActiveText(node));
  add("notes", NotesText(node));
  return table.text(terminal);
}

std::string NodeAttributesText(const Fabscan& fabscan, const IBNode& node,
                               const Terminal& terminal) {
  Table table({{"attribute"}, {"", false, Narrow::kWrap}});
  for (const Collected& collected : CollectedOf(fabscan, node)) {
    const Sign sign = SignOf(collected);
    if (sign == kNotApplicable) continue;
    const std::string text =
        sign == kAbsent ? "absent: " + ReasonText(*collected.absent) : MeaningOf(sign);
    table.AddRow({std::string(collected.attribute), Cell(text, StyleOf(sign))});
  }
  return table.text(terminal);
}

}  // namespace

std::string ShowHead(const ShownSnapshot& shown, const Terminal& terminal) {
  const IBFabric& fabric = shown.fabscan.discovered_fabric;
  std::string text = Paragraph(
      fmt::format("{}: {}{}, {}", InputName(shown.path), Counted(shown.nodes.size(), "node"),
                  TypeCounts(shown.nodes), Counted(fabric.portCount(), "port")),
      terminal);
  const auto add = [&](const char* what, const std::string& said) {
    if (!said.empty()) text += Paragraph(fmt::format("{}: {}", what, HarmlessName(said)), terminal);
  };
  add("source", shown.header.source);
  add("created", shown.header.created);
  const std::string links = LinksText(fabric);
  if (!links.empty()) text += Paragraph(links, terminal);
  std::vector<const IBNode*> outside;
  std::copy_if(shown.nodes.begin(), shown.nodes.end(), std::back_inserter(outside),
               [](const IBNode* node) { return !node->in_sub_fabric; });
  if (!outside.empty()) {
    text += Paragraph("outside the sub-fabric: " + NamesOf(outside), terminal);
  }
  return text;
}

std::string ShowNodes(const ShownSnapshot& shown, const Terminal& terminal) {
  AttributeCounts counts;
  Table table({{"type"},
               {"GUID"},
               {"LID", true},
               {"active", true},
               {MatrixLetters()},
               {"node", false, Narrow::kCut}});
  for (const IBNode* node : shown.nodes) {
    Rows ports;
    AddPorts(shown.fabscan, *node, counts, ports);
    const Rows nodes = {counts.AddNode(CollectedOf(shown.fabscan, *node))};
    table.AddRow({Cell(KindText(node->type, node->getSpecialNodeType()),
                       node->in_sub_fabric ? Style::kPlain : Style::kQuiet),
                  GuidText(node->guid), LidsText(shown.fabscan, *node), ActiveText(*node),
                  CommonCell(nodes, ports), node->name});
  }
  return table.text(terminal) + '\n' + counts.Legend(terminal) + counts.Reasons(terminal);
}

std::string ShowModels(const ShownSnapshot& shown, const Terminal& terminal) {
  struct Group {
    const IBNode* first = nullptr;
    Rows nodes;
    Rows ports;
  };
  AttributeCounts counts;
  std::map<DeviceModelKey, Group> groups;
  for (const IBNode* node : shown.nodes) {
    Group& group = groups[DeviceModelOf(shown.fabscan, *node)];
    if (group.first == nullptr) group.first = node;
    group.nodes.push_back(counts.AddNode(CollectedOf(shown.fabscan, *node)));
    AddPorts(shown.fabscan, *node, counts, group.ports);
  }
  Table table({{"nodes", true},
               {"type"},
               {"vendor"},
               {"device"},
               {"revision"},
               {"PSID"},
               {"firmware"},
               {MatrixLetters()},
               {"for example", false, Narrow::kCut}});
  for (const auto& [key, group] : groups) {
    table.AddRow({std::to_string(group.nodes.size()), KindText(key.type, key.special),
                  IdText(key.vendor_id, 6), IdText(key.device_id, 4), IdText(key.revision, 1),
                  OrDash(PsidText(key)), OrDash(FirmwareText(key)),
                  CommonCell(group.nodes, group.ports), group.first->name});
  }
  return table.text(terminal) + '\n' + counts.Legend(terminal) + counts.Reasons(terminal);
}

std::string ShowNode(const Fabscan& fabscan, const IBNode& node, const Terminal& terminal) {
  std::string text =
      IdentityText(fabscan, node, terminal) + '\n' + NodeAttributesText(fabscan, node, terminal);
  const std::vector<const IBPort*> ports = PortsOf(node);
  if (ports.empty()) return text;

  AttributeCounts counts;
  Table table({{"port", true},
               {"state"},
               {"LID", true},
               {"width"},
               {"speed"},
               {AttributeCounts::PortLetters()},
               {"remote port"},
               {"", false, Narrow::kWrap}});
  for (const IBPort* port : ports) {
    const Style style = port->port_state == IB_PORT_STATE_ACTIVE ? Style::kGood
                        : port->port_state == IB_PORT_STATE_DOWN ? Style::kQuiet
                                                                 : Style::kWarning;
    const LinkRate rate = RateOf(fabscan, *port);
    table.AddRow({std::to_string(port->num),
                  Cell(std::string(WordFor(kPortStateWords, port->port_state)), style),
                  LidText(fabscan, *port), std::string(rate.width_text()),
                  std::string(rate.speed_text()),
                  SignCell(counts.AddPort(CollectedOf(fabscan, *port))),
                  RemotePortText(fabscan.discovered_fabric, *port), NotesText(*port)});
  }
  return text + '\n' + table.text(terminal) + '\n' + counts.Legend(terminal) +
         counts.Reasons(terminal);
}

}  // namespace fabscan
