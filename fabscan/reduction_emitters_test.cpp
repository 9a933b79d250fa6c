#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

constexpr auto kGenerateClassPortInfo = &SimInfoDumpCPP::GenerateVSReductionManagerClassPortInfo;
constexpr auto kGenerateReductionInfo = &SimInfoDumpCPP::GenerateWrenReductionInfo;
constexpr auto kGenerateReductionPortInfo =
    static_cast<FabricBuilder::Emitter>(&SimInfoDumpCPP::GenerateWrenReductionPortInfo);

constexpr char kNoDefault[] =
    "#error \"Failed to dump WrenReductionPortInfo MAD. Null pointer is provided.\"";

IBNode& ReductionSwitch(FabricBuilder& fabric, phys_port_t ports) {
  IBNode& node = fabric.Switch("S1", ports);
  fabric.Support(node, {55});
  fabric.Put<IB_ClassPortInfo>(node);
  return node;
}

TEST(ReductionManagerClassPortInfo, AssignsThirteenFieldsTheGIDByItsAddress) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {55});
  auto& record = fabric.Put<IB_ClassPortInfo>(node);
  record.CapMsk = 0x8101;
  record.CapMsk2 = 0xf0000011;
  record.ClassVersion = 0x83;
  record.BaseVersion = 0x84;
  record.RespTimeValue = 0x85;
  record.RedirectFL = 0xf0000051;
  record.RedirectSL = 0x87;
  record.RedirectTC = 0x88;
  record.RedirectPKey = 0x8909;
  record.RedirectLID = 0x8a0a;
  record.RedirectQP = 0xf00000a1;
  record.RedirectQKey = 0xf00000b1;
  record.RedirectGID[0] = record.RedirectGID[1] = 0x1234;
  std::ostringstream address;
  address.imbue(std::locale::classic());
  address << record.RedirectGID;
  ASSERT_EQ(address.str().substr(0, 2), "0x");
  EXPECT_EQ(fabric.Body(kGenerateClassPortInfo, node), R"(    IB_ClassPortInfo mad_buffer = {0};
    IB_ClassPortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wren_rma_class_port_info));

    mad_buffer.CapMsk = 0x8101;
    mad_buffer.CapMsk2 = 0xf0000011;
    mad_buffer.ClassVersion = 0x83;
    mad_buffer.BaseVersion = 0x84;
    mad_buffer.RespTimeValue = 0x85;
    mad_buffer.RedirectGID = 0x)" + address.str() + R"(;
    mad_buffer.RedirectFL = 0xf0000051;
    mad_buffer.RedirectSL = 0x87;
    mad_buffer.RedirectTC = 0x88;
    mad_buffer.RedirectPKey = 0x8909;
    mad_buffer.RedirectLID = 0x8a0a;
    mad_buffer.RedirectQP = 0xf00000a1;
    mad_buffer.RedirectQKey = 0xf00000b1;

    IB_ClassPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wren_rma_class_port_info));)");
}

TEST(ReductionManagerClassPortInfo, StopsTheBuildWithAnOpenQuoteWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {55});
  EXPECT_EQ(fabric.Body(kGenerateClassPortInfo, node),
            "#error \"Failed to get VS IB_ClassPortInfo mad for the node=S1");
}

TEST(ReductionManagerClassPortInfo, SwitchWithoutReductionManagementIsNothingUnusual) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  fabric.Support(node, {54, 56});
  fabric.Put<IB_ClassPortInfo>(node);
  fabric.Put<WrenReductionInfo>(node);
  EXPECT_EQ(fabric.Body(kGenerateClassPortInfo, node),
            "// The node=S1 does not support Wren Reduction Management");
}

TEST(ReductionInfo, AssignsThreeFields) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {55});
  auto& record = fabric.Put<WrenReductionInfo>(node);
  record.capability_mask = 0xf0000001;
  record.hbf_group_cap = 0x8202;
  record.reduction_fdb_cap = 0x8303;
  EXPECT_EQ(fabric.Body(kGenerateReductionInfo, node), R"(    WrenReductionInfo mad_buffer = {0};
    WrenReductionInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wren_red_info));

    mad_buffer.capability_mask = 0xf0000001;
    mad_buffer.hbf_group_cap = 0x8202;
    mad_buffer.reduction_fdb_cap = 0x8303;

    WrenReductionInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wren_red_info));)");
}

TEST(ReductionInfo, StopsTheBuildWithAnOpenQuoteWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {55});
  EXPECT_EQ(fabric.Body(kGenerateReductionInfo, node),
            "#error \"Failed to get WrenReductionInfo mad for the node=S1");
}

TEST(ReductionInfo, SwitchWithoutReductionManagementIsNothingUnusual) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  fabric.Support(node, {54, 56});
  fabric.Put<IB_ClassPortInfo>(node);
  fabric.Put<WrenReductionInfo>(node);
  EXPECT_EQ(fabric.Body(kGenerateReductionInfo, node),
            "// The node=S1 does not support Wren Reduction Management");
}

