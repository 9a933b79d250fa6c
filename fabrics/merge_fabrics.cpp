#include "fabrics/merge_fabrics.h"

#include <fmt/format.h>

#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>

#include "model/guid_text.h"
#include "model/harmless_name.h"
#include "model/links.h"
#include "model/words.h"
#include "records/record_kinds.h"

namespace fabscan {

namespace {

// As the snapshot has them.
std::string ValueText(u_int64_t value) { return fmt::format("{:#x}", value); }
std::string ValueText(phys_port_t number) { return std::to_string(number); }
std::string ValueText(IBNodeType type) { return std::string(WordFor(kNodeTypeWords, type)); }
std::string ValueText(IBPortState state) { return std::string(WordFor(kPortStateWords, state)); }
std::string ValueText(IBLinkWidth width) { return std::string(WordFor(kLinkWidthWords, width)); }
std::string ValueText(IBLinkSpeed speed) { return std::string(WordFor(kLinkSpeedWords, speed)); }
std::string ValueText(u_int16_t lid) { return std::to_string(lid); }
std::string ValueText(IBSpecialPortType type) {
  return std::string(WordFor(kSpecialNodeWords, type));
}

std::string ValueText(const std::optional<RemotePort>& remote) {
  return remote ? fmt::format("port {} of {}", remote->number, GuidText(remote->node_guid))
                : "none";
}
std::string ValueText(const std::optional<std::string>& text) { return text.value_or("nothing"); }
std::string ValueText(const std::string& text) { return text; }

/// Merges values, and counts conflicts.
class ValueMerger {
 public:
  ValueMerger(Prefer prefer, IngressPort ingress_port, MergeResult& result)
      : prefer_(prefer), ingress_port_(ingress_port), result_(result) {}

  void SetPlace(std::string place, IBNodeType type) {
    place_ = std::move(place);
    type_ = type;
  }

  /// `unsaid`: the value that counts as missing.
  template <class Value>
  Value Join(const std::string& what, Value base, Value extra, Value unsaid) {
    if (extra == unsaid) return base;
    if (base == unsaid) return extra;
    return JoinSaid(what, base, extra);
  }

  template <class Value>
  Value JoinSaid(const std::string& what, Value base, Value extra) {
    if (base == extra) return base;
    if (++result_.conflicts == 1) {
      result_.first_conflict =
          fmt::format("{}: {} is {} and {}", place_, what, ValueText(base), ValueText(extra));
    }
    return prefer_ == Prefer::kExtra ? extra : base;
  }

  /// Fills `to`, a record of this type, from the two; one of them may be null.
  void JoinRecord(const RecordTable& table, const void* base, const void* extra, void* to) {
    if (base == nullptr) ++result_.added_records;
    if (base == nullptr || extra == nullptr) {
      std::memcpy(to, base == nullptr ? extra : base, table.size);
    } else {
      JoinRows(table, base, extra, to, std::string(table.name) + '.');
    }
  }

  void JoinMask(const std::string& what, const capability_mask_t* base,
                const capability_mask_t* extra, capability_mask_t& to) {
    if (base == nullptr) ++result_.added_records;
    to = base == nullptr ? *extra : *base;
    if (base == nullptr || extra == nullptr) return;
    for (std::size_t i = 0; i < std::size(to.mask); ++i) {
      to.mask[i] = static_cast<u_int32_t>(JoinSaid(
          fmt::format("{}[{}]", what, i), u_int64_t{base->mask[i]}, u_int64_t{extra->mask[i]}));
    }
  }

 private:
  void JoinRows(const RecordTable& table, const void* base, const void* extra, void* to,
                const std::string& prefix) {
    for (const FieldRow& row : table) {
      for (std::size_t i = 0; i < row.count; ++i) {
        std::string path = prefix + std::string(row.name);
        if (row.is_array) path += fmt::format("[{}]", i);
        const void* of_base = row.element(base, i);
        const void* of_extra = row.element(extra, i);
        if (row.nested != nullptr) {
          JoinRows(*row.nested, of_base, of_extra, row.element(to, i), path + '.');
          continue;
        }
        const u_int64_t one = LoadNumber(of_base, row.size);
        const u_int64_t other = LoadNumber(of_extra, row.size);
        if (KeepsBase(table, row, base, extra, one)) {
          StoreNumber(row.element(to, i), row.size, one);
          continue;
        }
        StoreNumber(row.element(to, i), row.size,
                    row.dumped ? JoinSaid(path, one, other) : Join(path, one, other, u_int64_t{0}));
      }
    }
  }

  /// A base without an ingress port takes that of the other.
  bool KeepsBase(const RecordTable& table, const FieldRow& row, const void* base, const void* extra,
                 u_int64_t value_of_base) const {
    return ingress_port_ == IngressPort::kIgnored &&
           DependsOnIngressPort(type_, table, row, base, extra) &&
           (value_of_base != 0 || row.name != "LocalPortNum");
  }

