#include "fabrics/merge_fabrics.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace fabscan {
namespace {

constexpr u_int64_t kGuid = 0x5a1e0c0000000001;

/// A switch with port 1, which the tests fill.
struct Side {
  explicit Side(phys_port_t ports = 2, u_int64_t guid = kGuid, const char* name = "leaf")
      : node(fabscan.discovered_fabric.makeNode(name, guid, IB_SW_NODE, ports)),
        port(fabscan.discovered_fabric.makePort(node, 1)) {}

  TesselExtendedInfo& store() { return fabscan.fabric_extended_info; }

  Fabscan fabscan;
  IBNode& node;
  IBPort& port;
};

struct Merged {
  Merged(const Side& base, const Side& extra, Prefer prefer = Prefer::kNeither)
      : result(MergeFabrics(base.fabscan, extra.fabscan, prefer, fabscan)) {}

  const IBNode& node() { return *fabscan.discovered_fabric.getNodeByGuid(kGuid); }
  const IBPort& port() { return *node().getPort(1); }
  template <class Record, class Owner>
  const Record& get(const Owner& owner) {
    return *fabscan.fabric_extended_info.find<Record>(owner);
  }

  Fabscan fabscan;
  MergeResult result;
};

TEST(MergeFabrics, FillsWhatTheBaseLacks) {
  Side base;
  base.port.port_state = IB_PORT_STATE_ACTIVE;
  base.store().put<SMP_NodeInfo>(base.node).DeviceID = 7;
  base.store().setAbsent(base.node, "adaptive_routing_info", "not asked for");
  Side extra;
  extra.node.setOpalSwitch(true);
  extra.port.setFNMPort(true);
  extra.store().put<adaptive_routing_info>(extra.node).group_cap = 9;
  extra.store().put<SMP_TarnExtPortInfo>(extra.port).IsSpecialPort = 1;
  extra.store().putCounters(extra.port, 5).mlid = 3;
  extra.store().putMonitors(extra.port, 1);
  extra.fabscan.capability_module.put(extra.node, true, {{1, 2, 3, 4}});

  Merged merged(base, extra);
  EXPECT_EQ(merged.result.conflicts, 0U);
  EXPECT_EQ(merged.result.added_nodes, 0U);
  EXPECT_EQ(merged.result.added_records, 5U);
  EXPECT_EQ(merged.get<SMP_NodeInfo>(merged.node()).DeviceID, 7);
  EXPECT_EQ(merged.get<adaptive_routing_info>(merged.node()).group_cap, 9);
  EXPECT_EQ(merged.get<SMP_TarnExtPortInfo>(merged.port()).IsSpecialPort, 1);
  const TesselExtendedInfo& store = merged.fabscan.fabric_extended_info;
  EXPECT_EQ(store.getWrenReductionCounters(merged.port().createIndex, 5)->mlid, 3);
  EXPECT_NE(store.getWrenReductionConfigureMLIDMonitors(merged.port().createIndex, 1), nullptr);
  EXPECT_EQ(merged.fabscan.capability_module.find(merged.node(), true)->mask[3], 4U);
  EXPECT_EQ(merged.fabscan.capability_module.find(merged.node(), false), nullptr);
  EXPECT_EQ(merged.port().port_state, IB_PORT_STATE_ACTIVE);
  EXPECT_TRUE(merged.port().isFNMPort());
  EXPECT_TRUE(merged.node().isOpalSwitch());
}

TEST(MergeFabrics, NamesBothValuesOfAConflict) {
  Side base;
  base.store().put<SMP_PortInfo>(base.port).LinkWidthSup = 0x1f;
  Side extra;
  extra.store().put<SMP_PortInfo>(extra.port).LinkWidthSup = 2;
  Merged merged(base, extra);
  EXPECT_EQ(merged.result.conflicts, 1U);
  EXPECT_EQ(merged.result.first_conflict,
            "leaf (0x5a1e0c0000000001) port 1: SMP_PortInfo.LinkWidthSup is 0x1f and 0x2");
}

TEST(MergeFabrics, TakesThePreferredValue) {
  Side base;
  base.store().put<SMP_PortInfo>(base.port).LinkWidthSup = 0x1f;
  base.store().put<SMP_PortInfo>(base.port).LID = 5;
  Side extra;
  extra.store().put<SMP_PortInfo>(extra.port).LinkWidthSup = 0;
  Merged for_base(base, extra, Prefer::kBase);
  EXPECT_EQ(for_base.get<SMP_PortInfo>(for_base.port()).LinkWidthSup, 0x1f);
  Merged for_extra(base, extra, Prefer::kExtra);
  EXPECT_EQ(for_extra.get<SMP_PortInfo>(for_extra.port()).LinkWidthSup, 0);
  // A LID is not dumped: a snapshot without it does not contradict the other.
  EXPECT_EQ(for_extra.get<SMP_PortInfo>(for_extra.port()).LID, 5);
}

TEST(MergeFabrics, ComparesWithinNestedRecordsAndArrays) {
  Side base;
  base.store().put<VendorSpec_GeneralInfo>(base.node).FWInfo.PSID.PSID[3] = 'a';
  Side extra;
  extra.store().put<VendorSpec_GeneralInfo>(extra.node).FWInfo.PSID.PSID[3] = 'b';
  EXPECT_EQ(Merged(base, extra).result.first_conflict,
            "leaf (0x5a1e0c0000000001): VendorSpec_GeneralInfo.FWInfo.PSID.PSID[3] is 0x61 and "
            "0x62");
}

TEST(MergeFabrics, ComparesCapabilityMasksAndStates) {
  Side base;
  base.port.port_state = IB_PORT_STATE_INIT;
  base.fabscan.capability_module.put(base.node, false, {{1, 0, 0, 0}});
  Side extra;
  extra.port.port_state = IB_PORT_STATE_ACTIVE;
  extra.fabscan.capability_module.put(extra.node, false, {{1, 0, 8, 0}});
  Merged merged(base, extra, Prefer::kExtra);
  EXPECT_EQ(merged.result.conflicts, 2U);
  EXPECT_EQ(merged.result.first_conflict,
            "leaf (0x5a1e0c0000000001): smpCapabilityMask[2] is 0x0 and 0x8");
  EXPECT_EQ(merged.port().port_state, IB_PORT_STATE_ACTIVE);
}

TEST(MergeFabrics, NamesValuesAsTheSnapshotDoes) {
  EXPECT_EQ(Merged(Side(1), Side(2)).result.first_conflict,
            "leaf (0x5a1e0c0000000001): numPorts is 1 and 2");
  Side base;
  base.port.port_state = IB_PORT_STATE_INIT;
  Side extra;
  extra.port.port_state = IB_PORT_STATE_ACTIVE;
  EXPECT_EQ(Merged(base, extra).result.first_conflict,
            "leaf (0x5a1e0c0000000001) port 1: state is INIT and ACTIVE");
  base.node.setSpecialNodeType(IB_SPECIAL_PORT_AN);
  extra.node.setSpecialNodeType(IB_SPECIAL_PORT_ROUTER);
  EXPECT_EQ(Merged(base, extra).result.first_conflict,
            "leaf (0x5a1e0c0000000001): specialNode is AN and ROUTER");
}

TEST(MergeFabrics, AddsNodesThatTheBaseLacks) {
  Side base;
  Side extra(4, kGuid + 1, "leaf");
  extra.store().put<SMP_NodeInfo>(extra.node).DeviceID = 8;
  Merged merged(base, extra);
  EXPECT_EQ(merged.result.added_nodes, 1U);
  const IBNode* added = merged.fabscan.discovered_fabric.getNodeByGuid(kGuid + 1);
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(added->name, "leaf [0x5a1e0c0000000002]");
  EXPECT_EQ(added->getAlternativeName(), "leaf");
  EXPECT_EQ(merged.get<SMP_NodeInfo>(*added).DeviceID, 8);
}

TEST(MergeFabrics, RefusesPortsThatThePreferredNumberExcludes) {
  Side base(1);
  Side extra(2);
  extra.fabscan.discovered_fabric.makePort(extra.node, 2);
  EXPECT_THROW(Merged(base, extra, Prefer::kBase), std::invalid_argument);
  EXPECT_EQ(Merged(base, extra, Prefer::kExtra).node().numPorts, 2);
}

/// An adapter with this ingress port.
struct QueriedBy {
  QueriedBy(u_int8_t port, u_int64_t port_guid) {
    IBNode& node = fabscan.discovered_fabric.makeNode("host", kGuid, IB_CA_NODE, 2);
    SMP_NodeInfo& info = fabscan.fabric_extended_info.put<SMP_NodeInfo>(node);
    info.LocalPortNum = port;
    info.PortGUID = port_guid;
    IBPort& first_port = fabscan.discovered_fabric.makePort(node, 1);
    fabscan.fabric_extended_info.put<SMP_PortInfo>(first_port).LocalPortNum = port;
  }

