#include <gtest/gtest.h>

#include <map>

#include "testing/fabric_builder.h"
#include "testing/port_infos.h"

namespace fabscan {
namespace {

/// Port 0, FNM port 2, special port 4 and FNM1 port 3, and regular ports 1 and 5.
IBNode& SwitchOfAllKinds(FabricBuilder& fabric) {
  IBNode& node = fabric.Switch("S1", 5);
  node.Ports[2]->setFNMPort(true);
  node.Ports[3]->setFNM1Port(true);
  node.Ports[4]->setSpecialPort(true);
  PutInfo(fabric, node, 0, 0);
  PutInfo(fabric, node, 1, 1);
  PutInfo(fabric, node, 2, 2);
  PutInfo(fabric, node, 3, 3);
  PutInfo(fabric, node, 4, 0);
  PutInfo(fabric, node, 5, 3);
  return node;
}

TEST(PortInfo, SwitchTellsPortZeroMarkedPortsAndTheRestApart) {
  FabricBuilder fabric;
  IBNode& node = SwitchOfAllKinds(fabric);
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
        } else if (i == 2) {
            mad_buffer.CapMsk = 0xf0000001;
            mad_buffer.CapMsk2 = 0x8011;

            mad_buffer.LinkWidthSup = 0x13;

            mad_buffer.LinkSpeedExtSup2 = 0x23;
            mad_buffer.LinkSpeedExtSup = 0x33;
            mad_buffer.LinkSpeedSup = 0x43;
            mad_buffer.MTUCap = 0x53;
        } else if (i == 3) {
            mad_buffer.CapMsk = 0x5;
            mad_buffer.CapMsk2 = 0x2;

            mad_buffer.LinkWidthSup = 0x14;

            mad_buffer.LinkSpeedExtSup2 = 0x24;
            mad_buffer.LinkSpeedExtSup = 0x34;
            mad_buffer.LinkSpeedSup = 0x44;
            mad_buffer.MTUCap = 0x54;
        } else if (i == 4) {
            mad_buffer.CapMsk = 0x2514868;
            mad_buffer.CapMsk2 = 0x1403;

            mad_buffer.LinkWidthSup = 0x11;

            mad_buffer.LinkSpeedExtSup2 = 0x21;
            mad_buffer.LinkSpeedExtSup = 0x31;
            mad_buffer.LinkSpeedSup = 0x41;
            mad_buffer.MTUCap = 0x51;
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

TEST(PortInfo, OpalSwitchLeavesTheLinkWidthOfRegularPortsAlone) {
  FabricBuilder fabric;
  IBNode& node = SwitchOfAllKinds(fabric);
  node.setOpalSwitch(true);
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
        } else if (i == 2) {
            mad_buffer.CapMsk = 0xf0000001;
            mad_buffer.CapMsk2 = 0x8011;

            mad_buffer.LinkWidthSup = 0x13;

            mad_buffer.LinkSpeedExtSup2 = 0x23;
            mad_buffer.LinkSpeedExtSup = 0x33;
            mad_buffer.LinkSpeedSup = 0x43;
            mad_buffer.MTUCap = 0x53;
        } else if (i == 3) {
            mad_buffer.CapMsk = 0x5;
            mad_buffer.CapMsk2 = 0x2;

            mad_buffer.LinkWidthSup = 0x14;

            mad_buffer.LinkSpeedExtSup2 = 0x24;
            mad_buffer.LinkSpeedExtSup = 0x34;
            mad_buffer.LinkSpeedSup = 0x44;
            mad_buffer.MTUCap = 0x54;
        } else if (i == 4) {
            mad_buffer.CapMsk = 0x2514868;
            mad_buffer.CapMsk2 = 0x1403;

            mad_buffer.LinkWidthSup = 0x11;

            mad_buffer.LinkSpeedExtSup2 = 0x21;
            mad_buffer.LinkSpeedExtSup = 0x31;
            mad_buffer.LinkSpeedSup = 0x41;
            mad_buffer.MTUCap = 0x51;
        } else {
            mad_buffer.CapMsk = 0x8;
            mad_buffer.CapMsk2 = 0x0;

            mad_buffer.LinkSpeedExtSup2 = 0x22;
            mad_buffer.LinkSpeedExtSup = 0x32;
            mad_buffer.LinkSpeedSup = 0x42;
            mad_buffer.MTUCap = 0x52;
        }

        SMP_PortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));
    })");
}

