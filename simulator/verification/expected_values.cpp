#include "simulator/verification/expected_values.h"

#include <set>

#include "simulator/verification/rules.h"

namespace fabscan {

std::string ExpectedClassOf(const IBNode& node) {
  switch (node.type) {
    case IB_SW_NODE:
      return "SW";
    case IB_RTR_NODE:
      return "RTR";
    default:
      if (!node.isSpecialNode()) return "HCA";
      return node.getSpecialNodeType() == IB_SPECIAL_PORT_AN ? "AN" : "Unknown";
  }
}

std::map<std::string, ExpectedFunction> ExpectedFunctionsOf(const Fabscan& fabscan,
                                                            const IBNode& node) {
  const RuleContext context(fabscan, node);
  std::map<std::string, ExpectedFunction> functions;
  for (const Rule& rule : kNodeRules) functions[rule.function] = rule.expected(context);
  for (const Rule& rule : kPortRules) functions[rule.function] = rule.expected(context);
  return functions;
}

simulator::UnitExpectations ExpectationsOf(
    const std::string& unit, const IBNode& node,
    const std::map<std::string, ExpectedFunction>& functions) {
  simulator::UnitExpectations expectations;
  expectations.unit = unit;
  expectations.last_port = node.numPorts;
  for (const auto& [name, function] : functions) {
    if (function.outcome == Outcome::kAssigns) expectations.functions[name] = function.values;
  }
  std::set<std::pair<unsigned, unsigned>> push_counters;
  for (const auto& storage : expectations.functions["setWrenPushReductionCounters"]) {
    const std::string& name = storage.first;  // pushCounters[PORT][MLID]
    const std::size_t port = name.find('[') + 1;
    const std::size_t mlid = name.find('[', port) + 1;
    const auto key = std::make_pair(static_cast<unsigned>(std::stoul(name.substr(port))),
                                    static_cast<unsigned>(std::stoul(name.substr(mlid))));
    push_counters.insert(key);
    // An adjacent one, which must be unchanged.
    push_counters.emplace(key.first, key.second ^ 1U);
  }
  expectations.push_counters.assign(push_counters.begin(), push_counters.end());
  return expectations;
}

void WriteExpectations(std::ostream& out, const simulator::UnitExpectations& expectations) {
  out << "unit " << expectations.unit << "\nports " << expectations.last_port << '\n';
  for (const auto& [port, mlid] : expectations.push_counters) {
    out << "push " << port << ' ' << mlid << '\n';
  }
  for (const auto& [function, assignments] : expectations.functions) {
    out << "function " << function << '\n';
    for (const auto& [storage, fields] : assignments) {
      for (const auto& [field, value] : fields) {
        out << storage << ' ' << field << " 0x" << std::hex << value << std::dec << '\n';
      }
    }
  }
}

}  // namespace fabscan
