#include "fabrics/fabric_differences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "records/record_kinds.h"

namespace fabscan {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FabricDifferencesTest : public ::testing::Test {
 protected:
  FabricDifferencesTest() {
    for (Fabscan* fabscan : {&first_, &second_}) {
      IBNode& node = fabscan->discovered_fabric.makeNode("S", 0x10, IB_SW_NODE, 4);
      fabscan->discovered_fabric.makePort(node, 3).port_state = IB_PORT_STATE_ACTIVE;
    }
  }

  IBNode& InFirst() { return first_.discovered_fabric.nodes()[0]; }
  IBNode& InSecond() { return second_.discovered_fabric.nodes()[0]; }
  template <class Record, class Owner>
  Record& Put(Fabscan& fabscan, const Owner& owner) {
    return fabscan.fabric_extended_info.put<Record>(owner);
  }

  /// PORT RECORD[INDEX] FIELD FIRST SECOND, without what is not there.
  std::vector<std::string> Differences() {
    std::vector<std::string> texts;
    ForEachDifference(first_, second_, options_, [&](const Difference& difference) {
      std::string text = difference.node->name;
      if (difference.port >= 0) text += " " + std::to_string(difference.port);
      if (!difference.record.empty()) text += " " + std::string(difference.record);
      if (difference.index >= 0) text += "[" + std::to_string(difference.index) + "]";
      if (!difference.field.empty()) text += " " + difference.field;
      texts.push_back(text + " (" + Text(difference.first) + "|" + Text(difference.second) + ")");
    });
    return texts;
  }

  /// Texts in quotes.
  static std::string Text(const DifferingValue& value) {
    if (const bool* truth = std::get_if<bool>(&value)) return *truth ? "true" : "false";
    if (const u_int64_t* number = std::get_if<u_int64_t>(&value)) return std::to_string(*number);
    if (const auto* text = std::get_if<std::string>(&value)) return "'" + *text + "'";
    return "";
  }

