#include <gtest/gtest.h>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

TEST(NodeInfo, AssignsSixFieldsAndResizesThePartitionKeyTable) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  auto& record = fabric.Put<SMP_NodeInfo>(node);
  record.BaseVersion = 0x81;
  record.ClassVersion = 0x82;
  record.PartitionCap = 0x8303;
  record.DeviceID = 0x8404;
  record.revision = 0xf0000041;
  record.VendorID = 0xf0000051;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateNodeInfo, node),
            R"(    SMP_NodeInfo mad_buffer = {0};
    SMP_NodeInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeInfo));

    mad_buffer.BaseVersion = 0x81;
    mad_buffer.ClassVersion = 0x82;
    mad_buffer.PartitionCap = 0x8303;
    mad_buffer.DeviceID = 0x8404;
    mad_buffer.revision = 0xf0000041;
    mad_buffer.VendorID = 0xf0000051;

    SMP_NodeInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeInfo));

    m_node->resizePortPkeyTable(mad_buffer.PartitionCap);)");
}

TEST(NodeInfo, IsWrittenForEveryKindOfNode) {
  FabricBuilder fabric;
  IBNode* nodes[] = {&fabric.Switch("S1"), &fabric.Router("R1"), &fabric.Adapter("H1"),
                     &fabric.Special("A1", IB_SPECIAL_PORT_AN),
                     &fabric.Node("U1", IB_UNKNOWN_NODE_TYPE)};
  for (IBNode* node : nodes) {
    fabric.Put<SMP_NodeInfo>(*node).VendorID = 0x2c9;
    EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateNodeInfo, *node),
              R"(    SMP_NodeInfo mad_buffer = {0};
    SMP_NodeInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeInfo));

    mad_buffer.BaseVersion = 0x0;
    mad_buffer.ClassVersion = 0x0;
    mad_buffer.PartitionCap = 0x0;
    mad_buffer.DeviceID = 0x0;
    mad_buffer.revision = 0x0;
    mad_buffer.VendorID = 0x2c9;

    SMP_NodeInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeInfo));

    m_node->resizePortPkeyTable(mad_buffer.PartitionCap);)");
  }
}

TEST(NodeInfo, LeavesIdentityToTheSimulatedNode) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  const std::string before =
      (fabric.Put<SMP_NodeInfo>(node), fabric.Body(&SimInfoDumpCPP::GenerateNodeInfo, node));
  auto& record = fabric.Put<SMP_NodeInfo>(node);
  record.NumPorts = record.NodeType = record.LocalPortNum = 0xff;
  record.SystemImageGUID = record.NodeGUID = record.PortGUID = ~u_int64_t{0};
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateNodeInfo, node), before);
}

TEST(NodeInfo, StopsTheBuildWhereThereIsNoRecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateNodeInfo, node),
            R"(#error "Failed to get NodeInfo mad for the node=S1")");
}

TEST(SwitchInfo, AssignsWhatTheSwitchCanDo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  auto& record = fabric.Put<SMP_SwitchInfo>(node);
  record.LinearFDBCap = 0x8101;
  record.RandomFDBCap = 0x8202;
  record.MCastFDBCap = 0x8303;
  record.OptimizedSLVLMapping = 0x84;
  record.LidsPerPort = 0x8505;
  record.PartEnfCap = 0x8606;
  record.InbEnfCap = 0x87;
  record.OutbEnfCap = 0x88;
  record.FilterRawInbCap = 0x89;
  record.FilterRawOutbCap = 0x8a;
  record.ENP0 = 0x8b;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSwitchInfo, node),
            R"(    SMP_SwitchInfo mad_buffer = {0};
    SMP_SwitchInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->switchInfo));

    mad_buffer.LinearFDBCap = 0x8101;
    mad_buffer.RandomFDBCap = 0x8202;
    mad_buffer.MCastFDBCap = 0x8303;
    mad_buffer.OptimizedSLVLMapping = 0x84;
    mad_buffer.LidsPerPort = 0x8505;
    mad_buffer.PartEnfCap = 0x8606;
    mad_buffer.InbEnfCap = 0x87;
    mad_buffer.OutbEnfCap = 0x88;
    mad_buffer.FilterRawInbCap = 0x89;
    mad_buffer.FilterRawOutbCap = 0x8a;
    mad_buffer.ENP0 = 0x8b;

    SMP_SwitchInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->switchInfo));)");
}