TEST(ReductionPortInfo, GivesMarkedPortsACaseAndTheRestTheFirstNormalPort) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 12);
  for (std::size_t port = 0; port <= 12; ++port) {
    if (port == 1 || port == 2) continue;
    fabric.PutAt<WrenReductionPortInfo>(node, port).capability_mask =
        0xf0000000 + static_cast<u_int32_t>(port);
  }
  node.Ports[4]->setFNMPort(true);
  node.Ports[10]->setFNM1Port(true);
  node.Ports[11]->setSpecialPort(true);
  fabric.PutAt<WrenReductionPortInfo>(node, 11).capability_mask = 0xf0000003;  // as the default
  node.Ports[2]->setSpecialPort(true);  // no record: the default serves it
  EXPECT_EQ(fabric.Body(kGenerateReductionPortInfo, node),
            R"(    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        WrenReductionPortInfo mad_buffer = {0};
        WrenReductionPortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));

        switch (i) {
        case 4:
            mad_buffer.capability_mask = 0xf0000004;
            break;
        case 10:
            mad_buffer.capability_mask = 0xf000000a;
            break;
        case 11:
            mad_buffer.capability_mask = 0xf0000003;
            break;
        default:
            mad_buffer.capability_mask = 0xf0000003;
        }

        WrenReductionPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));
    })");
}

TEST(ReductionPortInfo, WithoutMarkedPortsHasTheDefaultAlone) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 2);
  fabric.PutAt<WrenReductionPortInfo>(node, 2).capability_mask = 0x2;
  EXPECT_EQ(fabric.Body(kGenerateReductionPortInfo, node),
            R"(    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        WrenReductionPortInfo mad_buffer = {0};
        WrenReductionPortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));

        switch (i) {
        default:
            mad_buffer.capability_mask = 0x2;
        }

        WrenReductionPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));
    })");
}

TEST(ReductionPortInfo, PortsThatAreDownOrOutsideHaveNoSay) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 4);
  for (std::size_t port = 1; port <= 4; ++port) {
    fabric.PutAt<WrenReductionPortInfo>(node, port).capability_mask = static_cast<u_int32_t>(port);
  }
  node.Ports[1]->port_state = IB_PORT_STATE_DOWN;
  node.Ports[2]->setInSubFabric(false);
  node.Ports[3]->setFNMPort(true);
  node.Ports[3]->port_state = IB_UNKNOWN_PORT_STATE;
  node.Ports[4]->port_state = IB_PORT_STATE_INIT;
  EXPECT_EQ(fabric.Body(kGenerateReductionPortInfo, node),
            R"(    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        WrenReductionPortInfo mad_buffer = {0};
        WrenReductionPortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));

        switch (i) {
        default:
            mad_buffer.capability_mask = 0x4;
        }

        WrenReductionPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));
    })");
}

TEST(ReductionPortInfo, StopsTheBuildWithoutANormalPort) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 2);
  EXPECT_EQ(fabric.Body(kGenerateReductionPortInfo, node), kNoDefault);
  fabric.PutAt<WrenReductionPortInfo>(node, 0);
  fabric.PutAt<WrenReductionPortInfo>(node, 1);
  node.Ports[1]->setFNMPort(true);
  EXPECT_EQ(fabric.Body(kGenerateReductionPortInfo, node), kNoDefault);
}

TEST(ReductionPortInfo, TakesAnyShapeOfThePortVector) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 255);
  node.Ports.clear();
  EXPECT_EQ(fabric.Body(kGenerateReductionPortInfo, node), kNoDefault);
  node.Ports.assign(256, nullptr);
  EXPECT_EQ(fabric.Body(kGenerateReductionPortInfo, node), kNoDefault);
}

TEST(ReductionPortInfo, SwitchWithoutReductionManagementIsNothingUnusual) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  fabric.Support(node, {54, 56});
  fabric.Put<IB_ClassPortInfo>(node);
  fabric.Put<WrenReductionInfo>(node);
  EXPECT_EQ(fabric.Body(kGenerateReductionPortInfo, node),
            "// The node=S1 does not support Wren Reduction Management");
}

TEST(ReductionPortInfo, NeedsTheReductionManagersClassPortInfo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  fabric.Support(node, {55});
  EXPECT_EQ(fabric.Body(kGenerateReductionPortInfo, node),
            "#error \"Failed to get WrenClassPortInfo mad for the node=S1");
}

TEST(ReductionPortInfoWriters, PassOverNullRecords) {
  FabricBuilder fabric;
  WrenReductionPortInfo record = {};
  record.capability_mask = 0xab;
  const std::map<uint8_t, const WrenReductionPortInfo*> specials = {{3, nullptr}, {65, &record}};
  const auto text = [&](const WrenReductionPortInfo* default_record) {
    return fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
      dump.GenerateWrenReductionPortInfo(out, default_record, specials);
    });
  };
  EXPECT_EQ(text(nullptr), kNoDefault);
  EXPECT_EQ(text(&record), R"(    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        WrenReductionPortInfo mad_buffer = {0};
        WrenReductionPortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));

        switch (i) {
        case 65:
            mad_buffer.capability_mask = 0xab;
            break;
        default:
            mad_buffer.capability_mask = 0xab;
        }

        WrenReductionPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));
    })");
}

/// Counts the flushes that reach it.
class FlushCounter : public std::stringbuf {
 public:
  int flushes = 0;

 private:
  int sync() override {
    ++flushes;
    return 0;
  }
};

TEST(ReductionPortInfoWriters, EndTheLineBeforeARecordWithAFlush) {
  FabricBuilder fabric;
  const SimInfoDumpCPP dump(fabric.fabscan);
  WrenReductionPortInfo record = {};
  record.capability_mask = 0x1f;
  FlushCounter buffer;
  std::ostream out(&buffer);
  dump.GenerateWrenReductionPortInfo(out, 5, &record);
  EXPECT_EQ(buffer.str(), "\n     mad_buffer.capability_mask = 0x1f;");
  EXPECT_EQ(buffer.flushes, 1);
}

}  // namespace
}  // namespace fabscan