  Prefer prefer_;
  IngressPort ingress_port_;
  MergeResult& result_;
  std::string place_;
  IBNodeType type_ = IB_UNKNOWN_NODE_TYPE;
};

class FabricMerger {
 public:
  FabricMerger(const Fabscan& base, const Fabscan& extra, Prefer prefer, IngressPort ingress_port,
               Fabscan& to, const NodeProgress& progress)
      : base_(base),
        extra_(extra),
        to_(to),
        progress_(progress),
        values_(prefer, ingress_port, result_) {}

  MergeResult Merge() {
    const std::size_t at_least = base_.discovered_fabric.nodeCount();
    for (const IBNode& node : base_.discovered_fabric.nodes()) {
      Report(node.createIndex, at_least);
      MergeNode(&node, extra_.discovered_fabric.getNodeByGuid(node.guid));
    }
    for (const IBNode& node : extra_.discovered_fabric.nodes()) {
      if (base_.discovered_fabric.getNodeByGuid(node.guid) != nullptr) continue;
      Report(at_least + result_.added_nodes++, 0);
      MergeNode(nullptr, &node);
    }
    if (const auto fault = FindLinkContradiction(to_.discovered_fabric)) {
      throw std::invalid_argument(fmt::format("the link of port {} of {}: {}", fault->port->num,
                                              fault->node->name, fault->text));
    }
    return result_;
  }

 private:
  void Report(std::size_t done, std::size_t total) const {
    if (progress_) progress_(done, total);
  }

  void MergeNode(const IBNode* base, const IBNode* extra) {
    const IBNode& first = base != nullptr ? *base : *extra;
    const IBNode& second = extra != nullptr ? *extra : *base;
    const std::string place = fmt::format("{} ({})", first.name, GuidText(first.guid));
    values_.SetPlace(place, first.type);

    const IBNodeType type = values_.Join("type", first.type, second.type, IB_UNKNOWN_NODE_TYPE);
    const phys_port_t ports = values_.JoinSaid("numPorts", first.numPorts, second.numPorts);
    IBNode& node = MakeNode(first, type, ports, base == nullptr);
    const auto description =
        values_.Join("description", first.getDescription(), second.getDescription(), {});
    if (description) node.setDescription(OriginalName(*description));
    MergeExtra(base, extra, node);
    node.in_sub_fabric = first.in_sub_fabric && second.in_sub_fabric;
    node.setOpalSwitch(first.isOpalSwitch() || second.isOpalSwitch());
    node.setSpecialNodeType(values_.Join("specialNode", first.getSpecialNodeType(),
                                         second.getSpecialNodeType(), IB_NOT_SPECIAL_PORT));
    for (const bool gmp : {false, true}) MergeMask(node, base, extra, gmp);
    MergeRecords(kNodeRecords, base, extra, node);
    for (unsigned number = 0; number <= 255; ++number) {
      const IBPort* of_base = PortOf(base, number);
      const IBPort* of_extra = PortOf(extra, number);
      if (of_base == nullptr && of_extra == nullptr) continue;
      values_.SetPlace(fmt::format("{} port {}", place, number), first.type);
      MergePort(of_base, of_extra, to_.discovered_fabric.makePort(node, phys_port_t(number)));
    }
  }

  /// A name that another node of the base has is made distinct by the GUID.
  IBNode& MakeNode(const IBNode& model, IBNodeType type, phys_port_t ports, bool is_new) {
    std::string name = OriginalName(model.name);
    std::string alternative = OriginalName(model.getAlternativeName());
    if (is_new && to_.discovered_fabric.NodeByName.count(model.name) != 0) {
      if (alternative.empty()) alternative = name;
      name += fmt::format(" [{}]", GuidText(model.guid));
    }
    IBNode& node = to_.discovered_fabric.makeNode(name, model.guid, type, ports);
    node.setAlternativeName(alternative);
    return node;
  }

  static const IBPort* PortOf(const IBNode* node, unsigned number) {
    return node == nullptr ? nullptr : node->getPort(static_cast<phys_port_t>(number));
  }

