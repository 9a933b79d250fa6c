#include "fabrics/cabling.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <string>

#include "fabrics/export/links.h"
#include "model/guid_text.h"
#include "model/harmless_name.h"
#include "model/links.h"
#include "model/suggestion.h"
#include "model/words.h"

namespace fabscan {

namespace {

/// One line of a table: fields between commas; one in quotes may contain commas, and quotes twice.
std::vector<std::string> FieldsOf(std::string_view line) {
  std::vector<std::string> fields(1);
  bool is_quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (c == '"' && is_quoted && i + 1 < line.size() && line[i + 1] == '"') {
      fields.back() += line[++i];
    } else if (c == '"') {
      is_quoted = !is_quoted;
    } else if (c == ',' && !is_quoted) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

class LinkTable {
 public:
  LinkTable(const IBFabric& actual, Fabscan& plan) : actual_(actual), plan_(plan) {}

  void Read(std::string_view csv) {
    while (!csv.empty()) {
      std::string_view line = csv.substr(0, csv.find('\n'));
      csv.remove_prefix(std::min(csv.size(), line.size() + 1));
      ++line_;
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      if (line.empty()) continue;
      columns_.empty() ? SetColumns(FieldsOf(line)) : AddLink(FieldsOf(line));
    }
    if (columns_.empty()) Fail("the table is empty; write it with 'fabscan export --format csv'");
    if (const auto fault = FindLinkContradiction(plan_.discovered_fabric)) {
      throw PlanError(fmt::format("the link of port {} of {}: {}", fault->port->num,
                                  fault->node->name, fault->text));
    }
  }

 private:
  [[noreturn]] void Fail(const std::string& problem) const {
    throw PlanError(fmt::format("line {}: {}", line_, problem));
  }

  void SetColumns(const std::vector<std::string>& names) {
    for (std::size_t i = 0; i < names.size(); ++i) columns_[names[i]] = i;
    for (const char* name : {"name", "port", "remote_name", "remote_port"}) {
      if (columns_.count(name) != 0) continue;
      Fail(fmt::format("the column '{}' is missing; the first line names the columns", name));
    }
  }

  std::string Field(const std::vector<std::string>& fields, const std::string& column) const {
    const auto found = columns_.find(column);
    return found == columns_.end() || found->second >= fields.size() ? std::string()
                                                                     : fields[found->second];
  }

  void AddLink(const std::vector<std::string>& fields) {
    IBPort& port = PortOf(Field(fields, "name"), Field(fields, "guid"), Field(fields, "port"));
    IBPort& remote = PortOf(Field(fields, "remote_name"), Field(fields, "remote_guid"),
                            Field(fields, "remote_port"));
    for (const IBPort* end : {&port, &remote}) {
      if (end->getRemotePort())
        Fail("one of the two ports has a link in an earlier line; keep one");
    }
    const u_int64_t guid = guid_of_port_.at(port.createIndex);
    const u_int64_t remote_guid = guid_of_port_.at(remote.createIndex);
    port.setRemotePort(RemotePort{remote_guid, remote.num});
    remote.setRemotePort(RemotePort{guid, port.num});
    for (IBPort* end : {&port, &remote}) {
      end->link_width = WordOf(kLinkWidthWords, "width", Field(fields, "width"));
      end->link_speed = WordOf(kLinkSpeedWords, "speed", Field(fields, "speed"));
    }
  }

  template <class Value, std::size_t N>
  Value WordOf(const Word<Value> (&words)[N], const char* column, const std::string& given) const {
    for (const Word<Value>& word : words) {
      if (word.text == given) return word.value;
    }
    Fail(fmt::format("{}: {} is not known; use a value such as {}", column, Quoted(given),
                     words[0].text));
  }

  IBPort& PortOf(const std::string& name, const std::string& guid, const std::string& number) {
    IBNode& node = NodeOf(name, guid);
    unsigned port = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), port);
    if (error != std::errc() || end != number.data() + number.size() || port == 0 || port > 254) {
      Fail(fmt::format("{} is not a port number; use 1 to 254", Quoted(number)));
    }
    const auto place = static_cast<phys_port_t>(port);
    if (IBPort* known = node.getPort(place)) return *known;
    IBPort& made = plan_.discovered_fabric.makePort(node, place);
    guid_of_port_.push_back(node.guid);
    return made;
  }