TEST(PortInfo, SwitchWithoutMarkedPortsHasTwoBranches) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 2);
  PutInfo(fabric, node, 0, 1);
  PutInfo(fabric, node, 2, 2);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node),
            R"(    for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {
        SMP_PortInfo mad_buffer = {0};
        SMP_PortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));

        if (!i) {
            // ---------- CapMask
            // IsTrapSupported                                = 1
            mad_buffer.CapMsk = 0x8;

            // ---------- CapMask2
            mad_buffer.CapMsk2 = 0x0;

            mad_buffer.LinkWidthSup = 0x12;

            mad_buffer.LinkSpeedExtSup2 = 0x22;
            mad_buffer.LinkSpeedExtSup = 0x32;
            mad_buffer.LinkSpeedSup = 0x42;
            mad_buffer.MTUCap = 0x52;
        } else {
            mad_buffer.CapMsk = 0xf0000001;
            mad_buffer.CapMsk2 = 0x8011;

            mad_buffer.LinkWidthSup = 0x13;

            mad_buffer.LinkSpeedExtSup2 = 0x23;
            mad_buffer.LinkSpeedExtSup = 0x33;
            mad_buffer.LinkSpeedSup = 0x43;
            mad_buffer.MTUCap = 0x53;
        }

        SMP_PortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));
    })");
}

TEST(PortInfo, AdapterGivesEveryPortTheValuesOfItsLowestRegularOne) {
  FabricBuilder fabric;
  IBNode& node = fabric.Adapter("H1", 4);
  node.Ports[1]->setSpecialPort(true);
  PutInfo(fabric, node, 1, 1);
  PutInfo(fabric, node, 3, 2);
  PutInfo(fabric, node, 4, 0);
  const std::string expected = R"(    for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {
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
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), expected);
  node.setOpalSwitch(true);
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node), expected);
}

TEST(PortInfo, RouterAndUnknownNodeGoTheWayOfAdapters) {
  FabricBuilder fabric;
  for (const IBNodeType type : {IB_RTR_NODE, IB_UNKNOWN_NODE_TYPE}) {
    IBNode& node = fabric.Node("N" + std::to_string(type), type, 1);
    PutInfo(fabric, node, 1, 0);
    EXPECT_EQ(fabric.Body(kGeneratePortInfo, node),
              R"(    for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {
        SMP_PortInfo mad_buffer = {0};
        SMP_PortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));

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

        SMP_PortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));
    })");
  }
}

