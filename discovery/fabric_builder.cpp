#include "discovery/fabric_builder.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <limits>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "discovery/node_names.h"
#include "discovery/payload_decoder.h"
#include "model/guid_text.h"
#include "records/all_records.h"

namespace fabscan {

namespace {

constexpr char kRouterInfoReason[] =
    "not requested: the public libraries define neither its attribute ID nor its layout";

/// Builds nodes, and collects what they lack.
class NodeBuilder {
 public:
  NodeBuilder(Fabscan& fabscan, DiscoveryReport& report) : fabscan_(fabscan), report_(report) {}

  void Build(const NodeFindings& findings, std::string_view name) {
    missing_.clear();
    missing_of_ports_.clear();

    const SMP_NodeInfo info = Decode<SMP_NodeInfo>(findings.node_info);
    IBNode& node = fabscan_.discovered_fabric.makeNode(name, findings.guid,
                                                       NodeTypeOf(info.NodeType), info.NumPorts);
    store().put(node, info);
    Count(true);
    ++report_.nodes;

    const std::string_view description = DescriptionText(BytesOf(findings.description.payload));
    if (description != name) node.setAlternativeName(description);
    if (findings.description.read()) node.setDescription(description);
    if (Take(findings.description)) missing_.push_back(BecauseOf("NodeDescription"));

    if (node.type == IB_RTR_NODE)
      store().setAbsent(node, TableOf<SMP_RouterInfo>::value.name, kRouterInfoReason);
    if (node.type == IB_SW_NODE) AddSwitchInfo(node, findings.switch_info);
    for (const PortFindings& port : findings.ports) AddPort(node, port);
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

  /// Counts a requested answer. Returns true and sets `reason_` if it failed.
  bool Take(const Answer& answer) {
    if (answer.outcome == Answer::Outcome::kNotAsked) return false;
    Count(answer.read());
    reason_ = answer.reason;
    return !answer.read();
  }

  std::string BecauseOf(std::string_view what) const {
    return fmt::format("{} ({})", what, reason_);
  }

  void AddSwitchInfo(const IBNode& node, const Answer& answer) {
    if (Take(answer)) missing_.push_back(BecauseOf("SwitchInfo"));
    if (answer.read()) {
      store().put(node, Decode<SMP_SwitchInfo>(answer.payload));
    } else if (!answer.reason.empty()) {
      store().setAbsent(node, TableOf<SMP_SwitchInfo>::value.name, answer.reason);
    }
  }

  void AddPort(IBNode& node, const PortFindings& findings) {
    IBPort& port = fabscan_.discovered_fabric.makePort(node, findings.number);
    ++report_.ports;
    if (node.type != IB_SW_NODE) port.guid = findings.guid;
    port.setRemotePort(findings.peer);
    if (Take(findings.info)) Miss(findings.number, BecauseOf("PortInfo"));
    if (findings.info.read()) {
      AddPortInfo(node, port, findings);
    } else if (!findings.info.reason.empty()) {
      store().setAbsent(port, TableOf<SMP_PortInfo>::value.name, findings.info.reason);
    }
    if (Take(findings.extended)) Miss(findings.number, BecauseOf("PortInfoExtended"));
    if (findings.extended.read()) {
      store().put(port, Decode<SMP_PortInfoExtended>(findings.extended.payload));
    } else if (!findings.extended.reason.empty()) {
      LackExtended(port, findings);
    }
  }

  /// Nearly all ports of a cache lack only this, for one reason.
  void LackExtended(const IBPort& port, const PortFindings& findings) {
    const std::string_view reason = findings.extended.reason;
    if (!findings.info.read())
      return store().setAbsent(port, TableOf<SMP_PortInfoExtended>::value.name, reason);
    const bool alike = reason.data() == alike_reason_.data() &&  // compares pointers, not texts
                       reason.size() == alike_reason_.size();
    if (alike_ != nullptr && alike) return store().shareAbsent(port, *alike_);
    store().setAbsent(port, TableOf<SMP_PortInfoExtended>::value.name, reason);
    alike_ = &port;
    alike_reason_ = reason;
  }

  void AddPortInfo(const IBNode& node, IBPort& port, const PortFindings& findings) {
    const SMP_PortInfo info = Decode<SMP_PortInfo>(findings.info.payload);
    port.port_state = PortStateOf(info.PortState);
    store().put(port, info);

    const bool external = port.num != 0 || node.type != IB_SW_NODE;
    if (!external || !findings.scanned || findings.peer || !IsLinked(info)) return;
    reason_ = findings.peer_failure;
    Miss(port.num, reason_.empty() ? "the linked peer" : BecauseOf("the linked peer"));
  }

  /// Reports ports that lack the same together.
  void Miss(unsigned port_number, const std::string& what) {
    missing_of_ports_[what].push_back(port_number);
  }

  Fabscan& fabscan_;
  DiscoveryReport& report_;

  // State of the node that is being built.
  std::vector<std::string> missing_;
  std::map<std::string, std::vector<unsigned>> missing_of_ports_;
  std::string_view reason_;

  const IBPort* alike_ = nullptr;  // lacks only PortInfoExtended,
  std::string_view alike_reason_;  // for this reason
};

/// The names of a fabric's nodes, and their order.
struct NodeOrder {
  explicit NodeOrder(const FindingsSource& findings) : names(Sort(findings)) {}