  IBNode& NodeOf(const std::string& name, const std::string& guid_text) {
    const u_int64_t guid = GuidOf(name, guid_text);
    if (IBNode* known = plan_.discovered_fabric.getNodeByGuid(guid)) return *known;
    try {
      constexpr phys_port_t kMostPorts = 254;
      return plan_.discovered_fabric.makeNode(name.empty() ? GuidText(guid) : OriginalName(name),
                                              guid, IB_SW_NODE, kMostPorts);
    } catch (const std::invalid_argument&) {
      Fail(fmt::format("{} has another GUID in an earlier line; correct one of the two",
                       Quoted(name)));
    }
  }

  u_int64_t GuidOf(const std::string& name, const std::string& text) {
    if (!text.empty()) {
      u_int64_t guid = 0;
      const bool has_prefix = text.size() > 2 && text[0] == '0' && (text[1] | 0x20) == 'x';
      const char* const end = text.data() + text.size();
      const auto [after, error] =
          std::from_chars(text.data() + (has_prefix ? 2 : 0), end, guid, 16);
      if (error != std::errc() || after != end) {
        Fail(fmt::format("{} is not a GUID; use hexadecimal digits", Quoted(text)));
      }
      return guid;
    }
    if (name.empty()) Fail("a port has neither the name nor the GUID of its node; add one of them");
    const auto node = actual_.NodeByName.find(name);
    if (node != actual_.NodeByName.end()) return node->second->guid;
    // A node that the fabric does not have: any GUID that nothing else has.
    constexpr u_int64_t kFirst = ~u_int64_t{0};
    return unknown_.emplace(name, kFirst - unknown_.size()).first->second;
  }

  const IBFabric& actual_;
  Fabscan& plan_;
  std::size_t line_ = 0;
  std::map<std::string, std::size_t> columns_;
  std::vector<u_int64_t> guid_of_port_;  // of its node, by creation index
  std::map<std::string, u_int64_t> unknown_;
};

bool operator==(const LinkEnd& one, const LinkEnd& other) {
  return one.guid == other.guid && one.port == other.port;
}

/// Two cables are crossed if each leads where the other should.
std::vector<std::pair<LinkEnd, LinkEnd>> Swaps(const std::vector<LinkDifference>& links) {
  std::vector<std::pair<LinkEnd, LinkEnd>> swaps;
  for (auto one = links.begin(); one != links.end(); ++one) {
    if (one->change != LinkDifference::Change::kMoved) continue;
    for (auto other = std::next(one); other != links.end(); ++other) {
      const bool is_crossed = other->change == LinkDifference::Change::kMoved &&
                              one->before == other->after && one->after == other->before;
      if (is_crossed) swaps.emplace_back(one->before, one->after);
    }
  }
  return swaps;
}

std::vector<SlowLink> SlowLinks(const Fabscan& plan, const Fabscan& actual) {
  std::vector<SlowLink> slow;
  for (const Link& link : LinksOf(actual)) {
    const IBNode* planned_node = plan.discovered_fabric.getNodeByGuid(link.first.guid);
    const IBPort* planned_port =
        planned_node == nullptr ? nullptr : planned_node->getPort(link.first.number);
    if (planned_port == nullptr ||
        planned_port->getRemotePort() != RemotePort{link.second.guid, link.second.number}) {
      continue;
    }
    const LinkRate planned = LinkRateOf(plan, *planned_port);
    // Without a planned rate, or an actual one, there is nothing to compare.
    if (planned.gbps() == 0 || link.rate.gbps() == 0 || link.rate.gbps() >= planned.gbps())
      continue;
    slow.push_back({{link.first.guid, link.first.number, link.first.name()},
                    {link.second.guid, link.second.number, link.second.name()},
                    planned,
                    link.rate});
  }
  return slow;
}

}  // namespace

void ReadLinkTable(std::string_view csv, const Fabscan& actual, Fabscan& plan) {
  LinkTable(actual.discovered_fabric, plan).Read(csv);
}

CablingDifferences CompareCabling(const Fabscan& plan, const Fabscan& actual) {
  CablingDifferences differences;
  differences.links = LinkDifferences(plan.discovered_fabric, actual.discovered_fabric, false);
  differences.swaps = Swaps(differences.links);
  differences.slow = SlowLinks(plan, actual);
  return differences;
}

}  // namespace fabscan
