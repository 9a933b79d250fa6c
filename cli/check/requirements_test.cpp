#include "cli/check/requirements.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "cli/check/cause.h"
#include "cli/dump/function_body.h"
#include "records/record_kinds.h"

namespace fabscan {
namespace {

constexpr int kBits = CapabilityModule::kBits;
constexpr phys_port_t kPorts = 3;
constexpr phys_port_t kMarked = 3;  // the special port

/// Which masks and records a node has.
struct Contents {
  IBNodeType type = IB_SW_NODE;
  IBSpecialPortType special = IB_NOT_SPECIAL_PORT;
  std::set<std::string> without;  // keys of masks, names of records
  std::set<int> clear_smp;        // bits of the masks
  std::set<int> clear_gmp;
  std::set<int> without_ports;  // ports that have no records
  std::set<int> without_monitors;
  std::set<int> inactive_ports;
  u_int8_t congestion_version = 1;

  bool Has(std::string_view name) const { return without.count(std::string(name)) == 0; }
};

/// Every mask and record.
Contents Whole(IBNodeType type) {
  Contents contents;
  contents.type = type;
  return contents;
}

capability_mask_t MaskWithout(const std::set<int>& bits) {
  capability_mask_t mask = {{~0U, ~0U, ~0U, ~0U}};
  for (const int bit : bits) mask.mask[bit / 32] &= ~(1U << (bit % 32));
  return mask;
}

/// The requirement of the function, which must have one.
const Requirement& RequirementOf(const FunctionBody& body) {
  static const Requirement kNone{};
  const Requirement* requirement = FindRequirement(body.function->name);
  EXPECT_NE(requirement, nullptr) << body.function->name;
  return requirement != nullptr ? *requirement : kNone;
}

/// Nodes with different contents in one fabric, and what the generator writes for each.
class Generated {
 public:
  void Add(const Contents& contents) {
    const std::string name = "N" + std::to_string(10'000 + contents_.size());
    IBNode& node =
        fabscan_.discovered_fabric.makeNode(name, 1 + contents_.size(), contents.type, kPorts);
    node.setSpecialNodeType(contents.special);
    contents_.push_back(contents);
    auto& store = fabscan_.fabric_extended_info;
    for (const auto& kind : kNodeRecords) {
      if (contents.Has(kind.table->name)) kind.put(store, node);
    }
    if (contents.Has("CC_EnhancedCongestionInfo")) {
      store.put<CC_EnhancedCongestionInfo>(node).ver0 = contents.congestion_version;
    }
    if (contents.Has("smpCapabilityMask")) {
      fabscan_.capability_module.put(node, false, MaskWithout(contents.clear_smp));
    }
    if (contents.Has("gmpCapabilityMask")) {
      fabscan_.capability_module.put(node, true, MaskWithout(contents.clear_gmp));
    }
    for (int number = contents.type == IB_SW_NODE ? 0 : 1; number <= kPorts; ++number) {
      AddPort(node, number, contents);
    }
  }

  using Visit = std::function<void(const Contents&, const IBNode&, const FunctionBody&)>;
  /// Calls `visit` for each function of each node.
  void ForEachFunction(const Visit& visit) {
    BodyQuery query(fabscan_);
    for (std::size_t i = 0; i < contents_.size(); ++i) {
      const IBNode& node = *fabscan_.discovered_fabric.getNodeByGuid(i + 1);
      for (const FunctionBody& body : query.Ask(node).functions) visit(contents_[i], node, body);
    }
  }
  std::optional<Cause> Unmet(const IBNode& node, const FunctionBody& body) const {
    return UnmetRequirement(fabscan_, node, RequirementOf(body));
  }

 private:
  void AddPort(IBNode& node, int number, const Contents& contents) {
    IBPort& port = fabscan_.discovered_fabric.makePort(node, static_cast<phys_port_t>(number));
    const bool active = contents.inactive_ports.count(number) == 0;
    port.port_state = active ? IB_PORT_STATE_ACTIVE : IB_PORT_STATE_DOWN;
    port.setSpecialPort(number == kMarked);
    if (contents.without_ports.count(number) != 0) return;
    auto& store = fabscan_.fabric_extended_info;
    for (const auto& kind : kPortRecords) {
      if (contents.Has(kind.table->name)) kind.put(store, port);
    }
    if (contents.Has(kCountersTable.name)) store.putCounters(port, 7);
    if (!contents.Has(kMonitorsTable.name)) return;
    for (const int selector : {0, 1}) {
      if (contents.without_monitors.count(selector) != 0) continue;
      store.putMonitors(port, static_cast<u_int8_t>(selector));
    }
  }

  Fabscan fabscan_;
  std::vector<Contents> contents_;
};

bool IsBlock(const FunctionBody& body) {
  return body.mark == Mark::kBlock || body.mark == Mark::kHand;
}

/// The names that a function's row gives: of masks and of records.
std::set<std::string> NamesIn(const Requirement& row) {
  std::set<std::string> names;
  if (row.mask != GatingMask::kNone) names.emplace(MaskKey(row.mask));
  for (const NeededRecord& needed : row.records) {
    names.emplace(needed.name);
    if (needed.monitor != NeededRecord::kNoMonitor) names.emplace(kMonitorsTable.name);
  }
  return names;
}

/// The nodes of the tests that follow: each function is a block for one of them.
const std::vector<Contents> kWholeNodes = {Whole(IB_SW_NODE), Whole(IB_RTR_NODE),
                                           Whole(IB_CA_NODE)};

TEST(RequirementsTest, RowsAreTheGeneratedFunctions) {
  Generated generated;
  generated.Add(kWholeNodes[0]);
  std::vector<std::string> written;
  const auto visit = [&](const Contents&, const IBNode&, const FunctionBody& body) {
    written.emplace_back(body.function->name);
  };
  generated.ForEachFunction(visit);
  std::vector<std::string> rows;
  for (const Requirement& row : Requirements()) rows.emplace_back(row.function);
  EXPECT_EQ(rows, written);
}

TEST(RequirementsTest, RowsNameTheNodesThatHaveTheAttribute) {
  Generated generated;
  for (const Contents& whole : kWholeNodes) generated.Add(whole);
  for (const IBSpecialPortType special : {IB_SPECIAL_PORT_AN, IB_SPECIAL_PORT_ROUTER}) {
    Contents contents = Whole(IB_CA_NODE);
    contents.special = special;
    generated.Add(contents);
  }
  const auto visit = [&](const Contents& contents, const IBNode&, const FunctionBody& body) {
    bool expected = false;
    switch (RequirementOf(body).nodes) {
      case AttributeOf::kAllNodes:
        expected = true;
        break;
      case AttributeOf::kSwitches:
        expected = contents.type == IB_SW_NODE;
        break;
      case AttributeOf::kRouters:
        expected = contents.type == IB_RTR_NODE;
        break;
      case AttributeOf::kNotSpecial:
        expected = contents.special == IB_NOT_SPECIAL_PORT;
        break;
    }
    EXPECT_EQ(IsBlock(body), expected) << body.function->name << ' ' << contents.type;
  };
  generated.ForEachFunction(visit);
}

TEST(RequirementsTest, EachBitGatesTheFunctionsThatNameIt) {
  Generated generated;
  for (const Contents& whole : kWholeNodes) {
    for (int bit = 0; bit < kBits; ++bit) {
      Contents contents = whole;
      contents.clear_smp = {bit};
      generated.Add(contents);
      contents.clear_smp.clear();
      contents.clear_gmp = {bit};
      generated.Add(contents);
    }
  }
  const auto visit = [&](const Contents& contents, const IBNode& node, const FunctionBody& body) {
    const std::optional<Cause> cause = generated.Unmet(node, body);
    if (cause && cause->code == CauseCode::kNodeType) return;
    const Requirement& row = RequirementOf(body);
    const bool smp = !contents.clear_smp.empty();
    const int bit = smp ? *contents.clear_smp.begin() : *contents.clear_gmp.begin();
    const bool gates = row.mask == (smp ? GatingMask::kSMP : GatingMask::kGMP) &&
                       std::count(row.bits.begin(), row.bits.end(), bit) != 0;
    EXPECT_EQ(IsBlock(body), !gates) << body.function->name << ' ' << bit;
    if (gates) {
      ASSERT_TRUE(cause);
      EXPECT_EQ(cause->code, CauseCode::kNotSupported);
      EXPECT_EQ(cause->bits, std::vector<unsigned>{static_cast<unsigned>(bit)});
    }
  };
  generated.ForEachFunction(visit);
}

/// The keys of both masks and the names of all records.
std::vector<std::string> EveryName() {
  std::vector<std::string> names = {"smpCapabilityMask", "gmpCapabilityMask"};
  for (const auto& kind : kNodeRecords) names.emplace_back(kind.table->name);
  for (const auto& kind : kPortRecords) names.emplace_back(kind.table->name);
  names.emplace_back(kCountersTable.name);
  names.emplace_back(kMonitorsTable.name);
  return names;
}

TEST(RequirementsTest, EachMaskAndRecordIsNeededByTheFunctionsThatNameIt) {
  Generated generated;
  for (const Contents& whole : kWholeNodes) {
    for (const std::string& name : EveryName()) {
      Contents contents = whole;
      contents.without = {name};
      generated.Add(contents);
    }
  }
  std::set<std::string> needed;
  const auto visit = [&](const Contents& contents, const IBNode& node, const FunctionBody& body) {
    const std::optional<Cause> cause = generated.Unmet(node, body);
    if (cause && cause->code == CauseCode::kNodeType) return;
    const std::string& name = *contents.without.begin();
    const bool names_it = NamesIn(RequirementOf(body)).count(name) != 0;
    EXPECT_EQ(IsBlock(body), !names_it) << body.function->name << ' ' << name;
    if (!names_it) return;
    needed.insert(name);
    ASSERT_TRUE(cause);
    EXPECT_TRUE(cause->CanBeCollected());
    EXPECT_EQ(cause->key, name);
  };
  generated.ForEachFunction(visit);
  EXPECT_EQ(needed.size(), EveryName().size()) << "each is needed by a function";
}

/// Whether the generator calls an attribute unsupported, or its mask not collected.
bool SpeaksOfSupport(const FunctionBody& body) {
  return body.reason.find("not support") != std::string::npos ||
         body.reason.find("capabilites") != std::string::npos;
}

TEST(RequirementsTest, EveryMixtureHasACauseUnlessItGivesABlock) {
  std::mt19937 random(1);
  const auto one_in = [&random](unsigned n) { return random() % n == 0; };
  Generated generated;
  for (int i = 0; i < 2000; ++i) {
    Contents contents;
    contents.type = std::array{IB_SW_NODE, IB_SW_NODE, IB_RTR_NODE, IB_CA_NODE}[random() % 4];
    if (contents.type == IB_CA_NODE && one_in(3)) contents.special = IB_SPECIAL_PORT_AN;
    for (const std::string& name : EveryName()) {
      if (one_in(8)) contents.without.insert(name);
    }
    for (const int bit : {0, 2, 9, 12, 13, 44, 55}) {
      if (one_in(8)) contents.clear_smp.insert(bit);
    }
    for (int port = 0; port <= kPorts; ++port) {
      if (one_in(5)) contents.without_ports.insert(port);
      if (one_in(5)) contents.inactive_ports.insert(port);
    }
    for (const int selector : {0, 1}) {
      if (one_in(6)) contents.without_monitors.insert(selector);
    }
    contents.congestion_version = one_in(6) ? 0 : 1;
    generated.Add(contents);
  }
  std::map<CauseCode, int> seen;
  const auto visit = [&](const Contents& contents, const IBNode& node, const FunctionBody& body) {
    const std::optional<Cause> cause = generated.Unmet(node, body);
    ASSERT_EQ(!cause, IsBlock(body)) << body.function->name << ' ' << contents.type << '\n'
                                     << body.reason;
    if (!cause) return;
    ++seen[cause->code];
    EXPECT_NE(cause->code, CauseCode::kOther) << body.reason;
    EXPECT_FALSE(cause->key.empty()) << body.function->name;
    // The generator itself does not distinguish these.
    const bool support =
        cause->code == CauseCode::kMaskNotCollected || cause->code == CauseCode::kNotSupported;
    const bool special = cause->code == CauseCode::kNodeType && cause->key == "specialNode";
    EXPECT_EQ(SpeaksOfSupport(body), support || special) << cause->text << body.reason;
  };
  generated.ForEachFunction(visit);
  for (const CauseCode code :
       {CauseCode::kMaskNotCollected, CauseCode::kRecordNotCollected, CauseCode::kNotSupported,
        CauseCode::kNoActivePort, CauseCode::kNoMarkedPort, CauseCode::kNodeType}) {
    EXPECT_GT(seen[code], 10) << CodeWord(code);
  }
}

TEST(RequirementsTest, BitsHaveNames) {
  EXPECT_EQ(BitName(GatingMask::kSMP, 2), "IsAdaptiveRoutingRev1Supported");
  EXPECT_EQ(BitName(GatingMask::kGMP, 1), "IsDeviceSoftResetSupported");
  EXPECT_EQ(BitName(GatingMask::kSMP, 42), "unnamed");
  EXPECT_EQ(BitName(GatingMask::kSMP, 90), "unnamed");
}

}  // namespace
}  // namespace fabscan
