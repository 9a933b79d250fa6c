#include <gtest/gtest.h>

#include <map>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

constexpr auto kGeneratePortInfoExtended =
    static_cast<FabricBuilder::Emitter>(&SimInfoDumpCPP::GeneratePortInfoExtended);
constexpr auto kGenerateExtendedPortInfo =
    static_cast<FabricBuilder::Emitter>(&SimInfoDumpCPP::GenerateExtendedPortInfo);

constexpr char kNoExtendedRecord[] =
    "// Failed to dump PortInfoExtended MAD. Null pointer is provided.";
constexpr char kNoVendorRecord[] =
    "// Failed to dump ExtendedPortInfo MAD. Null pointer is provided.";

TEST(PortInfoExtended, WritesTheFirstRecordForEveryPort) {
  FabricBuilder fabric;
  IBNode& node = fabric.Adapter("H1", 3);
  node.Ports[1]->port_state = IB_PORT_STATE_DOWN;
  fabric.PutAt<SMP_PortInfoExtended>(node, 1).CapMsk = 1;
  node.Ports[2]->setSpecialPort(true);  // special ports are not told apart
  auto& record = fabric.PutAt<SMP_PortInfoExtended>(node, 2);
  record.CapMsk = 0xf0000001;
  record.FECModeActive = 0x8202;
  record.FDRFECModeSupported = 0x8303;
  record.EDRFECModeSupported = 0x8404;
  record.HDRFECModeSupported = 0x8505;
  record.NDRFECModeSupported = 0x8606;
  fabric.PutAt<SMP_PortInfoExtended>(node, 3).CapMsk = 3;
  EXPECT_EQ(fabric.Body(kGeneratePortInfoExtended, node),
            R"(    for (size_t i = 0; i < m_node->nodePortsInfoExt.size(); i++) {
        SMP_PortInfoExtended mad_buffer = {0};
        SMP_PortInfoExtended_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfoExt[i]));

        mad_buffer.CapMsk = 0xf0000001;
        mad_buffer.FECModeActive = 0x8202;
        mad_buffer.FDRFECModeSupported = 0x8303;
        mad_buffer.EDRFECModeSupported = 0x8404;
        mad_buffer.HDRFECModeSupported = 0x8505;
        mad_buffer.NDRFECModeSupported = 0x8606;

        SMP_PortInfoExtended_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfoExt[i]));
    })");
}

TEST(PortInfoExtended, LeavesWhatIsEnabledToTheSimulatedNode) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  auto& record = fabric.PutAt<SMP_PortInfoExtended>(node, 1);
  record.FDRFECModeEnabled = record.EDRFECModeEnabled = 0xffff;
  record.HDRFECModeEnabled = record.NDRFECModeEnabled = record.PartitionTop = 0xffff;
  EXPECT_EQ(fabric.Body(kGeneratePortInfoExtended, node),
            R"(    for (size_t i = 0; i < m_node->nodePortsInfoExt.size(); i++) {
        SMP_PortInfoExtended mad_buffer = {0};
        SMP_PortInfoExtended_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfoExt[i]));

        mad_buffer.CapMsk = 0x0;
        mad_buffer.FECModeActive = 0x0;
        mad_buffer.FDRFECModeSupported = 0x0;
        mad_buffer.EDRFECModeSupported = 0x0;
        mad_buffer.HDRFECModeSupported = 0x0;
        mad_buffer.NDRFECModeSupported = 0x0;

        SMP_PortInfoExtended_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfoExt[i]));
    })");
}

TEST(PortInfoExtended, KeepsEveryBitOfTheMask) {
  FabricBuilder fabric;
  IBNode& node = fabric.Router("R1", 1);
  fabric.PutAt<SMP_PortInfoExtended>(node, 1).CapMsk = 0xffffffff;
  EXPECT_EQ(fabric.Body(kGeneratePortInfoExtended, node),
            R"(    for (size_t i = 0; i < m_node->nodePortsInfoExt.size(); i++) {
        SMP_PortInfoExtended mad_buffer = {0};
        SMP_PortInfoExtended_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfoExt[i]));

        mad_buffer.CapMsk = 0xffffffff;
        mad_buffer.FECModeActive = 0x0;
        mad_buffer.FDRFECModeSupported = 0x0;
        mad_buffer.EDRFECModeSupported = 0x0;
        mad_buffer.HDRFECModeSupported = 0x0;
        mad_buffer.NDRFECModeSupported = 0x0;

        SMP_PortInfoExtended_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfoExt[i]));
    })");
}