TEST(PortInfo, NamesEverySetBitButIsSMAndThoseWithoutAName) {
  FabricBuilder fabric;
  IBNode& node = fabric.Adapter("H1", 1);
  auto& info = fabric.PutAt<SMP_PortInfo>(node, 1);
  info.CapMsk = 0xffffffff;
  info.CapMsk2 = 0xffff;
  info.LinkWidthSup = info.LinkSpeedExtSup2 = info.LinkSpeedExtSup = 0xff;
  info.LinkSpeedSup = info.MTUCap = 0xff;
  EXPECT_EQ(fabric.Body(kGeneratePortInfo, node),
            R"(    for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {
        SMP_PortInfo mad_buffer = {0};
        SMP_PortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));

        // ---------- CapMask
        // IsNoticeSupported                              = 1
        // IsTrapSupported                                = 1
        // IsOptionalIPDSupported                         = 1
        // IsAutomaticMigrationSupported                  = 1
        // IsSLMappingSupported                           = 1
        // IsMKeyNVRAM                                    = 1
        // IsPKeyNVRAM                                    = 1
        // IsLEDInfoSupported                             = 1
        // IsSMdisabled                                   = 1
        // IsSystemImageGUIDSupported                     = 1
        // IsPKeySwitchExternalPortTrapSupported          = 1
        // IsCableInfoSupported                           = 1
        // IsExtendedSpeedsSupported                      = 1
        // IsCapabilityMask2Supported                     = 1
        // IsCommunicationManagementSupported             = 1
        // IsSNMPTunnelingSupported                       = 1
        // IsReinitSupported                              = 1
        // IsDeviceManagementSupported                    = 1
        // IsVendorClassSupported                         = 1
        // IsDRNoticeSupported                            = 1
        // IsCapabilityMaskNoticeSupported                = 1
        // IsBootManagementSupported                      = 1
        // IsLinkRoundTripLatencySupported                = 1
        // IsClientReregistrationSupported                = 1
        // IsOtherLocalChangesNoticeSupported             = 1
        // IsLinkSpeedWidthPairsTableSupported            = 1
        // IsVendorSpecificMadsTableSupported             = 1
        // IsMulticastPKeyTrapSuppressionSupported        = 1
        // IsMulticastFDBTopSupported                     = 1
        // IsHierarchyInfoSupported                       = 1
        mad_buffer.CapMsk = 0xfffffffd;

        // ---------- CapMask2
        // IsSetNodeDescriptionSupported                  = 1
        // IsPortInfoExtendedSupported                    = 1
        // IsVirtualizationSupported                      = 1
        // IsSwitchPortStateTableSupported                = 1
        // IsLinkWidth2xSupported                         = 1
        // IsLinkSpeedHDRSupported                        = 1
        // IsMKeyProtectBitsExtSupported                  = 1
        // IsEnhancedTrap128Supported                     = 1
        // IsPartitionTopSupported                        = 1
        // IsEnhancedQoSArbiterSupported                  = 1
        // IsLinkSpeedNDRSupported                        = 1
        // IsExtendedSpeeds2Supported                     = 1
        // IsLinkSpeedXDRSupported                        = 1
        mad_buffer.CapMsk2 = 0xffff;

        mad_buffer.LinkWidthSup = 0xff;

        mad_buffer.LinkSpeedExtSup2 = 0xff;
        mad_buffer.LinkSpeedExtSup = 0xff;
        mad_buffer.LinkSpeedSup = 0xff;
        mad_buffer.MTUCap = 0xff;

        SMP_PortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));
    })");
}

TEST(PortInfo, OnlyTheKindOfSwitchAndOfPortDecideAboutTheLinkWidth) {
  const auto count = [](const std::string& text) {
    const std::string word = "LinkWidthSup = ";
    std::size_t words = 0;
    for (std::size_t at = 0; (at = text.find(word, at)) != std::string::npos; ++at) ++words;
    return words;
  };
  for (const unsigned ports : {1U, 64U, 65U, 255U}) {
    FabricBuilder fabric;
    IBNode& node = fabric.Switch("S1", static_cast<phys_port_t>(ports));
    for (const unsigned port : {0U, 1U}) PutInfo(fabric, node, port, 0);
    EXPECT_EQ(count(fabric.Body(kGeneratePortInfo, node)), 2U) << ports;
    node.setOpalSwitch(true);
    EXPECT_EQ(count(fabric.Body(kGeneratePortInfo, node)), 1U) << ports;
  }
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 255);
  for (const unsigned port : {0U, 1U, 127U, 128U, 255U}) PutInfo(fabric, node, port, 0);
  for (const unsigned port : {127U, 128U, 255U}) node.Ports[port]->setFNMPort(true);
  const std::string text = fabric.Body(kGeneratePortInfo, node);
  EXPECT_EQ(count(text), 5U);
  for (const char* port : {"(i == 127)", "(i == 128)", "(i == 255)"}) {
    EXPECT_NE(text.find(port), std::string::npos) << port;
  }
  // Comments are above the masks of port 0 only.
  EXPECT_EQ(text.rfind("// ----------"), text.find("// ---------- CapMask2"));
}

TEST(PortInfoWriters, PassOverNullRecordsOfTheMap) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1");
  const SMP_PortInfo port0 = Info(0);
  const SMP_PortInfo regular = Info(1);
  const SMP_PortInfo special = Info(2);
  const std::map<u_int8_t, const SMP_PortInfo*> specials = {{2, nullptr}, {200, &special}};
  EXPECT_EQ(fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GeneratePortInfoSW(node, out, &port0, &regular, specials);
  }),
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
        } else if (i == 200) {
            mad_buffer.CapMsk = 0xf0000001;
            mad_buffer.CapMsk2 = 0x8011;

            mad_buffer.LinkWidthSup = 0x13;

            mad_buffer.LinkSpeedExtSup2 = 0x23;
            mad_buffer.LinkSpeedExtSup = 0x33;
            mad_buffer.LinkSpeedSup = 0x43;
            mad_buffer.MTUCap = 0x53;
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
  for (const auto& [zero, rest] :
       {std::pair{&port0, static_cast<const SMP_PortInfo*>(nullptr)},
        std::pair{static_cast<const SMP_PortInfo*>(nullptr), &regular}}) {
    EXPECT_EQ(
        fabric.Text([&, zero = zero, rest = rest](const SimInfoDumpCPP& dump, std::ostream& out) {
          dump.GeneratePortInfoSW(node, out, zero, rest, specials);
        }),
        kNoZeroOrRegular);
  }
}

