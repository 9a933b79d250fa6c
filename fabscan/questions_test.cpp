// What the emitters ask of the model, and in what order, seen with a second header tree whose
// classes write every question down.

#include <fabscan_sim_info_dump.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <recording.h>
#include <unistd.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Emitter = void (SimInfoDumpCPP::*)(std::ostream&, const IBNode&) const;

constexpr auto kPortInfo = static_cast<Emitter>(&SimInfoDumpCPP::GeneratePortInfo);
constexpr auto kPortInfoExtended = static_cast<Emitter>(&SimInfoDumpCPP::GeneratePortInfoExtended);
constexpr auto kExtendedPortInfo = static_cast<Emitter>(&SimInfoDumpCPP::GenerateExtendedPortInfo);
constexpr auto kReductionPortInfo =
    static_cast<Emitter>(&SimInfoDumpCPP::GenerateWrenReductionPortInfo);
constexpr auto kCounters = static_cast<Emitter>(&SimInfoDumpCPP::GenerateWrenReductionCounters);
constexpr auto kPushCounters =
    static_cast<Emitter>(&SimInfoDumpCPP::GenerateWrenPushReductionCounters);

class Questions : public ::testing::Test {
 protected:
  Questions() {
    recording::answers = {};
    recording::questions.clear();
    recording::ports_too = false;
    Clear<SMP_NodeInfo, SMP_PortInfo, SMP_PortInfoExtended, SMP_TarnExtPortInfo,
          CC_EnhancedCongestionInfo, IB_ClassPortInfo, WrenReductionPortInfo,
          WrenReductionConfigureMLIDMonitors, WrenReductionCounters, WrenPushReductionCounters>();
  }

  template <class... Record>
  void Clear() {
    (recording::records<Record>.clear(), ...);
  }

  /// A node N with createIndex 7, and ports whose createIndex is 100 more than their number.
  IBNode& Node(IBNodeType type, phys_port_t ports = 0) {
    IBNode& node = nodes_.emplace_back(type);
    node.name = "N";
    node.createIndex = 7;
    node.numPorts = ports;
    for (unsigned number = 0; number <= ports; ++number) {
      IBPort& port = ports_.emplace_back();
      port.num = static_cast<phys_port_t>(number);
      port.createIndex = 100 + number;
      node.Ports.push_back(&port);
    }
    return node;
  }

  std::string Body(Emitter emitter, const IBNode& node) {
    std::ostringstream out;
    const SimInfoDumpCPP dump(fabscan_);
    (dump.*emitter)(out, node);
    return out.str();
  }

  std::vector<std::string> Asked(Emitter emitter, const IBNode& node) {
    recording::questions.clear();
    Body(emitter, node);
    return recording::questions;
  }

  Fabscan fabscan_;
  std::deque<IBNode> nodes_;
  std::deque<IBPort> ports_;
};

TEST_F(Questions, AnotherKindOfNodeIsAskedNothing) {
  const IBNode& adapter = Node(IB_CA_NODE, 2);
  recording::answers.smp_bits = {0, 2, 12, 55};
  for (const Emitter emitter :
       {&SimInfoDumpCPP::GenerateSwitchInfo, &SimInfoDumpCPP::GenerateExtendedSwitchInfo,
        &SimInfoDumpCPP::GenerateRouterInfo, &SimInfoDumpCPP::GeneratePrivateLFTInfo,
        &SimInfoDumpCPP::GenerateARInfo, &SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings,
        &SimInfoDumpCPP::GenerateVSReductionManagerClassPortInfo,
        &SimInfoDumpCPP::GenerateWrenReductionInfo, kReductionPortInfo, kCounters, kPushCounters}) {
    EXPECT_THAT(Asked(emitter, adapter), IsEmpty());
  }
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GenerateRouterInfo, Node(IB_SW_NODE)), IsEmpty());
}

