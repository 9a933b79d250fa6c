#include <fmt/format.h>
#include <fmt/ostream.h>

#include "fabrics/export/formats.h"
#include "fabrics/export/links.h"
#include "fabrics/natural_order.h"

namespace fabscan {

namespace {

/// A type of node, in the words of the text.
struct Words {
  std::string_view type;
  std::string_view guid;
  char letter;
};

Words WordsOf(const IBNode& node) {
  switch (node.type) {
    case IB_SW_NODE:
      return {"Switch", "switchguid", 'S'};
    case IB_RTR_NODE:
      return {"Rt", "rtguid", 'R'};
    default:
      return {"Ca", "caguid", 'H'};
  }
}

std::string Description(const IBNode& node) { return node.getDescription().value_or(node.name); }

class TopologyText {
 public:
  TopologyText(std::ostream& out, const Fabscan& fabscan)
      : out_(out), fabscan_(fabscan), store_(fabscan.fabric_extended_info) {}

  void Write() {
    fmt::print(out_, "#\n# Topology file: written by fabscan export\n#\n");
    for (const bool switches : {true, false}) {
      for (const IBNode* node : NodesInNaturalOrder(fabscan_.discovered_fabric)) {
        if ((node->type == IB_SW_NODE) == switches) WriteNode(*node);
      }
    }
  }

 private:
  void WriteNode(const IBNode& node) {
    const Words words = WordsOf(node);
    fmt::print(out_, "\n");
    if (const SMP_NodeInfo* info = store_.getSMPNodeInfo(node.createIndex)) {
      fmt::print(out_, "vendid={:#x}\ndevid={:#x}\nsysimgguid={:#x}\n", info->VendorID,
                 info->DeviceID, info->SystemImageGUID);
    }
    fmt::print(out_, "{}={:#x}", words.guid, node.guid);
    if (node.type == IB_SW_NODE) fmt::print(out_, "({:x})", PortGuidOf(node));
    fmt::print(out_, "\n{}\t{} \"{}-{:016x}\"\t\t# \"{}\"", words.type, node.numPorts, words.letter,
               node.guid, Description(node));
    if (node.type == IB_SW_NODE) WriteManagementPort(node);
    fmt::print(out_, "\n");
    for (const IBPort* port : node.Ports) {
      if (port != nullptr && port->getRemotePort()) WritePort(node, *port);
    }
  }

  u_int64_t PortGuidOf(const IBNode& node) const {
    const SMP_NodeInfo* info = store_.getSMPNodeInfo(node.createIndex);
    return info == nullptr ? node.guid : info->PortGUID;
  }

  void WriteManagementPort(const IBNode& node) {
    const SMP_SwitchInfo* info = store_.getSMPSwitchInfo(node.createIndex);
    const IBPort* port = node.getPort(0);
    fmt::print(out_, " {} port 0 lid {} lmc {}",
               info != nullptr && info->ENP0 != 0 ? "enhanced" : "base",
               port == nullptr ? 0 : LidOf(fabscan_, *port).value_or(0), LmcOf(port));
  }

  unsigned LmcOf(const IBPort* port) const {
    const SMP_PortInfo* info = port == nullptr ? nullptr : store_.getSMPPortInfo(port->createIndex);
    return info == nullptr ? 0 : info->LMC;
  }

  void WritePort(const IBNode& node, const IBPort& port) {
    const RemotePort remote = *port.getRemotePort();
    const IBNode* other = fabscan_.discovered_fabric.getNodeByGuid(remote.node_guid);
    const IBPort* there = other == nullptr ? nullptr : other->getPort(remote.number);
    const bool is_switch = node.type == IB_SW_NODE;

    fmt::print(out_, "[{}]", port.num);
    if (!is_switch) fmt::print(out_, "({:x}) ", port.guid);
    // Only a switch has so many ports that one outside can be taken for one.
    fmt::print(out_, "\t\"{}-{:016x}\"[{}]", other == nullptr ? 'S' : WordsOf(*other).letter,
               remote.node_guid, remote.number);
    if (there != nullptr && other->type != IB_SW_NODE) fmt::print(out_, "({:x}) ", there->guid);
    fmt::print(out_, "\t\t#");
    if (!is_switch) {
      fmt::print(out_, " lid {} lmc {}", LidOf(fabscan_, port).value_or(0), LmcOf(&port));
    }
    fmt::print(out_, " \"{}\" lid {}", other == nullptr ? "" : Description(*other),
               there == nullptr ? 0 : BaseLidOf(fabscan_, *other, *there).value_or(0));
    const LinkRate rate = LinkRateOf(fabscan_, port);
    if (rate.gbps() > 0) fmt::print(out_, " {}{}", rate.width_text(), rate.speed_text());
    fmt::print(out_, "\n");
  }

  std::ostream& out_;
  const Fabscan& fabscan_;
  const TesselExtendedInfo& store_;
};

}  // namespace

void WriteIbnetdiscover(std::ostream& out, const Fabscan& fabscan) {
  TopologyText(out, fabscan).Write();
}

}  // namespace fabscan
