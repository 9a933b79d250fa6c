#include "fabrics/collected_attributes.h"

namespace fabscan {

namespace {

struct RecordOfType {
  std::string_view record;
  IBNodeType type;
};

template <class Record>
constexpr RecordOfType Only(IBNodeType type) {
  return {TableOf<Record>::value.name, type};
}

/// Records that only nodes of one type have.
constexpr RecordOfType kRecordsOfOneType[] = {
    Only<SMP_SwitchInfo>(IB_SW_NODE),         Only<SMP_RouterInfo>(IB_RTR_NODE),
    Only<SMP_ExtendedSwitchInfo>(IB_SW_NODE), Only<ib_private_lft_info>(IB_SW_NODE),
    Only<adaptive_routing_info>(IB_SW_NODE),  Only<CC_CongestionSwitchGeneralSettings>(IB_SW_NODE),
};

bool Applies(std::string_view record, IBNodeType type) {
  if (type == IB_UNKNOWN_NODE_TYPE) return true;
  for (const RecordOfType& row : kRecordsOfOneType) {
    if (row.record == record) return row.type == type;
  }
  return true;
}

void AppendPortAttributes(std::vector<Collected>& list) {
  for (const auto& kind : kPortRecords) list.push_back({kind.table->name});
  list.push_back({kCountersTable.name});
  list.push_back({kMonitorsTable.name});
}

/// Counts records of the tables in `list`, and stores why others are absent.
template <class Owner>
void Fill(std::vector<Collected>& list, const Fabscan& fabscan, const Owner& owner) {
  const auto count = [&list](const RecordTable& table, auto...) {
    for (Collected& collected : list) {
      if (collected.attribute == table.name) ++collected.records;
    }
  };
  ForEachRecord(fabscan.fabric_extended_info, owner, count);
  const auto& reasons = fabscan.fabric_extended_info.absentReasons(owner);
  for (Collected& collected : list) {
    const auto found = reasons.find(collected.attribute);
    if (found != reasons.end() && collected.records == 0) collected.absent = found->second;
  }
}

}  // namespace

std::vector<Collected> CollectedOf(const Fabscan& fabscan, const IBNode& node) {
  std::vector<Collected> list;
  list.reserve(std::size(kNodeRecords) + 2);
  for (const auto& kind : kNodeRecords) {
    list.push_back({kind.table->name, 0, {}, Applies(kind.table->name, node.type)});
  }
  Fill(list, fabscan, node);
  const auto mask = [&](std::string_view name, bool is_gmp) {
    list.push_back({name, fabscan.capability_module.find(node, is_gmp) != nullptr});
  };
  mask("smpCapabilityMask", false);
  mask("gmpCapabilityMask", true);
  return list;
}

std::vector<Collected> CollectedOf(const Fabscan& fabscan, const IBPort& port) {
  std::vector<Collected> list;
  list.reserve(kPortAttributes);
  AppendPortAttributes(list);
  Fill(list, fabscan, port);
  return list;
}

Completeness CompletenessOf(const Fabscan& fabscan, const IBNode& node) {
  std::vector<Collected> list = CollectedOf(fabscan, node);
  const std::size_t first_of_ports = list.size();
  AppendPortAttributes(list);
  for (const IBPort* port : PortsOf(node)) {
    const std::vector<Collected> of_port = CollectedOf(fabscan, *port);
    for (std::size_t i = 0; i < of_port.size(); ++i) {
      list[first_of_ports + i].records += of_port[i].records;
    }
  }
  Completeness completeness;
  for (const Collected& collected : list) {
    if (!collected.applies) continue;
    ++completeness.attributes;
    if (collected.records == 0) completeness.missing.push_back(collected.attribute);
  }
  return completeness;
}

std::vector<const IBPort*> PortsOf(const IBNode& node) {
  std::vector<const IBPort*> ports;
  for (const IBPort* port : node.Ports) {
    if (port != nullptr) ports.push_back(port);
  }
  return ports;
}

}  // namespace fabscan