TEST_F(Questions, ASpecialNodeIsAskedNothing) {
  IBNode& special = Node(IB_CA_NODE);
  special.special_ = IB_SPECIAL_PORT_AN;
  recording::answers.smp_bits = {44};
  for (const Emitter emitter :
       {&SimInfoDumpCPP::GenerateGMPCapabilityMask, &SimInfoDumpCPP::GenerateFWInfo,
        &SimInfoDumpCPP::GenerateHWInfo, &SimInfoDumpCPP::GenerateSWInfo,
        &SimInfoDumpCPP::GenerateEnhancedCongestionInfo}) {
    EXPECT_THAT(Asked(emitter, special), IsEmpty());
  }
}

TEST_F(Questions, RecordsAreAskedForByTheNodesIndex) {
  const IBNode& sw = Node(IB_SW_NODE);
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GenerateNodeInfo, sw), ElementsAre("getSMPNodeInfo(7)"));
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GenerateSwitchInfo, sw), ElementsAre("getSMPSwitchInfo(7)"));
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GenerateExtendedSwitchInfo, sw),
              ElementsAre("getSMP_ExtendedSwitchInfo(7)"));
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GenerateRouterInfo, Node(IB_RTR_NODE)),
              ElementsAre("getSMPRouterInfo(7)"));
  for (const Emitter emitter : {&SimInfoDumpCPP::GenerateFWInfo, &SimInfoDumpCPP::GenerateHWInfo,
                                &SimInfoDumpCPP::GenerateSWInfo}) {
    EXPECT_THAT(Asked(emitter, sw), ElementsAre("getVSGeneralInfo(7)"));
  }
}

TEST_F(Questions, TheCapabilityComesBeforeTheRecord) {
  struct Row {
    Emitter emitter;
    int bit;
    const char* record;
  };
  const Row rows[] = {
      {&SimInfoDumpCPP::GenerateExtendedNodeInfo, 13, "getSMPExtNodeInfo(7)"},
      {&SimInfoDumpCPP::GenerateARInfo, 2, "getARInfo(7)"},
      {&SimInfoDumpCPP::GenerateEnhancedCongestionInfo, 44, "getCCEnhancedCongestionInfo(7)"},
      {&SimInfoDumpCPP::GenerateVSReductionManagerClassPortInfo, 55, "getWrenClassPortInfo(7)"},
      {&SimInfoDumpCPP::GenerateWrenReductionInfo, 55, "getWrenReductionInfo(7)"},
      {kReductionPortInfo, 55, "getWrenClassPortInfo(7)"},
      {kCounters, 55, "getWrenClassPortInfo(7)"},
      {kPushCounters, 55, "getWrenClassPortInfo(7)"},
      {kExtendedPortInfo, 9, "getSMPTarnExtPortInfo(101)"},
  };
  const IBNode& node = Node(IB_SW_NODE, 1);
  for (const Row& row : rows) {
    const std::string capability = "IsSupportedSMPCapability(N, " + std::to_string(row.bit) + ")";
    recording::answers.smp_bits.clear();
    EXPECT_THAT(Asked(row.emitter, node), ElementsAre(capability));
    recording::answers.smp_bits = {row.bit};
    EXPECT_THAT(Asked(row.emitter, node), ElementsAre(capability, row.record));
  }
}

TEST_F(Questions, TheServiceLevelMapIsAskedForOnlyWithPrivateForwarding) {
  const IBNode& node = Node(IB_SW_NODE);
  recording::answers.smp_bits = {12};
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GeneratePrivateLFTInfo, node),
              ElementsAre("IsSupportedSMPCapability(N, 0)"));
  recording::answers.smp_bits = {0};
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GeneratePrivateLFTInfo, node),
              ElementsAre("IsSupportedSMPCapability(N, 0)", "IsSupportedSMPCapability(N, 12)"));
  recording::answers.smp_bits = {0, 12};
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GeneratePrivateLFTInfo, node),
              ElementsAre("IsSupportedSMPCapability(N, 0)", "IsSupportedSMPCapability(N, 12)",
                          "getPLFTInfo(7)"));
}