  Fabscan fabscan;
};

TEST(MergeFabrics, KeepsTheIngressPortOfTheBase) {
  const struct {
    const char* about;
    u_int8_t base_port;
    u_int64_t base_guid;
    u_int8_t port;
    u_int64_t guid;
  } rows[] = {
      {"two hosts", 1, 0x21, 1, 0x21},
      {"the base has no GUID of its port", 1, 0, 1, 0},
      {"the base has no port", 0, 0, 2, 0x22},
  };
  for (const auto& row : rows) {
    for (const Prefer prefer : {Prefer::kNeither, Prefer::kExtra}) {
      Fabscan merged;
      const MergeResult result = MergeFabrics(QueriedBy(row.base_port, row.base_guid).fabscan,
                                              QueriedBy(2, 0x22).fabscan, prefer, merged);
      EXPECT_EQ(result.conflicts, 0U) << row.about;
      const IBNode& node = *merged.discovered_fabric.getNodeByGuid(kGuid);
      const auto& info = *merged.fabric_extended_info.find<SMP_NodeInfo>(node);
      EXPECT_EQ(info.LocalPortNum, row.port) << row.about;
      EXPECT_EQ(info.PortGUID, row.guid) << row.about;
      const auto& port_info = *merged.fabric_extended_info.find<SMP_PortInfo>(*node.getPort(1));
      EXPECT_EQ(port_info.LocalPortNum, row.port) << row.about;
    }
  }
}

TEST(MergeFabrics, TwoGuidsOfOnePortAreAConflict) {
  for (const u_int8_t port : {u_int8_t{0}, u_int8_t{1}}) {  // 0: not collected
    Fabscan merged;
    const MergeResult result = MergeFabrics(
        QueriedBy(1, 0x21).fabscan, QueriedBy(port, 0x22).fabscan, Prefer::kNeither, merged);
    EXPECT_EQ(result.conflicts, 1U);
    EXPECT_EQ(result.first_conflict,
              "host (0x5a1e0c0000000001): SMP_NodeInfo.PortGUID is 0x21 and 0x22");
  }
}

TEST(MergeFabrics, TheIngressPortCountsWhenIncluded) {
  Fabscan merged;
  const MergeResult result = MergeFabrics(QueriedBy(1, 0x21).fabscan, QueriedBy(2, 0x22).fabscan,
                                          Prefer::kExtra, merged, IngressPort::kIncluded);
  EXPECT_EQ(result.conflicts, 3U);
  const IBNode& node = *merged.discovered_fabric.getNodeByGuid(kGuid);
  EXPECT_EQ(merged.fabric_extended_info.find<SMP_NodeInfo>(node)->PortGUID, 0x22U);
}

}  // namespace
}  // namespace fabscan
