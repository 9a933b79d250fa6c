// The walk over a node's ports and the grouping of them, in every emitter that walks them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

using ::testing::ElementsAre;

/// An attribute whose ports are grouped, and where a record's number is found in its text.
struct Attribute {
  const char* name;
  FabricBuilder::Emitter emitter;
  void (*put)(TesselExtendedInfo& store, const IBPort& port, u_int16_t number);
  const char* before_number;
};

constexpr Attribute kAttributes[] = {
    {"PortInfo", &SimInfoDumpCPP::GeneratePortInfo,
     [](TesselExtendedInfo& store, const IBPort& port, u_int16_t number) {
       store.put<SMP_PortInfo>(port).CapMsk2 = number;
     },
     "mad_buffer.CapMsk2 = "},
    {"ExtendedPortInfo", &SimInfoDumpCPP::GenerateExtendedPortInfo,
     [](TesselExtendedInfo& store, const IBPort& port, u_int16_t number) {
       store.put<SMP_TarnExtPortInfo>(port).CapabilityMask = number;
     },
     "mad_buffer.CapabilityMask = "},
    {"ReductionPortInfo", &SimInfoDumpCPP::GenerateWrenReductionPortInfo,
     [](TesselExtendedInfo& store, const IBPort& port, u_int16_t number) {
       store.put<WrenReductionPortInfo>(port).capability_mask = number;
     },
     "mad_buffer.capability_mask = "},
    {"ReductionCounters", &SimInfoDumpCPP::GenerateWrenReductionCounters,
     [](TesselExtendedInfo& store, const IBPort& port, u_int16_t number) {
       store.putMonitors(port, 0);
       store.putCounters(port, 3).dropped_pkt = number;
     },
     "mad_buffer.dropped_pkt = "},
    {"PushReductionCounters", &SimInfoDumpCPP::GenerateWrenPushReductionCounters,
     [](TesselExtendedInfo& store, const IBPort& port, u_int16_t number) {
       store.putMonitors(port, 1);
       store.put<WrenPushReductionCounters>(port).jfto_event = number;
     },
     "wrapper.set_jfto_event("},
};

class PortWalk : public ::testing::TestWithParam<Attribute> {
 protected:
  /// A switch that supports what the attributes need, without a record.
  IBNode& BareSwitch(const std::string& name, phys_port_t ports) {
    IBNode& node = fabric.Switch(name, ports);
    fabric.Support(node, {9, 55});
    fabric.Put<IB_ClassPortInfo>(node);
    return node;
  }
  /// The same with a record of number 0x100 + P at each port P.
  IBNode& Switch(const std::string& name, phys_port_t ports) {
    IBNode& node = BareSwitch(name, ports);
    for (const IBPort* port : node.Ports) PutAt(*port, static_cast<u_int16_t>(0x100 + port->num));
    return node;
  }

  void PutAt(const IBPort& port, u_int16_t number) {
    GetParam().put(fabric.fabscan.fabric_extended_info, port, number);
  }

  /// Label and number of each branch after port 0's, in the order of the text.
  std::vector<std::string> Branches(const IBNode& node) {
    std::istringstream body(fabric.Body(GetParam().emitter, node));
    const std::string before_number = GetParam().before_number;
    std::vector<std::string> branches;
    for (std::string line; std::getline(body, line);) {
      line.erase(0, line.find_first_not_of(' '));
      if (line[0] == '#') return {line};
      if (line.substr(0, 5) == "case " || line == "default:" || line.substr(0, 6) == "} else") {
        branches.push_back(line + ' ');
      } else if (!branches.empty() && line.substr(0, before_number.size()) == before_number) {
        branches.back() += line.substr(before_number.size());
      }
    }
    return branches;
  }

  /// As the attribute writes them.
  std::string Case(const std::string& port, const std::string& number) {
    const bool in_ifs = GetParam().emitter == kAttributes[0].emitter;
    return (in_ifs ? "} else if (i == " + port + ") { " : "case " + port + ": ") + number + End();
  }
  std::string Default(const std::string& number) {
    const bool in_ifs = GetParam().emitter == kAttributes[0].emitter;
    return (in_ifs ? "} else { " : "default: ") + number + End();
  }
  std::string End() const {
    return std::string(GetParam().before_number).back() == '(' ? ");" : ";";
  }