TEST_F(Questions, SwitchSettingsNeedTheCongestionInfoAndNoCapability) {
  const IBNode& node = Node(IB_SW_NODE);
  constexpr auto kSettings = &SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings;
  EXPECT_THAT(Asked(kSettings, node), ElementsAre("getCCEnhancedCongestionInfo(7)"));
  CC_EnhancedCongestionInfo info = {};
  info.ver1 = 1;
  recording::Put(7, info);
  EXPECT_THAT(Asked(kSettings, node), ElementsAre("getCCEnhancedCongestionInfo(7)"));
  info.ver0 = 1;
  recording::Put(7, info);
  EXPECT_THAT(Asked(kSettings, node),
              ElementsAre("getCCEnhancedCongestionInfo(7)", "getCCSwitchGeneralSettings(7)"));
}

TEST_F(Questions, EveryNamedBitIsAskedForOnceAfterTheMask) {
  const IBNode& node = Node(IB_SW_NODE);
  std::vector<std::string> smp = {"GetCapability(N, SMP)"};
  for (int bit = 0; bit < 90; ++bit) {
    if (bit != 42) smp.push_back("IsSupportedSMPCapability(N, " + std::to_string(bit) + ")");
  }
  EXPECT_EQ(Asked(&SimInfoDumpCPP::GenerateSMPCapabilityMask, node), smp);
  std::vector<std::string> gmp = {"GetCapability(N, GMP)"};
  for (int bit = 0; bit < 49; ++bit) {
    gmp.push_back("IsSupportedGMPCapability(N, " + std::to_string(bit) + ")");
  }
  EXPECT_EQ(Asked(&SimInfoDumpCPP::GenerateGMPCapabilityMask, node), gmp);

  recording::answers.smp_status = recording::answers.gmp_status = -5;
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GenerateSMPCapabilityMask, node),
              ElementsAre("GetCapability(N, SMP)"));
  EXPECT_THAT(Asked(&SimInfoDumpCPP::GenerateGMPCapabilityMask, node),
              ElementsAre("GetCapability(N, GMP)"));
}

TEST_F(Questions, TheNamesFollowTheModuleAndTheWordsTheMask) {
  const IBNode& node = Node(IB_SW_NODE);
  recording::answers.smp_bits = {42, 89};
  recording::answers.smp_mask = {{1, 1U << 10U, 0, 0x80000000}};
  EXPECT_EQ(Body(&SimInfoDumpCPP::GenerateSMPCapabilityMask, node),
            R"(    // ---------- SMP Caps ----------
    // IsLinkHealthFiltersSupported

    GeneralInfoCapabilityMask mad_buffer = {0};
    GeneralInfoCapabilityMask_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));

    mad_buffer.capability0 = 0x1;
    mad_buffer.capability1 = 0x400;
    mad_buffer.capability2 = 0x0;
    mad_buffer.capability3 = 0x80000000;

    GeneralInfoCapabilityMask_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskSMP));)");
}

TEST_F(Questions, AFailedMaskIsNamedWithItsStatus) {
  const IBNode& node = Node(IB_SW_NODE);
  for (const auto& [status, text] : {std::pair{-5, "-5"}, std::pair{2147483647, "2147483647"},
                                     std::pair{std::numeric_limits<int>::min(), "-2147483648"}}) {
    recording::answers.smp_status = recording::answers.gmp_status = status;
    EXPECT_EQ(
        Body(&SimInfoDumpCPP::GenerateSMPCapabilityMask, node),
        std::string("#error \"Failed to get SMP capabilites for the node=N with rc=") + text + '"');
    EXPECT_EQ(
        Body(&SimInfoDumpCPP::GenerateGMPCapabilityMask, node),
        std::string("#error \"Failed to get GMP capabilites for the node=N with rc=") + text + '"');
  }
}

