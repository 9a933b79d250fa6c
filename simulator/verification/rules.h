#ifndef FABSCAN_SIMULATOR_VERIFICATION_RULES_H
#define FABSCAN_SIMULATOR_VERIFICATION_RULES_H

#include <infiniband/fabscan/fabscan.h>

#include <initializer_list>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "records/all_records.h"
#include "records/number.h"
#include "simulator/verification/expected_values.h"

namespace fabscan {

/// A node of the fabric, with the queries that the rules need.
class RuleContext {
 public:
  RuleContext(const Fabscan& fabscan, const IBNode& node)
      : store_(fabscan.fabric_extended_info),
        capabilities_(fabscan.capability_module),
        node_(node) {}

  const IBNode& node() const { return node_; }
  const TesselExtendedInfo& store() const { return store_; }
  const CapabilityModule& capabilities() const { return capabilities_; }
  bool IsSwitch() const { return node_.type == IB_SW_NODE; }
  bool SupportsSmp(u_int8_t bit) const {
    return capabilities_.IsSupportedSMPCapability(&node_, bit);
  }

 private:
  const TesselExtendedInfo& store_;
  const CapabilityModule& capabilities_;
  const IBNode& node_;
};

inline ExpectedFunction Leaves() { return {Outcome::kLeaves, {}}; }
inline ExpectedFunction Refuses() { return {Outcome::kRefuses, {}, {"#error "}}; }

/// The record's fields by the names that generated code gives them.
inline std::map<std::string, u_int64_t> ValuesOf(const RecordTable& table, const void* record) {
  std::map<std::string, u_int64_t> fields;
  ForEachNumber(table, [&](const Number& number) { fields[number.path()] = number.Load(record); });
  return fields;
}

/// Expects the record's values of `fields` (names separated by blanks) in `storage`. The name of an
/// array means all of its elements.
template <class Record>
void Expect(simulator::Assignments& values, const std::string& storage, const Record& record,
            std::string_view fields) {
  const std::map<std::string, u_int64_t> all = ValuesOf(TableOf<Record>::value, &record);
  while (!fields.empty()) {
    const std::string_view name = fields.substr(0, fields.find(' '));
    fields.remove_prefix(std::min(fields.size(), name.size() + 1));
    bool found = false;
    for (const auto& [field, value] : all) {
      const std::string_view base = std::string_view(field).substr(0, name.size());
      const std::string_view rest = std::string_view(field).substr(base.size());
      if (base != name || (!rest.empty() && rest.front() != '[')) continue;
      values[storage][field] = value;
      found = true;
    }
    if (!found) throw std::logic_error("no such field: " + std::string(name));
  }
}

/// The rule of a function that copies fields of one record; without the record, it refuses or does
/// nothing.
template <class Record>
ExpectedFunction Copies(const Record* record, Outcome without, const std::string& storage,
                        std::string_view fields) {
  if (record == nullptr) return without == Outcome::kRefuses ? Refuses() : Leaves();
  ExpectedFunction function{Outcome::kAssigns, {}};
  Expect(function.values, storage, *record, fields);
  return function;
}

/// Ports that have a record: marked ports (FNM, FNM1, special) have their own values; the first
/// other port provides the values of all others.
template <class Record>
struct Ports {
  std::map<unsigned, Record> marked;
  unsigned regular_port = 0;
  Record regular{};  // null or empty if there is none
};

/// `record_of` returns null, or an empty value, for a port without a record.
template <class RecordOf>
auto PortsOf(const IBNode& node, RecordOf record_of) {
  Ports<decltype(record_of(std::declval<const IBPort&>()))> ports;
  for (unsigned number = 1; number <= node.numPorts; ++number) {
    const IBPort* port = node.getPort(static_cast<phys_port_t>(number));
    if (port == nullptr || port->port_state < IB_PORT_STATE_INIT || !port->getInSubFabric()) {
      continue;
    }
    const auto record = record_of(*port);
    if (record == decltype(record_of(*port)){}) continue;
    if (port->isFNMPort() || port->isFNM1Port() || port->isSpecialPort()) {
      ports.marked[port->num] = record;
    } else if (ports.regular_port == 0) {
      ports.regular_port = number;
      ports.regular = record;
    }
  }
  return ports;
}

/// A generated function and what it must do.
struct Rule {
  const char* function;
  ExpectedFunction (*expected)(const RuleContext& context);
};

extern const std::initializer_list<Rule> kNodeRules;
extern const std::initializer_list<Rule> kPortRules;

}  // namespace fabscan

#endif
