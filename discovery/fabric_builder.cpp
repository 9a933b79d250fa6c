#include "fabric_builder.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <guid_text.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

#include "node_names.h"
#include "payload_decoder.h"

namespace fabscan {

namespace {

constexpr char kRouterInfoReason[] =
    "not asked for: the public libraries know neither its attribute id nor its layout";

/// Builds one node, and gathers what is missing of it.
class NodeBuilder {
 public:
  NodeBuilder(Fabscan& fabscan, DiscoveryReport& report) : fabscan_(fabscan), report_(report) {}

  void Build(const NodeFindings& findings, const std::string& name) {
    const SMP_NodeInfo info = DecodeNodeInfo(findings.node_info);
    IBNode& node = fabscan_.discovered_fabric.makeNode(name, findings.guid,
                                                       NodeTypeOf(info.NodeType), info.NumPorts);
    store().put(node, info);
    Count(true);
    ++report_.nodes;

    const std::string description = DecodeNodeDescription(findings.description.payload);
    if (description != name) node.setAlternativeName(description);
    if (Take(findings.description)) missing_.push_back("NodeDescription (" + reason_ + ")");

    if (node.type == IB_RTR_NODE) store().setAbsent(node, "SMP_RouterInfo", kRouterInfoReason);
    if (node.type == IB_SW_NODE) AddSwitchInfo(node, findings.switch_info);
    for (const PortFindings& port : findings.ports) AddPort(node, port);
    NoteSecondSpeeds();
    for (const auto& [what, ports] : missing_of_ports_) {
      missing_.push_back(fmt::format("{} of port{} {}", what, ports.size() == 1 ? "" : "s",
                                     fmt::join(ports, ", ")));
    }
    if (!missing_.empty()) {
      report_.gaps.push_back(fmt::format("{} ({}) lacks {}", node.name, GuidText(node.guid),
                                         fmt::join(missing_, "; ")));
    }
  }

 private:
  TesselExtendedInfo& store() { return fabscan_.fabric_extended_info; }

  void Count(bool read) {
    ++report_.attributes_asked;
    if (read) ++report_.attributes_read;
  }

  /// Counts an answer that was asked for. True when it failed; then `reason_` says why.
  bool Take(const Answer& answer) {
    if (answer.outcome == Answer::Outcome::kNotAsked) return false;
    Count(answer.read());
    reason_ = answer.reason;
    return !answer.read();
  }

  void AddSwitchInfo(const IBNode& node, const Answer& answer) {
    if (Take(answer)) missing_.push_back("SwitchInfo (" + reason_ + ")");
    if (answer.read()) {
      store().put(node, DecodeSwitchInfo(answer.payload));
    } else if (!answer.reason.empty()) {
      store().setAbsent(node, "SMP_SwitchInfo", answer.reason);
    }
  }

  void AddPort(IBNode& node, const PortFindings& findings) {
    IBPort& port = fabscan_.discovered_fabric.makePort(node, findings.number);
    ++report_.ports;
    if (Take(findings.info)) Miss(findings.number, "PortInfo (" + reason_ + ")");
    if (findings.info.read()) {
      AddPortInfo(node, port, findings);
    } else if (!findings.info.reason.empty()) {
      store().setAbsent(port, "SMP_PortInfo", findings.info.reason);
    }
    if (Take(findings.extended)) Miss(findings.number, "PortInfoExtended (" + reason_ + ")");
    if (findings.extended.read()) {
      store().put(port, DecodePortInfoExtended(findings.extended.payload));
    } else if (!findings.extended.reason.empty()) {
      store().setAbsent(port, "SMP_PortInfoExtended", findings.extended.reason);
    }
  }

  void AddPortInfo(const IBNode& node, IBPort& port, const PortFindings& findings) {
    const SMP_PortInfo info = DecodePortInfo(findings.info.payload);
    port.port_state = PortStateOf(info.PortState);
    store().put(port, info);
    second_speeds_ = second_speeds_ || HasSecondExtendedSpeeds(info);

    const bool external = port.num != 0 || node.type != IB_SW_NODE;
    if (!external || !findings.scanned || findings.has_peer || !IsLinked(info)) return;
    const std::string& cause = findings.peer_failure;
    Miss(port.num, cause.empty() ? "the linked peer" : "the linked peer (" + cause + ")");
  }

  /// Ports that miss the same are told together.
  void Miss(unsigned port_number, const std::string& what) {
    missing_of_ports_[what].push_back(port_number);
  }

  void NoteSecondSpeeds() {
    if (!second_speeds_) return;
    missing_.push_back(
        "the second set of extended speeds (LinkSpeedExtSup2, LinkSpeedExtEnabled2 and "
        "LinkSpeedExtActive2): the public libraries cannot read it, so it is 0 here");
  }

  Fabscan& fabscan_;
  DiscoveryReport& report_;
  std::vector<std::string> missing_;
  std::map<std::string, std::vector<unsigned>> missing_of_ports_;
  bool second_speeds_ = false;
  std::string reason_;
};

/// What a fabric's nodes are called, and in which order they stand.
struct NodeOrder {
  explicit NodeOrder(const FindingsSource& findings) {
    std::vector<std::pair<u_int64_t, std::size_t>> by_guid;
    by_guid.reserve(findings.NodeCount());
    for (std::size_t place = 0; place < findings.NodeCount(); ++place) {
      by_guid.emplace_back(findings.Guid(place), place);
    }
    std::sort(by_guid.begin(), by_guid.end());
    const auto twin = std::adjacent_find(by_guid.begin(), by_guid.end(), [](auto& one, auto& next) {
      return one.first == next.first;
    });
    if (twin != by_guid.end()) {
      throw std::invalid_argument("node GUID in use: " + GuidText(twin->first));
    }

    std::vector<NodeDescription> descriptions;
    descriptions.reserve(by_guid.size());
    places.reserve(by_guid.size());
    for (const auto& [guid, place] : by_guid) {
      places.push_back(place);
      descriptions.push_back({guid, DecodeNodeDescription(findings.Description(place))});
    }
    names = DistinctNames(descriptions);
  }

  std::vector<std::size_t> places;  // among the findings, ascending by GUID
  std::vector<std::string> names;
};

}  // namespace

DiscoveryReport BuildFabric(const FindingsSource& findings, Fabscan& fabscan) {
  const NodeOrder order(findings);
  DiscoveryReport report;
  NodeFindings room;
  for (std::size_t i = 0; i < order.places.size(); ++i) {
    NodeBuilder(fabscan, report).Build(findings.Node(order.places[i], room), order.names[i]);
  }
  return report;
}

DiscoveryReport BuildFabricInParts(const FindingsSource& findings, std::size_t ports,
                                   const std::function<void(const Fabscan& part)>& take) {
  const NodeOrder order(findings);
  DiscoveryReport report;
  NodeFindings room;
  for (std::size_t i = 0; i < order.places.size();) {
    Fabscan part;
    do {
      NodeBuilder(part, report).Build(findings.Node(order.places[i], room), order.names[i]);
      ++i;
    } while (i < order.places.size() && part.discovered_fabric.portCount() < ports);
    take(part);
  }
  return report;
}

}  // namespace fabscan