TEST(SwitchInfo, IsPassedOverWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSwitchInfo, node),
            R"(// Failed to get SwitchInfo mad for the node=S1)");
}

TEST(ExtendedSwitchInfo, AssignsWhatTheSwitchCanDo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  auto& record = fabric.Put<SMP_ExtendedSwitchInfo>(node);
  record.turbo_path_cap = 0x81;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateExtendedSwitchInfo, node),
            R"(    SMP_ExtendedSwitchInfo mad_buffer = {0};
    SMP_ExtendedSwitchInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(m_node->getExtendedSwitchInfo()));

    mad_buffer.turbo_path_cap = 0x81;

    SMP_ExtendedSwitchInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(m_node->getExtendedSwitchInfo()));)");
}

TEST(ExtendedSwitchInfo, IsPassedOverWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateExtendedSwitchInfo, node),
            R"(// Failed to get VS ExtendedSwitchInfo mad for the node=S1)");
}

TEST(RouterInfo, AssignsWhatTheRouterCanDo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Router("R1");
  auto& record = fabric.Put<SMP_RouterInfo>(node);
  record.CapabilityMask = 0xf0000001;
  record.NextHopTableCap = 0xf0000011;
  record.AdjacentSiteLocalSubnetsTableCap = 0x83;
  record.ar_group_to_router_lid_table_cap = 0x8404;
  record.cap_supported_subnets = 0x85;
  record.cap_router_lid = 0x8606;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateRouterInfo, node),
            R"(    SMP_RouterInfo mad_buffer = {0};
    SMP_RouterInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->routerInfo));

    mad_buffer.CapabilityMask = 0xf0000001;
    mad_buffer.NextHopTableCap = 0xf0000011;
    mad_buffer.AdjacentSiteLocalSubnetsTableCap = 0x83;
    mad_buffer.ar_group_to_router_lid_table_cap = 0x8404;
    mad_buffer.cap_supported_subnets = 0x85;
    mad_buffer.cap_router_lid = 0x8606;

    SMP_RouterInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->routerInfo));)");
}

TEST(RouterInfo, IsPassedOverWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Router("R1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateRouterInfo, node),
            R"(// Failed to get RouterInfo mad for the node=R1)");
}

TEST(RouterInfo, AdapterIsNotARouter) {
  FabricBuilder fabric;
  IBNode& node = fabric.Adapter("H1");
  fabric.Put<SMP_RouterInfo>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateRouterInfo, node),
            R"(// The node=H1 is not a router)");
}

TEST(RouterInfo, SwitchIsNotARouter) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Put<SMP_RouterInfo>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateRouterInfo, node),
            R"(// The node=S1 is not a router)");
}

TEST(RouterInfo, NodeOfUnknownTypeIsNotARouter) {
  FabricBuilder fabric;
  IBNode& node = fabric.Node("U1", IB_UNKNOWN_NODE_TYPE);
  fabric.Put<SMP_RouterInfo>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateRouterInfo, node),
            R"(// The node=U1 is not a router)");
}

TEST(SwitchInfo, DoesWithoutTheOtherSwitchRecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Put<SMP_ExtendedSwitchInfo>(node).turbo_path_cap = 255;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateSwitchInfo, node),
            "// Failed to get SwitchInfo mad for the node=S1");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateExtendedSwitchInfo, node),
            R"(    SMP_ExtendedSwitchInfo mad_buffer = {0};
    SMP_ExtendedSwitchInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(m_node->getExtendedSwitchInfo()));

    mad_buffer.turbo_path_cap = 0xff;

    SMP_ExtendedSwitchInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(m_node->getExtendedSwitchInfo()));)");
}