  void MergePort(const IBPort* base, const IBPort* extra, IBPort& port) {
    const IBPort& first = base != nullptr ? *base : *extra;
    const IBPort& second = extra != nullptr ? *extra : *base;
    port.port_state =
        values_.Join("state", first.port_state, second.port_state, IB_UNKNOWN_PORT_STATE);
    port.guid = values_.Join("portGuid", first.guid, second.guid, u_int64_t{0});
    port.setRemotePort(values_.Join("peer", first.getRemotePort(), second.getRemotePort(), {}));
    port.lid = values_.Join("lid", first.lid, second.lid, u_int16_t{0});
    port.link_width =
        values_.Join("width", first.link_width, second.link_width, IB_UNKNOWN_LINK_WIDTH);
    port.link_speed =
        values_.Join("speed", first.link_speed, second.link_speed, IB_UNKNOWN_LINK_SPEED);
    MergeExtra(base, extra, port);
    port.setInSubFabric(first.getInSubFabric() && second.getInSubFabric());
    port.setFNMPort(first.isFNMPort() || second.isFNMPort());
    port.setFNM1Port(first.isFNM1Port() || second.isFNM1Port());
    port.setSpecialPort(first.isSpecialPort() || second.isSpecialPort());
    MergeRecords(kPortRecords, base, extra, port);
    for (u_int32_t index = 0; index < TesselExtendedInfo::kCounterSets; ++index) {
      const void* of_base = CountersOf(base_, base, index);
      const void* of_extra = CountersOf(extra_, extra, index);
      if (of_base == nullptr && of_extra == nullptr) continue;
      values_.JoinRecord(kCountersTable, of_base, of_extra,
                         &to_.fabric_extended_info.putCounters(port, index));
    }
    for (u_int8_t selector = 0; selector < TesselExtendedInfo::kMonitorSelectors; ++selector) {
      const bool in_base = HasMonitors(base_, base, selector);
      if (!in_base && !HasMonitors(extra_, extra, selector)) continue;
      if (!in_base) ++result_.added_records;
      to_.fabric_extended_info.putMonitors(port, selector);
    }
  }

  template <class Owner>
  void MergeExtra(const Owner* base, const Owner* extra, const Owner& owner) {
    const std::string none;
    const std::string& text =
        values_.Join("extra", base == nullptr ? none : base_.discovered_fabric.extraOf(*base),
                     extra == nullptr ? none : extra_.discovered_fabric.extraOf(*extra), none);
    if (!text.empty()) to_.discovered_fabric.setExtra(owner, text);
  }

  static const void* CountersOf(const Fabscan& from, const IBPort* port, u_int32_t index) {
    if (port == nullptr) return nullptr;
    return from.fabric_extended_info.getWrenReductionCounters(port->createIndex, index);
  }

  static bool HasMonitors(const Fabscan& from, const IBPort* port, u_int8_t selector) {
    return port != nullptr && from.fabric_extended_info.getWrenReductionConfigureMLIDMonitors(
                                  port->createIndex, selector) != nullptr;
  }

  void MergeMask(const IBNode& node, const IBNode* base, const IBNode* extra, bool gmp) {
    const auto find = [gmp](const Fabscan& from, const IBNode* of) {
      return of == nullptr ? nullptr : from.capability_module.find(*of, gmp);
    };
    const capability_mask_t* of_base = find(base_, base);
    const capability_mask_t* of_extra = find(extra_, extra);
    if (of_base == nullptr && of_extra == nullptr) return;
    capability_mask_t mask = {};
    values_.JoinMask(gmp ? "gmpCapabilityMask" : "smpCapabilityMask", of_base, of_extra, mask);
    to_.capability_module.put(node, gmp, mask);
  }

  template <class Kinds, class Owner>
  void MergeRecords(const Kinds& kinds, const Owner* base, const Owner* extra, const Owner& owner) {
    TesselExtendedInfo& store = to_.fabric_extended_info;
    for (const auto& kind : kinds) {
      const void* of_base =
          base == nullptr ? nullptr : kind.find(base_.fabric_extended_info, *base);
      const void* of_extra =
          extra == nullptr ? nullptr : kind.find(extra_.fabric_extended_info, *extra);
      if (of_base == nullptr && of_extra == nullptr) continue;
      values_.JoinRecord(*kind.table, of_base, of_extra, kind.put(store, owner));
    }
    // The base's reasons go over the other's; those of records that are there are not written.
    if (extra != nullptr) CopyReasons(extra_.fabric_extended_info.absentReasons(*extra), owner);
    if (base != nullptr) CopyReasons(base_.fabric_extended_info.absentReasons(*base), owner);
  }

  template <class Owner>
  void CopyReasons(const TesselExtendedInfo::AbsentReasons& reasons, const Owner& owner) {
    for (const auto& [record, reason] : reasons) {
      to_.fabric_extended_info.setAbsent(owner, record, reason);
    }
  }

  const Fabscan& base_;
  const Fabscan& extra_;
  Fabscan& to_;
  const NodeProgress& progress_;
  MergeResult result_;
  ValueMerger values_;
};

}  // namespace

MergeResult MergeFabrics(const Fabscan& base, const Fabscan& extra, Prefer prefer, Fabscan& result,
                         IngressPort ingress_port, const NodeProgress& progress) {
  return FabricMerger(base, extra, prefer, ingress_port, result, progress).Merge();
}

}  // namespace fabscan
