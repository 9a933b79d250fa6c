#include <gtest/gtest.h>

#include "testing/fabric_builder.h"
#include "testing/port_infos.h"

namespace fabscan {
namespace {

TEST(PortInfo, PortZeroCountsWhateverItsState) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  PutInfo(fabric, node, 0, 0);
  PutInfo(fabric, node, 1, 1);
  const std::string active = fabric.Body(kGeneratePortInfo, node);
  for (const IBPortState state : {IB_UNKNOWN_PORT_STATE, IB_PORT_STATE_DOWN}) {
    node.Ports[0]->port_state = state;
    EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), active);
  }
  node.Ports[0]->setInSubFabric(false);
  node.Ports[0]->setSpecialPort(true);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), active);
  EXPECT_NE(active.find("if (!i) {"), std::string::npos);
}

TEST(PortInfo, SwitchNeedsPortZeroAndARegularPort) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 2);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoZeroOrRegular);
  PutInfo(fabric, node, 0, 0);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoZeroOrRegular);
  node.Ports[2]->setFNM1Port(true);
  PutInfo(fabric, node, 2, 1);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoZeroOrRegular);

  IBNode& without_zero = fabric.Switch("S2", 1);
  PutInfo(fabric, without_zero, 1, 1);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, without_zero), kNoZeroOrRegular);
  without_zero.Ports[0] = nullptr;
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, without_zero), kNoZeroOrRegular);
}

TEST(PortInfo, AdapterNeedsARegularPort) {
  FabricBuilder fabric;
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, fabric.Adapter("H0")), kNoRecord);
  IBNode& node = fabric.Adapter("H1", 2);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoRecord);
  for (IBPort* port : {node.Ports[1], node.Ports[2]}) {
    port->setFNMPort(true);
    fabric.Put<SMP_PortInfo>(*port) = Info(0);
  }
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoRecord);
}

TEST(PortInfo, PortsThatAreDownOutsideOrBeyondTheVectorHaveNoSay) {
  FabricBuilder fabric;
  IBNode& node = fabric.Adapter("H1", 5);
  for (unsigned port = 1; port <= 5; ++port) PutInfo(fabric, node, port, port == 4 ? 2 : 1);
  node.Ports[1]->port_state = IB_PORT_STATE_DOWN;
  node.Ports[2]->port_state = IB_UNKNOWN_PORT_STATE;
  node.Ports[3]->setInSubFabric(false);
  node.Ports[4]->port_state = IB_PORT_STATE_INIT;
  const std::string of_port_four =
      R"(    for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {
        SMP_PortInfo mad_buffer = {0};
        SMP_PortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));

        // ---------- CapMask
        // IsVendorSpecificMadsTableSupported             = 1
        // IsMulticastPKeyTrapSuppressionSupported        = 1
        // IsMulticastFDBTopSupported                     = 1
        // IsHierarchyInfoSupported                       = 1
        mad_buffer.CapMsk = 0xf0000001;

        // ---------- CapMask2
        // IsSetNodeDescriptionSupported                  = 1
        // IsLinkWidth2xSupported                         = 1
        mad_buffer.CapMsk2 = 0x8011;

        mad_buffer.LinkWidthSup = 0x13;

        mad_buffer.LinkSpeedExtSup2 = 0x23;
        mad_buffer.LinkSpeedExtSup = 0x33;
        mad_buffer.LinkSpeedSup = 0x43;
        mad_buffer.MTUCap = 0x53;

        SMP_PortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));
    })";
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), of_port_four);
  node.Ports[4]->port_state = IB_PORT_STATE_ARM;
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), of_port_four);
  node.Ports.resize(4);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoRecord);
}

TEST(PortInfo, NeverLooksAtPortZeroOfAnotherNode) {
  FabricBuilder fabric;
  IBNode& other = fabric.Switch("S1", 1);
  PutInfo(fabric, other, 0, 0);
  IBNode& node = fabric.Adapter("H1", 1);
  node.Ports[0] = other.Ports[0];
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoRecord);
}