TEST(PortInfoExtended, IsPassedOverWithoutAUsablePort) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 2);
  fabric.PutAt<SMP_PortInfoExtended>(node, 0).CapMsk = 1;  // port 0 is not consulted
  EXPECT_EQ(fabric.Body(kGeneratePortInfoExtended, node), kNoExtendedRecord);
  fabric.PutAt<SMP_PortInfoExtended>(node, 1).CapMsk = 1;
  node.Ports[1]->port_state = IB_UNKNOWN_PORT_STATE;
  fabric.PutAt<SMP_PortInfoExtended>(node, 2).CapMsk = 1;
  node.Ports[2]->setInSubFabric(false);
  EXPECT_EQ(fabric.Body(kGeneratePortInfoExtended, node), kNoExtendedRecord);
  EXPECT_EQ(fabric.Body(kGeneratePortInfoExtended, fabric.Adapter("H1")), kNoExtendedRecord);
  IBNode& nulls = fabric.Adapter("H2", 255);
  nulls.Ports.assign(7, nullptr);
  EXPECT_EQ(fabric.Body(kGeneratePortInfoExtended, nulls), kNoExtendedRecord);
  EXPECT_EQ(fabric.Text([](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GeneratePortInfoExtended(out, static_cast<const SMP_PortInfoExtended*>(nullptr));
  }),
            kNoExtendedRecord);
}

/// Port 4 is FNM, 10 special, 11 FNM1; 3 is the lowest regular port with a record, 5 another.
IBNode& VendorSwitch(FabricBuilder& fabric) {
  IBNode& node = fabric.Switch("S1", 12);
  fabric.Support(node, {9});
  fabric.PutAt<SMP_TarnExtPortInfo>(node, 0).CapabilityMask = 1;  // port 0 is not consulted
  fabric.PutAt<SMP_TarnExtPortInfo>(node, 5).CapabilityMask = 5;
  node.Ports[4]->setFNMPort(true);
  node.Ports[10]->setSpecialPort(true);
  node.Ports[11]->setFNM1Port(true);
  {
    auto& record = fabric.PutAt<SMP_TarnExtPortInfo>(node, 3);
    record.LinkSpeedSupported = 0x81;
    record.CapabilityMask = 0x8202;
    record.FDR10FECModeSupported = 0x8303;
    record.FDRFECModeSupported = 0x8404;
    record.EDR20FECModeSupported = 0x8505;
    record.EDRFECModeSupported = 0x8606;
    record.FDR10RetranSupported = 0x87;
    record.FDRRetranSupported = 0x88;
    record.EDR20RetranSupported = 0x89;
    record.EDRRetranSupported = 0x8a;
    record.IsSpecialPort = 0x8b;
    record.SpecialPortCapabilityMask = 0x8c;
    record.is_fnm_port = 0x8d;
    record.SpecialPortType = 0x8e;
    record.HDRFECModeSupported = 0x8f0f;
    record.NDRFECModeSupported = 0x9010;
    record.XDRFECModeSupported = 0x9111;
    record.FECModeActive = 0x92;
    record.RetransMode = 0x93;
  }
  {
    auto& record = fabric.PutAt<SMP_TarnExtPortInfo>(node, 4);
    record.LinkSpeedSupported = 0x95;
    record.CapabilityMask = 0x9616;
    record.FDR10FECModeSupported = 0x9717;
    record.FDRFECModeSupported = 0x9818;
    record.EDR20FECModeSupported = 0x9919;
    record.EDRFECModeSupported = 0x9a1a;
    record.FDR10RetranSupported = 0x9b;
    record.FDRRetranSupported = 0x9c;
    record.EDR20RetranSupported = 0x9d;
    record.EDRRetranSupported = 0x9e;
    record.IsSpecialPort = 0x9f;
    record.SpecialPortCapabilityMask = 0xa0;
    record.is_fnm_port = 0xa1;
    record.SpecialPortType = 0xa2;
    record.HDRFECModeSupported = 0xa323;
    record.NDRFECModeSupported = 0xa424;
    record.XDRFECModeSupported = 0xa525;
    record.FECModeActive = 0xa6;
    record.RetransMode = 0xa7;
  }
  fabric.PutAt<SMP_TarnExtPortInfo>(node, 10);
  fabric.PutAt<SMP_TarnExtPortInfo>(node, 11) =
      *fabric.fabscan.fabric_extended_info.find<SMP_TarnExtPortInfo>(*node.Ports[3]);
  return node;
}

