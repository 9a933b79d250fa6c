#include "fabrics/fabric_differences.h"

#include <fmt/format.h>

#include <cstring>

#include "fabrics/natural_order.h"
#include "model/guid_text.h"
#include "model/words.h"
#include "records/record_kinds.h"

namespace fabscan {

namespace {

DifferingValue TextOrNothing(const std::string& text) {
  return text.empty() ? DifferingValue() : text;
}

DifferingValue TextOrNothing(const std::optional<std::string>& text) {
  return text ? DifferingValue(*text) : DifferingValue();
}

DifferingValue GuidOrNothing(u_int64_t guid) {
  return guid == 0 ? DifferingValue() : GuidText(guid);
}

template <class Words, class Value>
DifferingValue WordValue(const Words& words, Value value) {
  return std::string(WordFor(words, value));
}

DifferingValue SpecialWord(const IBNode& node) {
  return node.isSpecialNode() ? WordValue(kSpecialNodeWords, node.getSpecialNodeType())
                              : DifferingValue();
}

/// Snapshots have numbers of 64 bits as texts.
DifferingValue Number(u_int64_t value, std::size_t size) {
  if (size == sizeof value) return fmt::format("{:#x}", value);
  return value;
}

class Comparison {
 public:
  Comparison(const Fabscan& first, const Fabscan& second, const ComparisonOptions& options,
             const std::function<void(const Difference&)>& visit)
      : first_(first), second_(second), options_(options), visit_(visit) {}

  void Run() {
    std::size_t compared = 0;
    for (const IBNode* node : NodesInNaturalOrder(first_.discovered_fabric)) {
      if (options_.progress) options_.progress(compared++, first_.discovered_fabric.nodeCount());
      const IBNode* partner = PartnerOf(*node, second_.discovered_fabric);
      place_ = {node};
      if (partner == nullptr) {
        TellWhole(nullptr, true);
      } else {
        CompareNodes(*node, *partner);
      }
    }
    for (const IBNode* node : NodesInNaturalOrder(second_.discovered_fabric)) {
      if (PartnerOf(*node, first_.discovered_fabric) != nullptr) continue;
      place_ = {node};
      TellWhole(nullptr, false);
    }
  }

 private:
  const IBNode* PartnerOf(const IBNode& node, const IBFabric& in) const {
    if (!options_.by_name) return in.getNodeByGuid(node.guid);
    const auto found = in.NodeByName.find(node.name);
    return found == in.NodeByName.end() ? nullptr : found->second;
  }

  void Tell(std::string field, DifferingValue first, DifferingValue second) {
    place_.field = std::move(field);
    place_.first = std::move(first);
    place_.second = std::move(second);
    visit_(place_);
  }

  void TellWhole(const char* key, bool first_has_it) {
    place_.whole = true;
    Tell(key == nullptr ? "" : key, first_has_it, !first_has_it);
    place_.whole = false;
  }

  /// A value that nodes or ports have besides their records.
  void CompareKey(const char* key, const DifferingValue& first, const DifferingValue& second) {
    if (first != second && !options_.ignored.Has(key)) Tell(key, first, second);
  }

  void CompareNodes(const IBNode& first, const IBNode& second) {
    CompareKey("name", first.name, second.name);
    CompareKey("guid", GuidText(first.guid), GuidText(second.guid));
    CompareKey("type", WordValue(kNodeTypeWords, first.type),
               WordValue(kNodeTypeWords, second.type));
    CompareKey("numPorts", u_int64_t{first.numPorts}, u_int64_t{second.numPorts});
    CompareKey("alternativeName", TextOrNothing(first.getAlternativeName()),
               TextOrNothing(second.getAlternativeName()));
    CompareKey("description", TextOrNothing(first.getDescription()),
               TextOrNothing(second.getDescription()));
    CompareKey("inSubFabric", first.in_sub_fabric, second.in_sub_fabric);
    CompareKey("specialNode", SpecialWord(first), SpecialWord(second));
    CompareKey("opalSwitch", first.isOpalSwitch(), second.isOpalSwitch());
    CompareMasks("smpCapabilityMask", first_.capability_module.find(first, false),
                 second_.capability_module.find(second, false));
    CompareMasks("gmpCapabilityMask", first_.capability_module.find(first, true),
                 second_.capability_module.find(second, true));
    CompareKey("extra", TextOrNothing(first_.discovered_fabric.extraOf(first)),
               TextOrNothing(second_.discovered_fabric.extraOf(second)));
    CompareKinds(kNodeRecords, first, second);
    CompareReasons(first, second);
    for (unsigned number = 0; number <= 255; ++number) {
      ComparePorts(number, first.getPort(static_cast<phys_port_t>(number)),
                   second.getPort(static_cast<phys_port_t>(number)));
    }
  }

  void CompareMasks(const char* key, const capability_mask_t* first,
                    const capability_mask_t* second) {
    if (options_.ignored.Has(key) || (first == nullptr && second == nullptr)) return;
    if (first == nullptr || second == nullptr) {
      TellWhole(key, first != nullptr);
      return;
    }
    for (std::size_t i = 0; i < std::size(first->mask); ++i) {
      if (first->mask[i] == second->mask[i]) continue;
      Tell(fmt::format("{}[{}]", key, i), fmt::format("{:#x}", first->mask[i]),
           fmt::format("{:#x}", second->mask[i]));
    }
  }