TEST_F(Questions, AMaskIsHandedOverZeroed) {
  const IBNode& node = Node(IB_SW_NODE);
  for (const Emitter emitter :
       {&SimInfoDumpCPP::GenerateSMPCapabilityMask, &SimInfoDumpCPP::GenerateGMPCapabilityMask}) {
    recording::mask_as_handed = {{1, 1, 1, 1}};
    Asked(emitter, node);
    EXPECT_THAT(recording::mask_as_handed.mask, ::testing::Each(0U));
  }
}

TEST_F(Questions, GMPNamesFollowTheModuleAndTheWordsTheMask) {
  recording::answers.smp_bits = {0};
  recording::answers.smp_mask = {{1, 2, 3, 4}};
  recording::answers.gmp_bits = {40, 48, 49, 127};
  recording::answers.gmp_mask = {{0x80000000, 0, 0xffffffff, 16}};
  EXPECT_EQ(Body(&SimInfoDumpCPP::GenerateGMPCapabilityMask, Node(IB_RTR_NODE)),
            R"(    // ---------- GMP Caps ----------
    // CreditWatchdogTimeoutCounters
    // IsDualVSKeySupported

    GeneralInfoCapabilityMask mad_buffer = {0};
    GeneralInfoCapabilityMask_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskGMP));

    mad_buffer.capability0 = 0x80000000;
    mad_buffer.capability1 = 0x0;
    mad_buffer.capability2 = 0xffffffff;
    mad_buffer.capability3 = 0x10;

    GeneralInfoCapabilityMask_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->capMaskGMP));)");
}

// A tool may take a node's name as the device gave it; here nothing changes it.
TEST_F(Questions, NamesAreWrittenAsTheyStand) {
  IBNode& node = Node(IB_SW_NODE);
  node.name = std::string("a\"b\\ %22 */\0 ü", 14);
  for (const auto& [emitter, before, after] :
       {std::tuple{&SimInfoDumpCPP::GenerateNodeInfo,
                   "#error \"Failed to get NodeInfo mad for the node=", "\""},
        std::tuple{&SimInfoDumpCPP::GenerateSwitchInfo,
                   "// Failed to get SwitchInfo mad for the node=", ""},
        std::tuple{&SimInfoDumpCPP::GenerateRouterInfo, "// The node=", " is not a router"},
        std::tuple{&SimInfoDumpCPP::GenerateARInfo,
                   "#error \"The node=", " does not support AR\""}}) {
    EXPECT_EQ(Body(emitter, node), before + node.name + after);
  }
  node.name.clear();
  EXPECT_EQ(Body(&SimInfoDumpCPP::GenerateRouterInfo, node), "// The node= is not a router");
}

TEST_F(Questions, PortInfoIsAskedForOfPortZeroAndOfActivePorts) {
  IBNode& node = Node(IB_SW_NODE, 4);
  node.Ports[0]->port_state = IB_PORT_STATE_DOWN;
  node.Ports[2]->port_state = IB_PORT_STATE_DOWN;
  node.Ports[3]->in_sub_fabric_ = false;
  for (u_int32_t port = 100; port <= 104; ++port) recording::Put(port, SMP_PortInfo{});
  EXPECT_THAT(Asked(kPortInfo, node),
              ElementsAre("getSMPPortInfo(100)", "getSMPPortInfo(101)", "getSMPPortInfo(104)"));
  EXPECT_THAT(Asked(kPortInfo, Node(IB_CA_NODE, 1)), ElementsAre("getSMPPortInfo(101)"));
  IBNode& empty = Node(IB_SW_NODE, 3);
  empty.Ports.clear();
  EXPECT_THAT(Asked(kPortInfo, empty), IsEmpty());
}

TEST_F(Questions, PortInfoExtendedStopsAtTheFirstRecord) {
  IBNode& node = Node(IB_SW_NODE, 4);
  node.Ports[1]->port_state = IB_UNKNOWN_PORT_STATE;
  recording::Put(103, SMP_PortInfoExtended{});
  EXPECT_THAT(Asked(kPortInfoExtended, node),
              ElementsAre("getSMPPortInfoExtended(102)", "getSMPPortInfoExtended(103)"));
}