  FabricBuilder fabric;
};

INSTANTIATE_TEST_SUITE_P(Attributes, PortWalk, ::testing::ValuesIn(kAttributes),
                         [](const auto& attribute) { return attribute.param.name; });

TEST_P(PortWalk, TakesPortsAboveDown) {
  IBNode& node = Switch("S1", 6);
  for (unsigned state = IB_UNKNOWN_PORT_STATE; state <= IB_PORT_STATE_ACTIVE; ++state) {
    node.Ports[1 + state]->port_state = static_cast<IBPortState>(state);
    node.Ports[1 + state]->setFNMPort(true);
  }
  EXPECT_THAT(Branches(node), ElementsAre(Case("3", "0x103"), Case("4", "0x104"),
                                          Case("5", "0x105"), Default("0x106")));
}

TEST_P(PortWalk, ChoosesTheRegularPortAmongThoseAboveDown) {
  IBNode& node = Switch("S1", 4);
  node.Ports[1]->port_state = IB_UNKNOWN_PORT_STATE;
  node.Ports[2]->port_state = IB_PORT_STATE_DOWN;
  node.Ports[3]->port_state = IB_PORT_STATE_INIT;
  node.Ports[4]->setFNMPort(true);
  EXPECT_THAT(Branches(node), ElementsAre(Case("4", "0x104"), Default("0x103")));
}

TEST_P(PortWalk, PassesOverPortsOutsideTheSubFabric) {
  IBNode& node = Switch("S1", 4);
  node.Ports[1]->setInSubFabric(false);
  node.Ports[2]->setInSubFabric(false);
  node.Ports[2]->setSpecialPort(true);
  node.Ports[4]->setSpecialPort(true);
  EXPECT_THAT(Branches(node), ElementsAre(Case("4", "0x104"), Default("0x103")));
}

TEST_P(PortWalk, PassesOverPortsWithoutARecord) {
  IBNode& node = BareSwitch("S1", 5);
  for (const std::size_t place : {0U, 1U, 5U}) {
    PutAt(*node.Ports[place], static_cast<u_int16_t>(0x100 + place));
  }
  for (const std::size_t place : {1U, 2U, 3U}) node.Ports[place]->setFNMPort(true);
  node.Ports[1]->num = 9;
  node.Ports[2]->num = 9;  // has no record to replace the other's with
  EXPECT_THAT(Branches(node), ElementsAre(Case("9", "0x101"), Default("0x105")));
}

TEST_P(PortWalk, EachMarkAloneGivesAPortItsOwnBranch) {
  IBNode& node = Switch("S1", 6);
  node.Ports[1]->setFNMPort(true);
  node.Ports[2]->setFNM1Port(true);
  node.Ports[3]->setSpecialPort(true);
  node.Ports[5]->setFNMPort(true);
  node.Ports[5]->setFNM1Port(true);
  node.Ports[5]->setSpecialPort(true);
  EXPECT_THAT(Branches(node),
              ElementsAre(Case("1", "0x101"), Case("2", "0x102"), Case("3", "0x103"),
                          Case("5", "0x105"), Default("0x104")));
}

TEST_P(PortWalk, RecordsAreNeverCompared) {
  IBNode& node = Switch("S1", 3);
  for (const IBPort* port : node.Ports) PutAt(*port, 0x77);
  node.Ports[2]->setFNM1Port(true);
  EXPECT_THAT(Branches(node), ElementsAre(Case("2", "0x77"), Default("0x77")));
}

TEST_P(PortWalk, GoesByPlaceAndNamesBranchesByNumber) {
  IBNode& node = Switch("S1", 6);
  for (const unsigned place : {1U, 2U, 3U, 6U}) node.Ports[place]->setSpecialPort(true);
  node.Ports[1]->num = 9;  // beyond the node's ports
  node.Ports[2]->num = 7;
  node.Ports[3]->num = 9;  // the same again: the later one counts
  node.Ports[6]->num = 0;
  node.Ports[4]->num = 200;  // regular: the lower place counts, whatever the number
  node.Ports[5]->num = 1;
  EXPECT_THAT(Branches(node), ElementsAre(Case("0", "0x106"), Case("7", "0x102"),
                                          Case("9", "0x103"), Default("0x104")));
}