TEST(ExtendedPortInfo, GivesMarkedPortsACaseAndTheRestTheLowestRegularPort) {
  FabricBuilder fabric;
  IBNode& node = VendorSwitch(fabric);
  EXPECT_EQ(fabric.Body(kGenerateExtendedPortInfo, node),
            R"(    for (size_t i = 0; i < m_node->nodeExtPortsInfo.size(); i++) {
        SMP_TarnExtPortInfo mad_buffer = {0};
        SMP_TarnExtPortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));

        switch (i) {
        case 4:
            mad_buffer.LinkSpeedSupported = 0x95;
            mad_buffer.CapabilityMask = 0x9616;
            mad_buffer.FDR10FECModeSupported = 0x9717;
            mad_buffer.FDRFECModeSupported = 0x9818;
            mad_buffer.EDR20FECModeSupported = 0x9919;
            mad_buffer.EDRFECModeSupported = 0x9a1a;
            mad_buffer.FDR10RetranSupported = 0x9b;
            mad_buffer.FDRRetranSupported = 0x9c;
            mad_buffer.EDR20RetranSupported = 0x9d;
            mad_buffer.EDRRetranSupported = 0x9e;
            mad_buffer.IsSpecialPort = 0x9f;
            mad_buffer.SpecialPortCapabilityMask = 0xa0;
            mad_buffer.is_fnm_port = 0xa1;
            mad_buffer.SpecialPortType = 0xa2;
            mad_buffer.HDRFECModeSupported = 0xa323;
            mad_buffer.NDRFECModeSupported = 0xa424;
            mad_buffer.XDRFECModeSupported = 0xa525;
            mad_buffer.FECModeActive = 0xa6;
            mad_buffer.RetransMode = 0xa7;
            break;
        case 10:
            mad_buffer.LinkSpeedSupported = 0x0;
            mad_buffer.CapabilityMask = 0x0;
            mad_buffer.FDR10FECModeSupported = 0x0;
            mad_buffer.FDRFECModeSupported = 0x0;
            mad_buffer.EDR20FECModeSupported = 0x0;
            mad_buffer.EDRFECModeSupported = 0x0;
            mad_buffer.FDR10RetranSupported = 0x0;
            mad_buffer.FDRRetranSupported = 0x0;
            mad_buffer.EDR20RetranSupported = 0x0;
            mad_buffer.EDRRetranSupported = 0x0;
            mad_buffer.IsSpecialPort = 0x0;
            mad_buffer.SpecialPortCapabilityMask = 0x0;
            mad_buffer.is_fnm_port = 0x0;
            mad_buffer.SpecialPortType = 0x0;
            mad_buffer.HDRFECModeSupported = 0x0;
            mad_buffer.NDRFECModeSupported = 0x0;
            mad_buffer.XDRFECModeSupported = 0x0;
            mad_buffer.FECModeActive = 0x0;
            mad_buffer.RetransMode = 0x0;
            break;
        case 11:
            mad_buffer.LinkSpeedSupported = 0x81;
            mad_buffer.CapabilityMask = 0x8202;
            mad_buffer.FDR10FECModeSupported = 0x8303;
            mad_buffer.FDRFECModeSupported = 0x8404;
            mad_buffer.EDR20FECModeSupported = 0x8505;
            mad_buffer.EDRFECModeSupported = 0x8606;
            mad_buffer.FDR10RetranSupported = 0x87;
            mad_buffer.FDRRetranSupported = 0x88;
            mad_buffer.EDR20RetranSupported = 0x89;
            mad_buffer.EDRRetranSupported = 0x8a;
            mad_buffer.IsSpecialPort = 0x8b;
            mad_buffer.SpecialPortCapabilityMask = 0x8c;
            mad_buffer.is_fnm_port = 0x8d;
            mad_buffer.SpecialPortType = 0x8e;
            mad_buffer.HDRFECModeSupported = 0x8f0f;
            mad_buffer.NDRFECModeSupported = 0x9010;
            mad_buffer.XDRFECModeSupported = 0x9111;
            mad_buffer.FECModeActive = 0x92;
            mad_buffer.RetransMode = 0x93;
            break;
        default:
            mad_buffer.LinkSpeedSupported = 0x81;
            mad_buffer.CapabilityMask = 0x8202;
            mad_buffer.FDR10FECModeSupported = 0x8303;
            mad_buffer.FDRFECModeSupported = 0x8404;
            mad_buffer.EDR20FECModeSupported = 0x8505;
            mad_buffer.EDRFECModeSupported = 0x8606;
            mad_buffer.FDR10RetranSupported = 0x87;
            mad_buffer.FDRRetranSupported = 0x88;
            mad_buffer.EDR20RetranSupported = 0x89;
            mad_buffer.EDRRetranSupported = 0x8a;
            mad_buffer.IsSpecialPort = 0x8b;
            mad_buffer.SpecialPortCapabilityMask = 0x8c;
            mad_buffer.is_fnm_port = 0x8d;
            mad_buffer.SpecialPortType = 0x8e;
            mad_buffer.HDRFECModeSupported = 0x8f0f;
            mad_buffer.NDRFECModeSupported = 0x9010;
            mad_buffer.XDRFECModeSupported = 0x9111;
            mad_buffer.FECModeActive = 0x92;
            mad_buffer.RetransMode = 0x93;
        }

        SMP_TarnExtPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));
    })");
}