TEST_F(Questions, PortRecordsAreAskedForOfActivePortsAlone) {
  IBNode& node = Node(IB_SW_NODE, 4);
  node.Ports[1]->in_sub_fabric_ = false;
  node.Ports[3]->port_state = IB_PORT_STATE_DOWN;
  recording::answers.smp_bits = {9, 55};
  recording::Put(7, IB_ClassPortInfo{});
  EXPECT_THAT(Asked(kExtendedPortInfo, node),
              ElementsAre("IsSupportedSMPCapability(N, 9)", "getSMPTarnExtPortInfo(102)",
                          "getSMPTarnExtPortInfo(104)"));
  EXPECT_THAT(Asked(kReductionPortInfo, node),
              ElementsAre("IsSupportedSMPCapability(N, 55)", "getWrenClassPortInfo(7)",
                          "getWrenReductionPortInfo(102)", "getWrenReductionPortInfo(104)"));
}

TEST_F(Questions, CountersAreAskedForOnlyAfterTheirMonitor) {
  const IBNode& node = Node(IB_SW_NODE, 2);
  recording::answers.smp_bits = {55};
  recording::Put(7, IB_ClassPortInfo{});
  recording::Put(102, WrenReductionConfigureMLIDMonitors{}, 0);
  std::vector<std::string> expected = {"IsSupportedSMPCapability(N, 55)", "getWrenClassPortInfo(7)",
                                       "getWrenReductionConfigureMLIDMonitors(101, 0)",
                                       "getWrenReductionConfigureMLIDMonitors(102, 0)"};
  for (int set = 0; set < 8; ++set) {
    expected.push_back("getWrenReductionCounters(102, " + std::to_string(set) + ")");
  }
  EXPECT_EQ(Asked(kCounters, node), expected);
  EXPECT_THAT(Asked(kPushCounters, node),
              ElementsAre("IsSupportedSMPCapability(N, 55)", "getWrenClassPortInfo(7)",
                          "getWrenReductionConfigureMLIDMonitors(101, 1)",
                          "getWrenReductionConfigureMLIDMonitors(102, 1)"));
  recording::Put(101, WrenReductionConfigureMLIDMonitors{}, 1);
  EXPECT_THAT(Asked(kPushCounters, node),
              ElementsAre("IsSupportedSMPCapability(N, 55)", "getWrenClassPortInfo(7)",
                          "getWrenReductionConfigureMLIDMonitors(101, 1)",
                          "getWrenPushReductionCounters(101)",
                          "getWrenReductionConfigureMLIDMonitors(102, 1)"));
}

/// Port 1 down, 2 outside the sub-fabric, 3 without a record; 4 FNM, 5 FNM1, 6 special, 7 regular.
class PortQuestions : public Questions {
 protected:
  PortQuestions() : node(Node(IB_SW_NODE, 7)) {
    recording::ports_too = true;
    recording::answers.smp_bits = {9, 55};
    recording::Put(7, IB_ClassPortInfo{});
    node.Ports[1]->port_state = IB_PORT_STATE_DOWN;
    node.Ports[2]->in_sub_fabric_ = false;
    node.Ports[4]->fnm_ = node.Ports[4]->fnm1_ = node.Ports[4]->special_ = true;
    node.Ports[5]->fnm1_ = node.Ports[5]->special_ = true;
    node.Ports[6]->special_ = true;
  }

  /// The questions to the node's ports in one walk, with those of `record_of` each for its record.
  template <class RecordOf>
  static std::vector<std::string> Walk(std::vector<std::string> before, RecordOf record_of) {
    const auto ask = [&](const std::string& question) { before.push_back(question); };
    ask("getInSubFabric(2)");
    for (int port = 3; port <= 7; ++port) {
      const std::string number = "(" + std::to_string(port) + ")";
      ask("getInSubFabric" + number);
      for (const std::string& question : record_of(port)) ask(question);
      if (port == 3) continue;
      ask("isFNMPort" + number);
      if (port > 4) ask("isFNM1Port" + number);
      if (port > 5) ask("isSpecialPort" + number);
    }
    return before;
  }