  void ComparePorts(unsigned number, const IBPort* first, const IBPort* second) {
    if (first == nullptr && second == nullptr) return;
    place_ = {place_.node, static_cast<int>(number)};
    if (first == nullptr || second == nullptr) {
      TellWhole(nullptr, first != nullptr);
      return;
    }
    CompareKey("state", WordValue(kPortStateWords, first->port_state),
               WordValue(kPortStateWords, second->port_state));
    CompareKey("portGuid", GuidOrNothing(first->guid), GuidOrNothing(second->guid));
    CompareKey("lid", u_int64_t{first->lid}, u_int64_t{second->lid});
    CompareKey("width", WordValue(kLinkWidthWords, first->link_width),
               WordValue(kLinkWidthWords, second->link_width));
    CompareKey("speed", WordValue(kLinkSpeedWords, first->link_speed),
               WordValue(kLinkSpeedWords, second->link_speed));
    CompareKey("inSubFabric", first->getInSubFabric(), second->getInSubFabric());
    CompareKey("fnm", first->isFNMPort(), second->isFNMPort());
    CompareKey("fnm1", first->isFNM1Port(), second->isFNM1Port());
    CompareKey("special", first->isSpecialPort(), second->isSpecialPort());
    CompareKey("extra", TextOrNothing(first_.discovered_fabric.extraOf(*first)),
               TextOrNothing(second_.discovered_fabric.extraOf(*second)));
    CompareKinds(kPortRecords, *first, *second);
    const TesselExtendedInfo& in_first = first_.fabric_extended_info;
    const TesselExtendedInfo& in_second = second_.fabric_extended_info;
    for (u_int32_t index = 0; index < TesselExtendedInfo::kCounterSets; ++index) {
      CompareRecords(kCountersTable, static_cast<int>(index),
                     in_first.getWrenReductionCounters(first->createIndex, index),
                     in_second.getWrenReductionCounters(second->createIndex, index));
    }
    for (u_int8_t selector = 0; selector < TesselExtendedInfo::kMonitorSelectors; ++selector) {
      CompareRecords(
          kMonitorsTable, selector,
          in_first.getWrenReductionConfigureMLIDMonitors(first->createIndex, selector),
          in_second.getWrenReductionConfigureMLIDMonitors(second->createIndex, selector));
    }
    CompareReasons(*first, *second);
  }

  template <class Kinds, class Owner>
  void CompareKinds(const Kinds& kinds, const Owner& first, const Owner& second) {
    for (const auto& kind : kinds) {
      CompareRecords(*kind.table, Difference::kNone, kind.find(first_.fabric_extended_info, first),
                     kind.find(second_.fabric_extended_info, second));
    }
  }

  void CompareRecords(const RecordTable& table, int index, const void* first, const void* second) {
    if (first == nullptr && second == nullptr) return;
    if (options_.ignored.Has(table.name)) return;
    place_.record = table.name;
    place_.index = index;
    if (first == nullptr || second == nullptr) {
      TellWhole(nullptr, first != nullptr);
    } else if (std::memcmp(first, second, table.size) != 0) {
      CompareRows(table, first, second, {}, {});
    }
    place_.record = {};
    place_.index = Difference::kNone;
  }

  /// `plain`: the path of the rows in the record, without the indices in `shown`.
  void CompareRows(const RecordTable& table, const void* first, const void* second,
                   const std::string& plain, const std::string& shown) {
    for (const FieldRow& row : table) {
      const std::string path = plain + std::string(row.name);
      if (options_.ignored.Has(place_.record, path, row)) continue;
      if (options_.ingress_port == IngressPort::kIgnored &&
          DependsOnIngressPort(place_.node->type, table, row, first, second)) {
        continue;
      }
      for (std::size_t i = 0; i < row.count; ++i) {
        std::string name = shown + std::string(row.name);
        if (row.is_array) name += fmt::format("[{}]", i);
        const void* of_first = row.element(first, i);
        const void* of_second = row.element(second, i);
        if (row.nested != nullptr) {
          CompareRows(*row.nested, of_first, of_second, path + '.', name + '.');
          continue;
        }
        const u_int64_t one = LoadNumber(of_first, row.size);
        const u_int64_t other = LoadNumber(of_second, row.size);
        if (one == other) continue;
        Tell(name, Number(one, row.size), Number(other, row.size));
      }
    }
  }

  /// Why records are not there.
  template <class Owner>
  void CompareReasons(const Owner& first, const Owner& second) {
    if (options_.ignored.Has("absent")) return;
    const auto& of_first = first_.fabric_extended_info.absentReasons(first);
    const auto& of_second = second_.fabric_extended_info.absentReasons(second);
    for (const auto& [record, reason] : of_first) {
      const auto other = of_second.find(record);
      CompareReason(record, reason, other == of_second.end() ? DifferingValue() : other->second);
    }
    for (const auto& [record, reason] : of_second) {
      if (of_first.count(record) == 0) CompareReason(record, {}, reason);
    }
  }

  void CompareReason(const std::string& record, const DifferingValue& first,
                     const DifferingValue& second) {
    if (first != second && !options_.ignored.Has(record)) Tell("absent." + record, first, second);
  }

  const Fabscan& first_;
  const Fabscan& second_;
  const ComparisonOptions& options_;
  const std::function<void(const Difference&)>& visit_;
  Difference place_{};
};

}  // namespace

void ForEachDifference(const Fabscan& first, const Fabscan& second,
                       const ComparisonOptions& options,
                       const std::function<void(const Difference&)>& visit) {
  Comparison(first, second, options, visit).Run();
}

}  // namespace fabscan
