#include "discovery/topology_text.h"

#include <fmt/format.h>

#include <charconv>
#include <optional>

#include "discovery/node_names.h"
#include "model/guid_text.h"
#include "model/links.h"
#include "model/suggestion.h"
#include "model/words.h"
#include "records/all_records.h"

namespace fabscan {

namespace {

constexpr char kNotInText[] = "not in the text of ibnetdiscover";

/// Takes tokens from the beginning of a line.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : text_(text) {}

  std::string_view rest() const { return text_; }

  void SkipBlanks() {
    const std::size_t begin = text_.find_first_not_of(" \t");
    text_.remove_prefix(begin == std::string_view::npos ? text_.size() : begin);
  }
  bool Take(std::string_view word) {
    if (text_.substr(0, word.size()) != word) return false;
    text_.remove_prefix(word.size());
    return true;
  }
  template <class Number>
  std::optional<Number> TakeNumber(int base = 10) {
    Number number = 0;
    const char* const end = text_.data() + text_.size();
    const auto [after, error] = std::from_chars(text_.data(), end, number, base);
    if (error != std::errc()) return std::nullopt;
    text_.remove_prefix(static_cast<std::size_t>(after - text_.data()));
    return number;
  }
  /// `[7]`, and after it `[ext 3]` on a switch in a chassis.
  std::optional<phys_port_t> TakePort() {
    if (!Take("[")) return std::nullopt;
    const auto number = TakeNumber<phys_port_t>();
    if (!number || !Take("]")) return std::nullopt;
    if (Take("[ext ") && (!TakeNumber<unsigned>() || !Take("]"))) return std::nullopt;
    return number;
  }
  /// `(5a1e0c0000000601)`; 0 if there is none.
  std::optional<u_int64_t> TakePortGuid() {
    if (!Take("(")) return u_int64_t{0};
    const auto guid = TakeNumber<u_int64_t>(16);
    return guid && Take(")") ? guid : std::nullopt;
  }
  /// `"S-5a1e0c0000000200"`
  std::optional<u_int64_t> TakeNodeId() {
    if (!Take("\"") || text_.empty()) return std::nullopt;
    text_.remove_prefix(1);  // a letter for the type, which the node's own line gives
    if (!Take("-")) return std::nullopt;
    const auto guid = TakeNumber<u_int64_t>(16);
    return guid && Take("\"") ? guid : std::nullopt;
  }

 private:
  std::string_view text_;
};

/// A comment: the text in quotes, which may contain quotes, and what is before and after it.
struct Comment {
  explicit Comment(std::string_view text) {
    const std::size_t begin = text.find('"');
    const std::size_t end = text.rfind('"');
    if (begin == end) {
      before = text;
      return;
    }
    before = text.substr(0, begin);
    quoted = text.substr(begin + 1, end - begin - 1);
    after = text.substr(end + 1);
  }

  std::string_view before;
  std::string_view quoted;
  std::string_view after;
};

/// The number after ` lid `; 0 if there is none.
u_int16_t LidIn(std::string_view text) {
  const std::size_t at = text.find(" lid ");
  if (at == std::string_view::npos) return 0;
  return Cursor(text.substr(at + 5)).TakeNumber<u_int16_t>().value_or(0);
}

/// The last word, such as `4xNDR`, is the width and speed; words that are not known are left out.
void SetRate(std::string_view text, IBLinkWidth& width, IBLinkSpeed& speed) {
  text = text.substr(text.find_last_of(' ') + 1);
  const std::size_t x = text.find('x');
  if (x == std::string_view::npos) return;
  for (const auto& word : kLinkWidthWords) {
    if (word.text == text.substr(0, x + 1)) width = word.value;
  }
  for (const auto& word : kLinkSpeedWords) {
    if (word.text == text.substr(x + 1)) speed = word.value;
  }
}

struct NodeWord {
  std::string_view word;
  IBNodeType type;
};
constexpr NodeWord kNodeWords[] = {
    {"Switch", IB_SW_NODE}, {"Ca", IB_CA_NODE}, {"Hca", IB_CA_NODE}, {"Rt", IB_RTR_NODE}};

/// Lines that the ports and links do not need: identities of devices, and the grouping by chassis.
constexpr std::string_view kOtherLines[] = {"vendid=", "devid=",  "sysimgguid=", "switchguid=",
                                            "caguid=", "rtguid=", "hcaguid=",    "Chassis",
                                            "Spine",   "Line",    "Non-Chassis"};

}  // namespace

bool MayBeginTopology(char first) {
  return std::string_view("#\n\r \tvdscrhSCHR").find(first) != std::string_view::npos;
}

void TopologyText::Fail(const std::string& problem) const {
  throw TopologyError(fmt::format("line {}: {}", line_, problem));
}

void TopologyText::Add(std::string_view line) {
  ++line_;
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
  if (line.empty() || line.front() == '#') return;
  if (line.front() == '[') return AddPort(line);
  for (const NodeWord& node : kNodeWords) {
    const std::string_view after = line.substr(std::min(line.size(), node.word.size()));
    const bool is_word = !after.empty() && (after.front() == ' ' || after.front() == '\t');
    if (is_word && line.substr(0, node.word.size()) == node.word) return AddNode(after, node.type);
  }
  for (const std::string_view other : kOtherLines) {
    if (line.substr(0, other.size()) == other) return;
  }
  Fail("not a line that ibnetdiscover writes; use its output as it is");
}