  IBNode& node;
};

using Asks = std::vector<std::string>;

TEST_F(PortQuestions, StateThenSubFabricThenRecordThenMarksUntilOneAnswers) {
  for (u_int32_t port = 104; port <= 107; ++port) {
    recording::Put(port, SMP_PortInfo{});
    recording::Put(port, SMP_TarnExtPortInfo{});
    recording::Put(port, WrenReductionPortInfo{});
  }
  const auto of = [](const std::string& getter) {
    return [=](int port) { return Asks{getter + "(10" + std::to_string(port) + ")"}; };
  };
  EXPECT_EQ(Asked(kPortInfo, node), Walk({"getSMPPortInfo(100)"}, of("getSMPPortInfo")));
  EXPECT_EQ(Asked(kExtendedPortInfo, node),
            Walk({"IsSupportedSMPCapability(N, 9)"}, of("getSMPTarnExtPortInfo")));
  EXPECT_EQ(Asked(kReductionPortInfo, node),
            Walk({"IsSupportedSMPCapability(N, 55)", "getWrenClassPortInfo(7)"},
                 of("getWrenReductionPortInfo")));
}

TEST_F(PortQuestions, MarksAreAskedForOnlyOfPortsWithCounters) {
  for (u_int32_t port = 104; port <= 107; ++port) {
    recording::Put(port, WrenReductionConfigureMLIDMonitors{}, 0);
    recording::Put(port, WrenReductionConfigureMLIDMonitors{}, 1);
    recording::Put(port, WrenReductionCounters{}, 6);
    recording::Put(port, WrenPushReductionCounters{});
  }
  const Asks gates = {"IsSupportedSMPCapability(N, 55)", "getWrenClassPortInfo(7)"};
  const std::string monitors = "getWrenReductionConfigureMLIDMonitors(10";
  EXPECT_EQ(Asked(kCounters, node), Walk(gates, [&](int port) {
              Asks asks = {monitors + std::to_string(port) + ", 0)"};
              for (int set = 0; port > 3 && set < 8; ++set) {
                asks.push_back("getWrenReductionCounters(10" + std::to_string(port) + ", " +
                               std::to_string(set) + ")");
              }
              return asks;
            }));
  EXPECT_EQ(Asked(kPushCounters, node), Walk(gates, [&](int port) {
              Asks asks = {monitors + std::to_string(port) + ", 1)"};
              if (port > 3) {
                asks.push_back("getWrenPushReductionCounters(10" + std::to_string(port) + ")");
              }
              return asks;
            }));
}

TEST_F(PortQuestions, PortInfoExtendedAsksForNoMarks) {
  recording::Put(104, SMP_PortInfoExtended{});
  EXPECT_THAT(Asked(kPortInfoExtended, node),
              ElementsAre("getInSubFabric(2)", "getInSubFabric(3)", "getSMPPortInfoExtended(103)",
                          "getInSubFabric(4)", "getSMPPortInfoExtended(104)"));
}

// ---------- The facade ----------

class Facade : public Questions {
 protected:
  Facade() {
    std::string name = (std::filesystem::temp_directory_path() / "fabscan-XXXXXX").string();
    recording::answers.output_folder = ::mkdtemp(name.data());
  }
  ~Facade() override { std::filesystem::remove_all(recording::answers.output_folder); }