  std::vector<NodeDescription> Sort(const FindingsSource& findings) {
    std::vector<std::pair<u_int64_t, std::size_t>> by_guid;
    by_guid.reserve(findings.NodeCount());
    for (std::size_t place = 0; place < findings.NodeCount(); ++place) {
      by_guid.emplace_back(findings.Guid(place), place);
    }
    if (!std::is_sorted(by_guid.begin(), by_guid.end())) std::sort(by_guid.begin(), by_guid.end());
    const auto twin = std::adjacent_find(by_guid.begin(), by_guid.end(), [](auto& one, auto& next) {
      return one.first == next.first;
    });
    if (twin != by_guid.end()) {
      throw std::invalid_argument("node GUID in use: " + GuidText(twin->first));
    }

    std::vector<NodeDescription> nodes;
    nodes.reserve(by_guid.size());
    places.reserve(by_guid.size());
    for (const auto& [guid, place] : by_guid) {
      places.push_back(place);
      nodes.push_back({guid, findings.Description(place)});
    }
    return nodes;
  }

  std::vector<std::size_t> places;  // among the findings, ascending by GUID
  NodeNames names;
};

/// Builds the nodes of the findings in order, into any number of models.
class NodesInTurn {
 public:
  explicit NodesInTurn(const FindingsSource& findings) : findings_(findings), order_(findings) {}

  bool Left() const { return next_ < order_.places.size(); }

  /// Builds nodes until the model has `ports` ports, or no node is left.
  void BuildInto(Fabscan& fabscan, std::size_t ports) {
    NodeBuilder builder(fabscan, report_);
    while (Left()) {
      builder.Build(findings_.Node(order_.places[next_], room_), order_.names[next_]);
      ++next_;
      if (fabscan.discovered_fabric.portCount() >= ports) return;
    }
  }

  DiscoveryReport TakeReport() { return std::move(report_); }

 private:
  const FindingsSource& findings_;
  const NodeOrder order_;
  std::size_t next_ = 0;
  NodeFindings room_;
  DiscoveryReport report_;
};

}  // namespace

DiscoveryReport BuildFabric(const FindingsSource& findings, Fabscan& fabscan) {
  NodesInTurn nodes(findings);
  nodes.BuildInto(fabscan, std::numeric_limits<std::size_t>::max());
  return nodes.TakeReport();
}

DiscoveryReport BuildFabricInParts(const FindingsSource& findings, std::size_t ports,
                                   const std::function<void(const Fabscan& part)>& take) {
  NodesInTurn nodes(findings);
  Fabscan part;
  for (; nodes.Left(); part.clear()) {
    nodes.BuildInto(part, ports);
    take(part);
  }
  return nodes.TakeReport();
}

}  // namespace fabscan