TEST(PortInfoWriters, WriteABranchAtAnyIndent) {
  FabricBuilder fabric;
  const SMP_PortInfo info = Info(1);
  const auto branch = [&](int indent, bool names, bool width) {
    return fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
      dump.GeneratePortInfoSW(out, &info, indent, names, width);
    });
  };
  EXPECT_EQ(branch(2, false, false), R"(
  mad_buffer.CapMsk = 0x8;
  mad_buffer.CapMsk2 = 0x0;

  mad_buffer.LinkSpeedExtSup2 = 0x22;
  mad_buffer.LinkSpeedExtSup = 0x32;
  mad_buffer.LinkSpeedSup = 0x42;
  mad_buffer.MTUCap = 0x52;)");
  EXPECT_EQ(branch(2, true, false), R"(
  // ---------- CapMask
  // IsTrapSupported                                = 1
  mad_buffer.CapMsk = 0x8;

  // ---------- CapMask2
  mad_buffer.CapMsk2 = 0x0;

  mad_buffer.LinkSpeedExtSup2 = 0x22;
  mad_buffer.LinkSpeedExtSup = 0x32;
  mad_buffer.LinkSpeedSup = 0x42;
  mad_buffer.MTUCap = 0x52;)");
  EXPECT_EQ(branch(2, false, true), R"(
  mad_buffer.CapMsk = 0x8;
  mad_buffer.CapMsk2 = 0x0;

  mad_buffer.LinkWidthSup = 0x12;

  mad_buffer.LinkSpeedExtSup2 = 0x22;
  mad_buffer.LinkSpeedExtSup = 0x32;
  mad_buffer.LinkSpeedSup = 0x42;
  mad_buffer.MTUCap = 0x52;)");
  EXPECT_EQ(branch(20, true, true), R"(
                    // ---------- CapMask
                    // IsTrapSupported                                = 1
                    mad_buffer.CapMsk = 0x8;

                    // ---------- CapMask2
                    mad_buffer.CapMsk2 = 0x0;

                    mad_buffer.LinkWidthSup = 0x12;

                    mad_buffer.LinkSpeedExtSup2 = 0x22;
                    mad_buffer.LinkSpeedExtSup = 0x32;
                    mad_buffer.LinkSpeedSup = 0x42;
                    mad_buffer.MTUCap = 0x52;)");
}

TEST(PortInfoWriters, AlignTheMarksFiftyThreeCharactersAfterTheIndent) {
  FabricBuilder fabric;
  const auto names = [&](int indent, u_int32_t mask, bool second) {
    return fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
      dump.PrintCapabilityMask(indent, out, mask, second);
    });
  };
  EXPECT_EQ(names(4, 0, false), "\n    // ---------- CapMask");
  EXPECT_EQ(names(4, 0xe000, true), "\n    // ---------- CapMask2");
  EXPECT_EQ(names(0, 0x20000003, false),
            "\n// ---------- CapMask"
            "\n// IsSM                                           = 1"
            "\n// IsMulticastPKeyTrapSuppressionSupported        = 1");
  EXPECT_EQ(names(1, 0x1001, true),
            "\n // ---------- CapMask2"
            "\n // IsSetNodeDescriptionSupported                  = 1"
            "\n // IsLinkSpeedXDRSupported                        = 1");
}

TEST(PortInfoWriters, AdapterWriterNeedsARecord) {
  FabricBuilder fabric;
  EXPECT_EQ(fabric.Text([](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GeneratePortInfoCA(out, nullptr);
  }),
            kNoRecord);
}

}  // namespace
}  // namespace fabscan