TEST(PortInfo, TakesAnyShapeOfThePortVector) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 255);
  node.Ports.clear();
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoZeroOrRegular);
  node.Ports.assign(3, nullptr);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoZeroOrRegular);
  node.Ports.assign(300, nullptr);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), kNoZeroOrRegular);
}

TEST(PortInfo, ComesToAnEndAtTwoHundredAndFiftyFivePorts) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 255);
  PutInfo(fabric, node, 0, 0);
  PutInfo(fabric, node, 254, 1);
  PutInfo(fabric, node, 255, 2);
  node.Ports[255]->setSpecialPort(true);
  const std::string body = fabric.Body(kGeneratePortInfo, node);
  EXPECT_NE(body.find("        } else if (i == 255) {\n"), std::string::npos);
  EXPECT_EQ(body.find("else if"), body.rfind("else if"));
}

TEST(PortInfo, LabelsMarkedPortsByTheirNumberNotTheirPlace) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 4);
  PutInfo(fabric, node, 0, 0);
  PutInfo(fabric, node, 1, 1);
  for (const unsigned place : {2U, 3U, 4U}) {
    node.Ports[place]->setFNMPort(true);
    PutInfo(fabric, node, place, place - 1);
  }
  // Two ports of one number: the later one counts. A number may lie beyond numPorts.
  node.Ports[2]->num = 9;
  node.Ports[3]->num = 7;
  node.Ports[4]->num = 9;
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node),
            R"(    for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {
        SMP_PortInfo mad_buffer = {0};
        SMP_PortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));

        if (!i) {
            // ---------- CapMask
            // IsTrapSupported                                = 1
            // IsAutomaticMigrationSupported                  = 1
            // IsSLMappingSupported                           = 1
            // IsSystemImageGUIDSupported                     = 1
            // IsExtendedSpeedsSupported                      = 1
            // IsCommunicationManagementSupported             = 1
            // IsVendorClassSupported                         = 1
            // IsCapabilityMaskNoticeSupported                = 1
            // IsClientReregistrationSupported                = 1
            mad_buffer.CapMsk = 0x2514868;

            // ---------- CapMask2
            // IsSetNodeDescriptionSupported                  = 1
            // IsPortInfoExtendedSupported                    = 1
            // IsLinkSpeedNDRSupported                        = 1
            // IsLinkSpeedXDRSupported                        = 1
            mad_buffer.CapMsk2 = 0x1403;

            mad_buffer.LinkWidthSup = 0x11;

            mad_buffer.LinkSpeedExtSup2 = 0x21;
            mad_buffer.LinkSpeedExtSup = 0x31;
            mad_buffer.LinkSpeedSup = 0x41;
            mad_buffer.MTUCap = 0x51;
        } else if (i == 7) {
            mad_buffer.CapMsk = 0xf0000001;
            mad_buffer.CapMsk2 = 0x8011;

            mad_buffer.LinkWidthSup = 0x13;

            mad_buffer.LinkSpeedExtSup2 = 0x23;
            mad_buffer.LinkSpeedExtSup = 0x33;
            mad_buffer.LinkSpeedSup = 0x43;
            mad_buffer.MTUCap = 0x53;
        } else if (i == 9) {
            mad_buffer.CapMsk = 0x5;
            mad_buffer.CapMsk2 = 0x2;

            mad_buffer.LinkWidthSup = 0x14;

            mad_buffer.LinkSpeedExtSup2 = 0x24;
            mad_buffer.LinkSpeedExtSup = 0x34;
            mad_buffer.LinkSpeedSup = 0x44;
            mad_buffer.MTUCap = 0x54;
        } else {
            mad_buffer.CapMsk = 0x8;
            mad_buffer.CapMsk2 = 0x0;

            mad_buffer.LinkWidthSup = 0x12;

            mad_buffer.LinkSpeedExtSup2 = 0x22;
            mad_buffer.LinkSpeedExtSup = 0x32;
            mad_buffer.LinkSpeedSup = 0x42;
            mad_buffer.MTUCap = 0x52;
        }

        SMP_PortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));
    })");
}

}  // namespace
}  // namespace fabscan