  std::string Written(const std::string& name) {
    std::ifstream file(recording::answers.output_folder + '/' + name);
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

TEST_F(Facade, IsAskedToOpenWriteTheHeaderAndClose) {
  EXPECT_EQ(SimInfoDumpCPP(fabscan_).Generate("MyDev", {}), 0);
  EXPECT_THAT(recording::questions,
              ElementsAre("OpenFile(Simulator generated code, mydev_generated.cpp, 4, 0, null)",
                          "WriteFileHeader(//)", "CloseFile(//)"));
}

TEST_F(Facade, HasItsStatusReturnedWhenItDoesNotOpen) {
  recording::answers.open_status = -17;
  EXPECT_EQ(SimInfoDumpCPP(fabscan_).Generate("MyDev", {}), -17);
  EXPECT_THAT(recording::questions,
              ElementsAre("OpenFile(Simulator generated code, mydev_generated.cpp, 4, 0, null)"));
  EXPECT_TRUE(std::filesystem::is_empty(recording::answers.output_folder));
}

TEST_F(Facade, GetsNothingToWriteWithAStatusEvenWhenTheStreamIsOpen) {
  recording::answers.open_status = 3;
  recording::answers.opens_all_the_same = true;
  EXPECT_EQ(SimInfoDumpCPP(fabscan_).Generate("MyDev", {}), 3);
  EXPECT_EQ(std::filesystem::file_size(recording::answers.output_folder + "/mydev_generated.cpp"),
            0U);
}

TEST_F(Facade, IsNotAskedToCloseWhenAnEmitterThrows) {
  IBNode& node = Node(IB_SW_NODE, 1);
  fabscan_.discovered_fabric.NodeByName["N"] = &node;
  recording::throw_at = "getSMPPortInfo(100)";
  EXPECT_THROW(SimInfoDumpCPP(fabscan_).Generate("MyDev", {}), recording::Refusal);
  recording::throw_at.clear();
  EXPECT_EQ(recording::questions.back(), "getSMPPortInfo(100)");
  const std::string text = Written("mydev_generated.cpp");
  const std::string last = "void MyDev::SW::setPortInfo() {\n";
  ASSERT_GE(text.size(), last.size());
  EXPECT_EQ(text.substr(text.size() - last.size()), last);
}

// Its lines end alike, whether they go to the file or are collected before; but for the header,
// which is not the generator's.
TEST_F(Facade, GivesItsStreamTheLocaleOfAllLines) {
  struct Marked : std::ctype<char> {
    char do_widen(char c) const override { return c == '\n' ? '|' : c; }
    const char* do_widen(const char* begin, const char* end, char* to) const override {
      for (; begin != end; ++begin) *to++ = do_widen(*begin);
      return end;
    }
  };
  IBNode& node = Node(IB_SW_NODE, 1);
  fabscan_.discovered_fabric.NodeByName["N"] = &node;
  recording::answers.stream_locale = std::locale(std::locale::classic(), new Marked);
  EXPECT_EQ(SimInfoDumpCPP(fabscan_).Generate("MyDev", {}), 0);
  const std::string text = Written("mydev_generated.cpp");
  EXPECT_EQ(text.substr(0, 3), "/*|");
  EXPECT_EQ(text.find('\n', text.find("// Host Name")), std::string::npos);
  EXPECT_NE(text.find("|#include \"mydev.h\"|"), std::string::npos);
  EXPECT_NE(text.find("|void MyDev::SW::setArInfo() {|"), std::string::npos);
}

// A stream that was told to throw does so out of the middle of a large file and out of the end of
// a small one.
TEST_F(Facade, IsNotAskedToCloseWhenItsStreamThrows) {
  std::filesystem::create_symlink("/dev/full",
                                  recording::answers.output_folder + "/mydev_generated.cpp");
  IBNode& node = Node(IB_SW_NODE, 1);
  fabscan_.discovered_fabric.NodeByName["N"] = &node;
  for (const std::size_t length : {1'000U, 2'000'000U}) {
    node.name.assign(length, 'n');
    for (const auto mask : {std::ios::badbit, std::ios::failbit | std::ios::badbit}) {
      recording::answers.stream_exceptions = mask;
      recording::questions.clear();
      EXPECT_THROW(SimInfoDumpCPP(fabscan_).Generate("MyDev", {}), std::ios::failure) << length;
      EXPECT_NE(recording::questions.back(), "CloseFile(//)") << length;
    }
  }
}

}  // namespace