TEST(ExtendedNodeInfo, SwitchWithTheCapabilityHasItsBlock) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {13});
  auto& record = fabric.Put<ib_extended_node_info>(node);
  record.sl2vl_cap = 0x81;
  record.node_type_extended = 0x82;
  record.num_pcie = 0x83;
  record.num_oob = 0x84;
  record.AnycastLidCap = 0x85;
  record.asic_max_planes = 0x86;
  record.link_auto_retrain_en = 0x87;
  record.multiplane_asymmetry_en = 0x88;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateExtendedNodeInfo, node),
            R"(    ib_extended_node_info mad_buffer = {0};
    ib_extended_node_info_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->extNodeInfo));

    mad_buffer.sl2vl_cap = 0x81;
    mad_buffer.node_type_extended = 0x82;
    mad_buffer.num_pcie = 0x83;
    mad_buffer.num_oob = 0x84;
    mad_buffer.AnycastLidCap = 0x85;
    mad_buffer.asic_max_planes = 0x86;
    mad_buffer.link_auto_retrain_en = 0x87;
    mad_buffer.multiplane_asymmetry_en = 0x88;

    ib_extended_node_info_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->extNodeInfo));)");
}

TEST(ExtendedNodeInfo, AdapterWithTheCapabilityHasItsBlock) {
  FabricBuilder fabric;
  IBNode& node = fabric.Adapter("H1");
  fabric.Support(node, {13});
  auto& record = fabric.Put<ib_extended_node_info>(node);
  record.sl2vl_cap = 0x81;
  record.node_type_extended = 0x82;
  record.num_pcie = 0x83;
  record.num_oob = 0x84;
  record.AnycastLidCap = 0x85;
  record.asic_max_planes = 0x86;
  record.link_auto_retrain_en = 0x87;
  record.multiplane_asymmetry_en = 0x88;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateExtendedNodeInfo, node),
            R"(    ib_extended_node_info mad_buffer = {0};
    ib_extended_node_info_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->extNodeInfo));

    mad_buffer.sl2vl_cap = 0x81;
    mad_buffer.node_type_extended = 0x82;
    mad_buffer.num_pcie = 0x83;
    mad_buffer.num_oob = 0x84;
    mad_buffer.AnycastLidCap = 0x85;
    mad_buffer.asic_max_planes = 0x86;
    mad_buffer.link_auto_retrain_en = 0x87;
    mad_buffer.multiplane_asymmetry_en = 0x88;

    ib_extended_node_info_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->extNodeInfo));)");
}

TEST(ExtendedNodeInfo, SpecialNodeWithTheCapabilityHasItsBlock) {
  FabricBuilder fabric;
  IBNode& node = fabric.Special("A1", IB_SPECIAL_PORT_AN);
  fabric.Support(node, {13});
  auto& record = fabric.Put<ib_extended_node_info>(node);
  record.sl2vl_cap = 0x81;
  record.node_type_extended = 0x82;
  record.num_pcie = 0x83;
  record.num_oob = 0x84;
  record.AnycastLidCap = 0x85;
  record.asic_max_planes = 0x86;
  record.link_auto_retrain_en = 0x87;
  record.multiplane_asymmetry_en = 0x88;
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateExtendedNodeInfo, node),
            R"(    ib_extended_node_info mad_buffer = {0};
    ib_extended_node_info_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->extNodeInfo));

    mad_buffer.sl2vl_cap = 0x81;
    mad_buffer.node_type_extended = 0x82;
    mad_buffer.num_pcie = 0x83;
    mad_buffer.num_oob = 0x84;
    mad_buffer.AnycastLidCap = 0x85;
    mad_buffer.asic_max_planes = 0x86;
    mad_buffer.link_auto_retrain_en = 0x87;
    mad_buffer.multiplane_asymmetry_en = 0x88;

    ib_extended_node_info_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->extNodeInfo));)");
}

TEST(ExtendedNodeInfo, NeedsItsCapabilityWhateverTheStoreHolds) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {12, 14});
  fabric.Put<ib_extended_node_info>(node);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateExtendedNodeInfo, node),
            R"(// The ExtendedNodeInfo mad is not supported on the node=S1)");
}

TEST(ExtendedNodeInfo, IsPassedOverWithoutARecord) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  fabric.Support(node, {13});
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateExtendedNodeInfo, node),
            R"(// Failed to get VS ExtendedNodeInfo mad for the node=S1)");
}

}  // namespace
}  // namespace fabscan