TEST_P(PortWalk, ComesToAnEndAtTwoHundredAndFiftyFivePorts) {
  IBNode& node = Switch("S1", 255);
  for (const std::size_t place : {1U, 254U, 255U}) node.Ports[place]->setFNMPort(true);
  for (std::size_t place = 2; place < 253; ++place) node.Ports[place] = nullptr;
  EXPECT_THAT(Branches(node), ElementsAre(Case("1", "0x101"), Case("254", "0x1fe"),
                                          Case("255", "0x1ff"), Default("0x1fd")));
}

TEST_P(PortWalk, KeepsMarkedPortsApartWhateverTheirNumbers) {
  IBNode& node = Switch("S1", 255);
  for (const std::size_t place : {63U, 64U, 65U, 127U, 128U, 129U, 192U, 255U}) {
    node.Ports[place]->setFNMPort(true);
  }
  EXPECT_THAT(Branches(node),
              ElementsAre(Case("63", "0x13f"), Case("64", "0x140"), Case("65", "0x141"),
                          Case("127", "0x17f"), Case("128", "0x180"), Case("129", "0x181"),
                          Case("192", "0x1c0"), Case("255", "0x1ff"), Default("0x101")));
}

TEST_P(PortWalk, EndsAtTheNodesPortsAndAtTheVectors) {
  IBNode& node = Switch("S1", 6);
  for (const std::size_t place : {1U, 4U, 6U}) node.Ports[place]->setFNMPort(true);
  node.Ports[3] = nullptr;
  EXPECT_THAT(Branches(node), ElementsAre(Case("1", "0x101"), Case("4", "0x104"),
                                          Case("6", "0x106"), Default("0x102")));
  node.numPorts = 4;  // itself included
  EXPECT_THAT(Branches(node),
              ElementsAre(Case("1", "0x101"), Case("4", "0x104"), Default("0x102")));
  node.numPorts = 255;
  node.Ports.resize(4);
  EXPECT_THAT(Branches(node), ElementsAre(Case("1", "0x101"), Default("0x102")));
}

TEST_P(PortWalk, PortZeroIsNeverARegularOrAMarkedPort) {
  IBNode& node = Switch("S1", 2);
  node.Ports[2]->setFNMPort(true);
  EXPECT_THAT(Branches(node), ElementsAre(Case("2", "0x102"), Default("0x101")));
  node.Ports[0]->setFNMPort(true);
  EXPECT_THAT(Branches(node), ElementsAre(Case("2", "0x102"), Default("0x101")));
}

TEST_P(PortWalk, PortsOfOneNumberOnTwoNodesKeepTheirOwnRecords) {
  IBNode& first = Switch("S1", 2);
  IBNode& second = Switch("S2", 2);
  for (const IBNode* node : {&first, &second}) node->Ports[2]->setSpecialPort(true);
  PutAt(*second.Ports[1], 0x901);
  PutAt(*second.Ports[2], 0x902);
  EXPECT_THAT(Branches(first), ElementsAre(Case("2", "0x102"), Default("0x101")));
  EXPECT_THAT(Branches(second), ElementsAre(Case("2", "0x902"), Default("0x901")));
}

// ---------- What one attribute has of its own ----------