  Fabscan first_;
  Fabscan second_;
  ComparisonOptions options_;
};

TEST_F(FabricDifferencesTest, NoneBetweenTheSame) { EXPECT_THAT(Differences(), IsEmpty()); }

TEST_F(FabricDifferencesTest, KeysOfNodesAndPorts) {
  InSecond().in_sub_fabric = false;
  InSecond().numPorts = 5;
  InSecond().setOpalSwitch(true);
  InSecond().setSpecialNodeType(IB_SPECIAL_PORT_AN);
  InSecond().setAlternativeName("other");
  IBPort& port = *InSecond().getPort(3);
  port.port_state = IB_PORT_STATE_DOWN;
  port.setInSubFabric(false);
  port.setFNMPort(true);
  port.setFNM1Port(true);
  port.setSpecialPort(true);
  EXPECT_THAT(Differences(), ElementsAre("S numPorts (4|5)", "S alternativeName (|'other')",
                                         "S inSubFabric (true|false)", "S specialNode (|'AN')",
                                         "S opalSwitch (false|true)", "S 3 state ('ACTIVE'|'DOWN')",
                                         "S 3 inSubFabric (true|false)", "S 3 fnm (false|true)",
                                         "S 3 fnm1 (false|true)", "S 3 special (false|true)"));
}

TEST_F(FabricDifferencesTest, WhatOnlyOneHas) {
  first_.discovered_fabric.makeNode("A", 0x11, IB_CA_NODE, 1);
  second_.discovered_fabric.makeNode("B", 0x12, IB_CA_NODE, 1);
  first_.discovered_fabric.makePort(InFirst(), 1);
  second_.discovered_fabric.makePort(InSecond(), 2);
  Put<SMP_NodeInfo>(first_, InFirst());
  second_.fabric_extended_info.putCounters(*InSecond().getPort(3), 7);
  second_.fabric_extended_info.putMonitors(*InSecond().getPort(3), 1);
  second_.capability_module.put(InSecond(), true, {});
  EXPECT_THAT(
      Differences(),
      ElementsAre("A (true|false)", "S gmpCapabilityMask (false|true)",
                  "S SMP_NodeInfo (true|false)", "S 1 (true|false)", "S 2 (false|true)",
                  "S 3 WrenReductionCounters[7] (false|true)",
                  "S 3 WrenReductionConfigureMLIDMonitors[1] (false|true)", "B (false|true)"));
}

TEST_F(FabricDifferencesTest, FieldsAtAnyDepth) {
  Put<VendorSpec_GeneralInfo>(first_, InFirst()).FWInfo.PSID.PSID[3] = 1;
  Put<VendorSpec_GeneralInfo>(second_, InSecond()).FWInfo.Minor = 2;
  Put<SMP_PortInfo>(first_, *InFirst().getPort(3)).LID = 0xc000;
  Put<SMP_PortInfo>(second_, *InSecond().getPort(3));
  first_.capability_module.put(InFirst(), false, {{1, 2, 3, 4}});
  second_.capability_module.put(InSecond(), false, {{1, 2, 9, 4}});
  EXPECT_THAT(Differences(), ElementsAre("S smpCapabilityMask[2] ('0x3'|'0x9')",
                                         "S VendorSpec_GeneralInfo FWInfo.Minor (0|2)",
                                         "S VendorSpec_GeneralInfo FWInfo.PSID.PSID[3] (1|0)",
                                         "S 3 SMP_PortInfo LID (49152|0)"));
}

// Each number of each record, alone, is seen.
TEST_F(FabricDifferencesTest, EveryFieldOfEveryRecord) {
  options_.ingress_port = IngressPort::kIncluded;
  const auto expect_seen = [&](const RecordTable& table, char* record) {
    for (std::size_t row = 0; row < table.row_count; ++row) {
      const FieldRow& field = table.rows[row];
      record[field.offset] = 1;
      EXPECT_EQ(Differences().size(), 1U) << table.name << '.' << field.name;
      record[field.offset] = 0;
    }
    EXPECT_THAT(Differences(), IsEmpty());
  };
  TesselExtendedInfo& in_first = first_.fabric_extended_info;
  TesselExtendedInfo& in_second = second_.fabric_extended_info;
  for (const auto& kind : kNodeRecords) {
    kind.put(in_first, InFirst());
    expect_seen(*kind.table, static_cast<char*>(kind.put(in_second, InSecond())));
  }
  const IBPort& of_first = *InFirst().getPort(3);
  const IBPort& of_second = *InSecond().getPort(3);
  for (const auto& kind : kPortRecords) {
    kind.put(in_first, of_first);
    expect_seen(*kind.table, static_cast<char*>(kind.put(in_second, of_second)));
  }
  in_first.putCounters(of_first, 2);
  expect_seen(kCountersTable, reinterpret_cast<char*>(&in_second.putCounters(of_second, 2)));
}

TEST_F(FabricDifferencesTest, NumbersOf64BitsAreTexts) {
  Put<SMP_NodeInfo>(first_, InFirst()).SystemImageGUID = 0x5a1e0c0000000000;
  Put<SMP_NodeInfo>(second_, InSecond()).revision = 0xffffffff;
  EXPECT_THAT(Differences(),
              ElementsAre("S SMP_NodeInfo SystemImageGUID ('0x5a1e0c0000000000'|'0x0')",
                          "S SMP_NodeInfo revision (0|4294967295)"));
}

TEST_F(FabricDifferencesTest, WhatDependsOnTheIngressPort) {
  for (Fabscan* fabscan : {&first_, &second_}) {
    const u_int8_t port = fabscan == &first_ ? 1 : 2;
    IBNode& adapter = fabscan->discovered_fabric.makeNode("H", 0x20, IB_CA_NODE, 2);
    for (const IBNode* node : {&fabscan->discovered_fabric.nodes()[0], &adapter}) {
      SMP_NodeInfo& info = Put<SMP_NodeInfo>(*fabscan, *node);
      info.LocalPortNum = port;
      info.PortGUID = u_int64_t{0x20} + port;
    }
    Put<SMP_PortInfo>(*fabscan, *fabscan->discovered_fabric.nodes()[0].getPort(3)).LocalPortNum =
        port;
  }
  EXPECT_THAT(Differences(), ElementsAre("S SMP_NodeInfo PortGUID ('0x21'|'0x22')"));
  options_.ingress_port = IngressPort::kIncluded;
  EXPECT_THAT(
      Differences(),
      ElementsAre("H SMP_NodeInfo PortGUID ('0x21'|'0x22')", "H SMP_NodeInfo LocalPortNum (1|2)",
                  "S SMP_NodeInfo PortGUID ('0x21'|'0x22')", "S SMP_NodeInfo LocalPortNum (1|2)",
                  "S 3 SMP_PortInfo LocalPortNum (1|2)"));
}

TEST_F(FabricDifferencesTest, OnePortHasOneGuid) {
  SMP_NodeInfo& first =
      Put<SMP_NodeInfo>(first_, first_.discovered_fabric.makeNode("H", 0x20, IB_CA_NODE, 2));
  SMP_NodeInfo& second =
      Put<SMP_NodeInfo>(second_, second_.discovered_fabric.makeNode("H", 0x20, IB_CA_NODE, 2));
  first.PortGUID = 0x21;
  first.LocalPortNum = 1;
  second.PortGUID = 0x22;
  for (const u_int8_t port : {u_int8_t{0}, u_int8_t{1}}) {  // 0: not collected
    second.LocalPortNum = port;
    EXPECT_THAT(Differences(), ElementsAre("H SMP_NodeInfo PortGUID ('0x21'|'0x22')"));
  }
  second.LocalPortNum = 2;
  EXPECT_THAT(Differences(), IsEmpty());
}

TEST_F(FabricDifferencesTest, NodesInNaturalOrder) {
  for (const char* name : {"S10", "S9", "S1"}) {
    const u_int64_t guid = 0x100 + std::stoul(name + 1);
    first_.discovered_fabric.makeNode(name, guid, IB_SW_NODE, 1);
    second_.discovered_fabric.makeNode(name, 0x100 + guid, IB_SW_NODE, 1);
  }
  EXPECT_THAT(Differences(), ElementsAre("S1 (true|false)", "S9 (true|false)", "S10 (true|false)",
                                         "S1 (false|true)", "S9 (false|true)", "S10 (false|true)"));
}

TEST_F(FabricDifferencesTest, Reasons) {
  first_.fabric_extended_info.setAbsent(InFirst(), "SMP_RouterInfo", "no answer");
  second_.fabric_extended_info.setAbsent(InSecond(), "SMP_RouterInfo", "status 0x000c");
  second_.fabric_extended_info.setAbsent(*InSecond().getPort(3), "SMP_PortInfo", "no answer");
  EXPECT_THAT(Differences(), ElementsAre("S absent.SMP_RouterInfo ('no answer'|'status 0x000c')",
                                         "S 3 absent.SMP_PortInfo (|'no answer')"));
  options_.ignored = IgnoredFields({"absent"});
  EXPECT_THAT(Differences(), IsEmpty());
}

TEST_F(FabricDifferencesTest, ByName) {
  first_.discovered_fabric.makeNode("N", 0x11, IB_CA_NODE, 1);
  second_.discovered_fabric.makeNode("N", 0x12, IB_CA_NODE, 1);
  EXPECT_THAT(Differences(), ElementsAre("N (true|false)", "N (false|true)"));
  options_.by_name = true;
  EXPECT_THAT(Differences(), ElementsAre("N guid ('0x0000000000000011'|'0x0000000000000012')"));
}

TEST_F(FabricDifferencesTest, Ignored) {
  Put<VendorSpec_GeneralInfo>(first_, InFirst()).FWInfo.Minor = 1;
  Put<VendorSpec_GeneralInfo>(second_, InSecond()).SWInfo.Minor = 1;
  const auto ignoring = [this](const std::string& word) {
    options_.ignored = IgnoredFields({word});
    return Differences().size();
  };
  EXPECT_EQ(Differences().size(), 2U);
  EXPECT_EQ(ignoring("Minor"), 0U) << "in whichever block";
  EXPECT_EQ(ignoring("FWInfo.Minor"), 1U);
  EXPECT_EQ(ignoring("FWInfo"), 1U);
  EXPECT_EQ(ignoring("VendorSpec_GeneralInfo.SWInfo"), 1U);
  EXPECT_EQ(ignoring("VendorSpec_GeneralInfo.SWInfo.Minor"), 1U);
  EXPECT_EQ(ignoring("VendorSpec_GeneralInfo"), 0U);
  EXPECT_EQ(ignoring("SMP_PortInfo.LID"), 2U);
}

TEST(IgnoredFieldsTest, SuggestsWhatWasMeant) {
  const auto error = [](const std::string& word) {
    try {
      IgnoredFields ignored({word});
    } catch (const std::invalid_argument& caught) {
      return std::string(caught.what());
    }
    return std::string();
  };
  EXPECT_EQ(error("state"), "");
  EXPECT_EQ(error("LinkSpedSup"), "unknown field 'LinkSpedSup'; did you mean 'LinkSpeedSup'?");
  EXPECT_EQ(error("SMP_PortInfo.LDI"),
            "unknown field 'SMP_PortInfo.LDI'; did you mean 'SMP_PortInfo.LID'?");
  EXPECT_EQ(error("qqqqqqqq"),
            "unknown field 'qqqqqqqq'; use a name as in snapshots, such as LID or "
            "SMP_PortInfo.LID");
}

}  // namespace
}  // namespace fabscan