void TopologyText::AddNode(std::string_view line, IBNodeType type) {
  Cursor cursor(line);
  cursor.SkipBlanks();
  const auto ports = cursor.TakeNumber<phys_port_t>();
  cursor.SkipBlanks();
  const auto guid = cursor.TakeNodeId();
  if (!ports || !guid) Fail("a node has a number of ports and an identifier, \"S-<GUID>\"");
  cursor.SkipBlanks();
  const Comment comment(cursor.rest());
  const auto [entry, is_new] = nodes_.try_emplace(*guid);
  if (!is_new) {
    Fail(fmt::format("{} is in line {} already; keep one", GuidText(*guid), entry->second.line));
  }
  node_ = &entry->second;
  node_->guid = *guid;
  node_->type = type;
  node_->ports = *ports;
  node_->description = comment.quoted;
  node_->lid = LidIn(comment.after);
  node_->line = line_;
}

void TopologyText::AddPort(std::string_view line) {
  if (node_ == nullptr) Fail("a port before the first node");
  Cursor cursor(line);
  Port port;
  const auto number = cursor.TakePort();
  const auto guid = cursor.TakePortGuid();
  cursor.SkipBlanks();
  const auto peer = cursor.TakeNodeId();
  const auto peer_number = cursor.TakePort();
  if (!number || !guid || !peer || !peer_number) {
    Fail("a port is [number], then \"S-<GUID>\"[number] of its remote port");
  }
  if (*number == 0 || *number > node_->ports) {
    Fail(fmt::format("the node has ports 1 to {}, not {}", node_->ports, *number));
  }
  port.number = *number;
  port.guid = node_->type == IB_SW_NODE ? 0 : *guid;
  port.remote = {*peer, *peer_number};
  const std::size_t hash = cursor.rest().find('#');
  if (hash != std::string_view::npos) {
    const Comment comment(cursor.rest().substr(hash + 1));
    if (node_->type != IB_SW_NODE) port.lid = LidIn(comment.before);
    SetRate(comment.after, port.width, port.speed);
  }
  if (!node_->linked.emplace(*number, port).second) {
    Fail(fmt::format("duplicate port {}; keep one", *number));
  }
}

DiscoveryReport TopologyText::Build(Fabscan& fabscan, bool ended) {
  if (!ended) Fail("the text ends within this line; use the complete text");
  if (nodes_.empty()) Fail("the text contains no nodes; use the output of ibnetdiscover");
  for (const auto& [guid, node] : nodes_) {
    for (const auto& [number, port] : node.linked) {
      const auto other = nodes_.find(port.remote.node_guid);
      if (other != nodes_.end() && other->second.linked.count(port.remote.number) != 0) continue;
      throw TopologyError(fmt::format(
          "line {}: port {} is linked to port {} of {}, which is not in the text; use the complete "
          "text",
          node.line, number, port.remote.number, GuidText(port.remote.node_guid)));
    }
  }
  std::vector<NodeDescription> descriptions;
  for (const auto& [guid, node] : nodes_) descriptions.push_back({guid, node.description});
  const NodeNames names(descriptions);
  DiscoveryReport report;
  std::size_t place = 0;
  for (const auto& [guid, node] : nodes_) BuildNode(fabscan, node, names[place++]);
  if (const auto fault = FindLinkContradiction(fabscan.discovered_fabric)) {
    throw TopologyError(fmt::format("line {}: port {}: {}", nodes_.at(fault->node->guid).line,
                                    fault->port->num, fault->text));
  }
  report.nodes = fabscan.discovered_fabric.nodeCount();
  report.ports = fabscan.discovered_fabric.portCount();
  return report;
}

void TopologyText::BuildNode(Fabscan& fabscan, const Node& from, std::string_view name) const {
  IBFabric& fabric = fabscan.discovered_fabric;
  TesselExtendedInfo& store = fabscan.fabric_extended_info;
  IBNode& node = fabric.makeNode(name, from.guid, from.type, from.ports);
  node.setDescription(from.description);
  if (from.description != name) node.setAlternativeName(from.description);
  store.setAbsent(node, TableOf<SMP_NodeInfo>::value.name, kNotInText);
  if (node.type == IB_SW_NODE) {
    store.setAbsent(node, TableOf<SMP_SwitchInfo>::value.name, kNotInText);
    IBPort& port = fabric.makePort(node, 0);
    port.lid = from.lid;
    store.setAbsent(port, TableOf<SMP_PortInfo>::value.name, kNotInText);
  }
  for (const auto& [number, linked] : from.linked) {
    IBPort& port = fabric.makePort(node, number);
    port.guid = linked.guid;
    port.setRemotePort(linked.remote);
    port.lid = linked.lid;
    port.link_width = linked.width;
    port.link_speed = linked.speed;
    store.setAbsent(port, TableOf<SMP_PortInfo>::value.name, kNotInText);
  }
}

}  // namespace fabscan