TEST(ExtendedPortInfo, MarkedPortThatIsDownOrOutsideFallsToTheDefault) {
  FabricBuilder fabric;
  IBNode& node = VendorSwitch(fabric);
  node.Ports[4]->port_state = IB_PORT_STATE_DOWN;
  node.Ports[10]->setInSubFabric(false);
  node.Ports[11]->port_state = IB_UNKNOWN_PORT_STATE;
  EXPECT_EQ(fabric.Body(kGenerateExtendedPortInfo, node),
            R"(    for (size_t i = 0; i < m_node->nodeExtPortsInfo.size(); i++) {
        SMP_TarnExtPortInfo mad_buffer = {0};
        SMP_TarnExtPortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));

        switch (i) {
        default:
            mad_buffer.LinkSpeedSupported = 0x81;
            mad_buffer.CapabilityMask = 0x8202;
            mad_buffer.FDR10FECModeSupported = 0x8303;
            mad_buffer.FDRFECModeSupported = 0x8404;
            mad_buffer.EDR20FECModeSupported = 0x8505;
            mad_buffer.EDRFECModeSupported = 0x8606;
            mad_buffer.FDR10RetranSupported = 0x87;
            mad_buffer.FDRRetranSupported = 0x88;
            mad_buffer.EDR20RetranSupported = 0x89;
            mad_buffer.EDRRetranSupported = 0x8a;
            mad_buffer.IsSpecialPort = 0x8b;
            mad_buffer.SpecialPortCapabilityMask = 0x8c;
            mad_buffer.is_fnm_port = 0x8d;
            mad_buffer.SpecialPortType = 0x8e;
            mad_buffer.HDRFECModeSupported = 0x8f0f;
            mad_buffer.NDRFECModeSupported = 0x9010;
            mad_buffer.XDRFECModeSupported = 0x9111;
            mad_buffer.FECModeActive = 0x92;
            mad_buffer.RetransMode = 0x93;
        }

        SMP_TarnExtPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));
    })");
}

TEST(ExtendedPortInfo, NeedsItsCapabilityWhateverTheStoreHolds) {
  FabricBuilder fabric;
  IBNode& node = VendorSwitch(fabric);
  fabric.Support(node, {8, 10});
  EXPECT_EQ(fabric.Body(kGenerateExtendedPortInfo, node),
            "// The ExtendedPortInfo mad is not supported on the node=S1");
}

TEST(ExtendedPortInfo, IsPassedOverWithoutARegularPort) {
  FabricBuilder fabric;
  IBNode& node = fabric.Adapter("H1", 2);
  fabric.Support(node, {9});
  EXPECT_EQ(fabric.Body(kGenerateExtendedPortInfo, node), kNoVendorRecord);
  fabric.PutAt<SMP_TarnExtPortInfo>(node, 2);
  node.Ports[2]->setSpecialPort(true);
  EXPECT_EQ(fabric.Body(kGenerateExtendedPortInfo, node), kNoVendorRecord);
}