TEST(PortWalkOfPortInfoExtended, TakesTheFirstActivePlaceMarkedOrNot) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 255);
  for (IBPort* port : node.Ports) {
    fabric.Put<SMP_PortInfoExtended>(*port).CapMsk = 0x100U + port->num;
    port->port_state = IB_PORT_STATE_DOWN;
  }
  const auto mask = [&] {
    const std::string body = fabric.Body(&SimInfoDumpCPP::GeneratePortInfoExtended, node);
    const std::size_t at = body.find("CapMsk");
    return at == std::string::npos ? body : body.substr(at, body.find(';', at) - at);
  };
  node.Ports[255]->port_state = IB_PORT_STATE_INIT;
  EXPECT_EQ(mask(), "CapMsk = 0x1ff");
  node.Ports[254]->port_state = IB_PORT_STATE_ARM;
  node.Ports[254]->setFNM1Port(true);
  EXPECT_EQ(mask(), "CapMsk = 0x1fe");
  node.Ports[9]->port_state = IB_PORT_STATE_ACTIVE;
  node.Ports[9]->num = 255;
  EXPECT_EQ(mask(), "CapMsk = 0x109");
  node.Ports[9]->setInSubFabric(false);
  node.Ports[0]->port_state = IB_PORT_STATE_ACTIVE;
  EXPECT_EQ(mask(), "CapMsk = 0x1fe");
  node.Ports.resize(254);
  EXPECT_EQ(mask(), "// Failed to dump PortInfoExtended MAD. Null pointer is provided.");
}

TEST(PortWalkOfAdapters, NeverLooksAtThePlaceOfPortZero) {
  FabricBuilder fabric;
  IBNode& other = fabric.Switch("S1", 0);
  fabric.PutAt<SMP_PortInfoExtended>(other, 0);
  fabric.PutAt<SMP_TarnExtPortInfo>(other, 0);
  IBNode& node = fabric.Adapter("H1", 0);
  fabric.Support(node, {9});
  node.Ports.assign(1, other.Ports[0]);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GeneratePortInfoExtended, node),
            "// Failed to dump PortInfoExtended MAD. Null pointer is provided.");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateExtendedPortInfo, node),
            "// Failed to dump ExtendedPortInfo MAD. Null pointer is provided.");
}

TEST(PortWalkOfReductionCounters, SpecialPortsWithoutCountersAreNoSpecialPortData) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 4);
  fabric.Support(node, {55});
  fabric.Put<IB_ClassPortInfo>(node);
  auto& store = fabric.fabscan.fabric_extended_info;
  for (const IBPort* port : node.Ports) {
    store.putMonitors(*port, 0);
    store.putMonitors(*port, 1);
  }
  store.putCounters(*node.Ports[4], 0);
  fabric.PutAt<WrenPushReductionCounters>(node, 4);
  node.Ports[2]->setSpecialPort(true);
  node.Ports[3]->setFNMPort(true);
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateWrenReductionCounters, node),
            "#error \"Failed to dump WrenReductionCountersInfo MAD. Special port data is not "
            "provided.\"");
  EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateWrenPushReductionCounters, node),
            "#error \"Failed to dump WrenPushReductionCountersInfo MAD. "
            "Special port data is not provided.\"");
}

TEST(PortWalkOfReductionCounters, NamesPortsByTheirNumbers) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 2);
  fabric.Support(node, {55});
  fabric.Put<IB_ClassPortInfo>(node);
  for (const std::size_t place : {1U, 2U}) {
    fabric.fabscan.fabric_extended_info.putMonitors(*node.Ports[place], 0);
    fabric.fabscan.fabric_extended_info.putCounters(*node.Ports[place], 5);
  }
  node.Ports[1]->num = 77;
  node.Ports[2]->num = 65;
  node.Ports[2]->setFNMPort(true);
  std::istringstream body(fabric.Body(&SimInfoDumpCPP::GenerateWrenReductionCounters, node));
  std::vector<std::string> calls;
  for (std::string line; std::getline(body, line);) {
    const std::size_t at = line.find("m_node->");
    if (at != std::string::npos) calls.push_back(line.substr(at));
  }
  EXPECT_THAT(calls, ElementsAre("m_node->numPorts; i++) {",
                                 "m_node->getWrenReductionCounters(65, 5, lean_pipe);",
                                 "m_node->setWrenReductionCounters(65, 5, lean_pipe, &ctr);",
                                 "m_node->getWrenReductionCounters(77, 5, lean_pipe);",
                                 "m_node->setWrenReductionCounters(77, 5, lean_pipe, &ctr);"));
}

}  // namespace
}  // namespace fabscan