TEST(ExtendedPortInfoWriters, PassOverNullRecords) {
  FabricBuilder fabric;
  const SMP_TarnExtPortInfo regular = {};
  const std::map<u_int8_t, const SMP_TarnExtPortInfo*> specials = {{1, nullptr}, {255, &regular}};
  const auto text = [&](const SMP_TarnExtPortInfo* record) {
    return fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
      dump.GenerateExtendedPortInfo(out, record, specials);
    });
  };
  EXPECT_EQ(text(nullptr), kNoVendorRecord);
  EXPECT_EQ(text(&regular), R"(    for (size_t i = 0; i < m_node->nodeExtPortsInfo.size(); i++) {
        SMP_TarnExtPortInfo mad_buffer = {0};
        SMP_TarnExtPortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));

        switch (i) {
        case 255:
            mad_buffer.LinkSpeedSupported = 0x0;
            mad_buffer.CapabilityMask = 0x0;
            mad_buffer.FDR10FECModeSupported = 0x0;
            mad_buffer.FDRFECModeSupported = 0x0;
            mad_buffer.EDR20FECModeSupported = 0x0;
            mad_buffer.EDRFECModeSupported = 0x0;
            mad_buffer.FDR10RetranSupported = 0x0;
            mad_buffer.FDRRetranSupported = 0x0;
            mad_buffer.EDR20RetranSupported = 0x0;
            mad_buffer.EDRRetranSupported = 0x0;
            mad_buffer.IsSpecialPort = 0x0;
            mad_buffer.SpecialPortCapabilityMask = 0x0;
            mad_buffer.is_fnm_port = 0x0;
            mad_buffer.SpecialPortType = 0x0;
            mad_buffer.HDRFECModeSupported = 0x0;
            mad_buffer.NDRFECModeSupported = 0x0;
            mad_buffer.XDRFECModeSupported = 0x0;
            mad_buffer.FECModeActive = 0x0;
            mad_buffer.RetransMode = 0x0;
            break;
        default:
            mad_buffer.LinkSpeedSupported = 0x0;
            mad_buffer.CapabilityMask = 0x0;
            mad_buffer.FDR10FECModeSupported = 0x0;
            mad_buffer.FDRFECModeSupported = 0x0;
            mad_buffer.EDR20FECModeSupported = 0x0;
            mad_buffer.EDRFECModeSupported = 0x0;
            mad_buffer.FDR10RetranSupported = 0x0;
            mad_buffer.FDRRetranSupported = 0x0;
            mad_buffer.EDR20RetranSupported = 0x0;
            mad_buffer.EDRRetranSupported = 0x0;
            mad_buffer.IsSpecialPort = 0x0;
            mad_buffer.SpecialPortCapabilityMask = 0x0;
            mad_buffer.is_fnm_port = 0x0;
            mad_buffer.SpecialPortType = 0x0;
            mad_buffer.HDRFECModeSupported = 0x0;
            mad_buffer.NDRFECModeSupported = 0x0;
            mad_buffer.XDRFECModeSupported = 0x0;
            mad_buffer.FECModeActive = 0x0;
            mad_buffer.RetransMode = 0x0;
        }

        SMP_TarnExtPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));
    })");
}

TEST(ExtendedPortInfoWriters, WriteABranchAtAnyIndent) {
  FabricBuilder fabric;
  SMP_TarnExtPortInfo record = {};
  record.LinkSpeedSupported = 0x95;
  record.CapabilityMask = 0x9616;
  record.FDR10FECModeSupported = 0x9717;
  record.FDRFECModeSupported = 0x9818;
  record.EDR20FECModeSupported = 0x9919;
  record.EDRFECModeSupported = 0x9a1a;
  record.FDR10RetranSupported = 0x9b;
  record.FDRRetranSupported = 0x9c;
  record.EDR20RetranSupported = 0x9d;
  record.EDRRetranSupported = 0x9e;
  record.IsSpecialPort = 0x9f;
  record.SpecialPortCapabilityMask = 0xa0;
  record.is_fnm_port = 0xa1;
  record.SpecialPortType = 0xa2;
  record.HDRFECModeSupported = 0xa323;
  record.NDRFECModeSupported = 0xa424;
  record.XDRFECModeSupported = 0xa525;
  record.FECModeActive = 0xa6;
  record.RetransMode = 0xa7;
  EXPECT_EQ(fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GenerateExtendedPortInfo(out, 17, &record);
  }),
            R"(
                 mad_buffer.LinkSpeedSupported = 0x95;
                 mad_buffer.CapabilityMask = 0x9616;
                 mad_buffer.FDR10FECModeSupported = 0x9717;
                 mad_buffer.FDRFECModeSupported = 0x9818;
                 mad_buffer.EDR20FECModeSupported = 0x9919;
                 mad_buffer.EDRFECModeSupported = 0x9a1a;
                 mad_buffer.FDR10RetranSupported = 0x9b;
                 mad_buffer.FDRRetranSupported = 0x9c;
                 mad_buffer.EDR20RetranSupported = 0x9d;
                 mad_buffer.EDRRetranSupported = 0x9e;
                 mad_buffer.IsSpecialPort = 0x9f;
                 mad_buffer.SpecialPortCapabilityMask = 0xa0;
                 mad_buffer.is_fnm_port = 0xa1;
                 mad_buffer.SpecialPortType = 0xa2;
                 mad_buffer.HDRFECModeSupported = 0xa323;
                 mad_buffer.NDRFECModeSupported = 0xa424;
                 mad_buffer.XDRFECModeSupported = 0xa525;
                 mad_buffer.FECModeActive = 0xa6;
                 mad_buffer.RetransMode = 0xa7;)");
}

}  // namespace
}  // namespace fabscan
