#include "fabscan_sim_info_dump.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "testing/every_emitter.h"
#include "testing/grouped_digits.h"

namespace fabscan {
bool turkish_letters = false;

}  // namespace fabscan

// In place of the function of the C library, whose locales may not be installed.
extern "C" int tolower(int c) noexcept {
  if (fabscan::turkish_letters && (c == 'I' || c == 'B')) return 0xFD;
  return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c;
}

namespace fabscan {
namespace {

namespace fs = std::filesystem;

/// The locale has no dot above some letters as long as this lives.
struct TurkishLetters {
  TurkishLetters() { turkish_letters = true; }
  ~TurkishLetters() { turkish_letters = false; }
  TurkishLetters(const TurkishLetters&) = delete;
  TurkishLetters& operator=(const TurkishLetters&) = delete;
};

class Generate : public ::testing::Test {
 protected:
  Generate() {
    std::string name = (fs::temp_directory_path() / "fabscan-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
    fabric.fabscan.setOutputFolder(folder_.string());
  }
  ~Generate() override { fs::remove_all(folder_); }

  /// The text of the generated file.
  std::string Text(const std::string& prefix, const std::set<uint64_t>& guids = {}) {
    EXPECT_EQ(SimInfoDumpCPP(fabric.fabscan).Generate(prefix, guids), 0);
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder_)) files.push_back(entry.path());
    EXPECT_EQ(files.size(), 1U);
    file_name_ = files.at(0).filename().string();
    std::ifstream file(files.at(0), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// The names of the nodes that were dumped, in their order.
  std::vector<std::string> Names(const std::set<uint64_t>& guids = {}) {
    const std::string text = Text("MyDev", guids);
    const std::regex line("// Name: '([^']*)', Alt: '");
    std::vector<std::string> names;
    for (std::sregex_iterator found(text.begin(), text.end(), line), end; found != end; ++found) {
      names.push_back((*found)[1]);
    }
    return names;
  }

  /// The lines after the frame.
  static std::string AfterFrame(const std::string& text) {
    const std::string last = "#include <infiniband/fabscan/fabscan_fabric.h>\n";
    const std::size_t at = text.find(last);
    return at == std::string::npos ? "no frame" : text.substr(at + last.size());
  }

  FabricBuilder fabric;
  fs::path folder_;
  std::string file_name_;
};

std::string HostName() {
  char host[1024] = {};
  ::gethostname(host, sizeof host - 1);
  return host;
}

std::string Year() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  ::localtime_r(&now, &local);
  return std::to_string(local.tm_year + 1900);
}

TEST_F(Generate, WritesTheFrameAloneWhenNoNodeIsSelected) {
  fabric.Switch("S1");
  EXPECT_THAT(Text("MyDev", {0xdead}),
              ::testing::MatchesRegex(
                  "/\\*\n"
                  "\\* SPDX-FileCopyrightText: Copyright \\(c\\) 2024-" +
                  Year() +
                  " [^\n]+\\. All rights reserved\n"
                  "\\* SPDX-License-Identifier: LicenseRef-[A-Za-z0-9.-]+\n"
                  "\\*\n"
                  "\\* [^\n]+\n\\* [^\n]+\n\\* [^\n]+\n\\* [^\n]+\n\\* [^\n]+\n\\* [^\n]+\\.\n"
                  "\\*/\n"
                  "\n"
                  "(//[^\n]*\n)+"
                  "// Host Name: " +
                  HostName() +
                  "\n"
                  "\n"
                  "#include \"mydev.h\"\n"
                  "#include \"../../core/node.h\"\n"
                  "#include <infiniband/fabscan/fabscan_fabric.h>\n"));
  EXPECT_EQ(file_name_, "mydev_generated.cpp");
}

TEST_F(Generate, WritesTwentyTwoFunctionsForANode) {
  fabric.Node("X", IB_CA_NODE).setAlternativeName("other");
  EXPECT_EQ(AfterFrame(Text("My_Dev9")), R"(

// Node Type: CA, Node GUID: 0x0000000000000001, Ports: 0
// Name: 'X', Alt: 'other
void My_Dev9::HCA::setNodeInfo() {
#error "Failed to get NodeInfo mad for the node=X"
}

void My_Dev9::HCA::setPortInfo() {
#error "Failed to dump PortInfo MAD. Null pointer is provided."
}

void My_Dev9::HCA::setGMPCapability() {
#error "Failed to get GMP capabilites for the node=X with rc=1"
}

void My_Dev9::HCA::setSMPCapability() {
#error "Failed to get SMP capabilites for the node=X with rc=1"
}

void My_Dev9::HCA::setFWInfo() {
// Failed to get VS GeneralInfo mad for the node=X
}

void My_Dev9::HCA::setHWInfo() {
// Failed to get VS GeneralInfo mad for the node=X
}

void My_Dev9::HCA::setSWInfo() {
// Failed to get VS GeneralInfo mad for the node=X
}

void My_Dev9::HCA::setPortInfoExtended() {
// Failed to dump PortInfoExtended MAD. Null pointer is provided.
}

void My_Dev9::HCA::setExtendedNodeInfo() {
// The ExtendedNodeInfo mad is not supported on the node=X
}

void My_Dev9::HCA::setExtendedPortInfo() {
// The ExtendedPortInfo mad is not supported on the node=X
}

void My_Dev9::HCA::setArInfo() {
// The node=X is not a switch
}

void My_Dev9::HCA::setRouterInfo() {
// The node=X is not a router
}

void My_Dev9::HCA::setExtendedSwitchInfo() {
// The node=X is not a switch
}

void My_Dev9::HCA::setSwitchInfo() {
// The node=X is not a switch
}

void My_Dev9::HCA::setPrivateLftInfo() {
// The node=X is not a switch
}

void My_Dev9::HCA::setEnhancedCongestionInfo() {
#error "The node=X does not support Enhanced Congestion Control"
}

void My_Dev9::HCA::setCongestionSwitchGeneralSettings() {
// The node=X is not a switch
}

void My_Dev9::HCA::setVSReductionManagerClassPortInfo() {
// The node=X is not a switch
}

void My_Dev9::HCA::setWrenReductionPortInfo() {
// The node=X is not a switch
}

void My_Dev9::HCA::setWrenReductionInfo() {
// The node=X is not a switch
}

void My_Dev9::HCA::setWrenReductionCounters() {
// The node=X is not a switch
}

void My_Dev9::HCA::setWrenPushReductionCounters() {
// The node=X is not a switch
}
)");
  EXPECT_EQ(file_name_, "my_dev9_generated.cpp");
}

TEST_F(Generate, PutsTwoEmptyLinesBetweenNodesAndNoneAfterTheLast) {
  fabric.Switch("S2");
  fabric.Switch("S1");
  const std::string text = Text("MyDev");
  EXPECT_NE(text.find("fabscan_fabric.h>\n\n\n// Node Type: SW, Node GUID: 0x0000000000000002"),
            std::string::npos);
  EXPECT_NE(text.find("\n}\n\n\n// Node Type: SW, Node GUID: 0x0000000000000001"),
            std::string::npos);
  EXPECT_EQ(text.substr(text.size() - 3), "\n}\n");
}

TEST_F(Generate, TellsTheKindOfNodeInTwoWays) {
  struct Row {
    IBNodeType type;
    IBSpecialPortType special;
    const char* line;
    const char* function;
  };
  const Row rows[] = {
      {IB_SW_NODE, IB_NOT_SPECIAL_PORT, "SW,", "SW"},
      {IB_SW_NODE, IB_SPECIAL_PORT_AN, "SW(Special Node),", "SW"},
      {IB_RTR_NODE, IB_NOT_SPECIAL_PORT, "RTR,", "RTR"},
      {IB_RTR_NODE, IB_SPECIAL_PORT_ROUTER, "RTR(Special Node),", "RTR"},
      {IB_CA_NODE, IB_NOT_SPECIAL_PORT, "CA,", "HCA"},
      {IB_CA_NODE, IB_SPECIAL_PORT_AN, "CA(Special Node),", "AN"},
      {IB_CA_NODE, IB_SPECIAL_PORT_ROUTER, "CA(Special Node),", "Unknown"},
      {IB_CA_NODE, IB_SPECIAL_PORT_ETH_GATEWAY, "CA(Special Node),", "Unknown"},
      {IB_UNKNOWN_NODE_TYPE, IB_NOT_SPECIAL_PORT, "UNKNOWN,", "HCA"},
      {IB_UNKNOWN_NODE_TYPE, IB_SPECIAL_PORT_AN, "UNKNOWN(Special Node),", "AN"},
      {IB_UNKNOWN_NODE_TYPE, IB_SPECIAL_PORT_ETH_GATEWAY, "UNKNOWN(Special Node),", "Unknown"},
  };
  char name = 'a';
  std::string expected;
  for (const Row& row : rows) {
    IBNode& node = fabric.Node(std::string(1, name++), row.type);
    node.setSpecialNodeType(row.special);
    EXPECT_EQ(SimInfoDumpCPP(fabric.fabscan).GetDumpedNodeType(node), row.function);
  }
  const std::string text = Text("MyDev");
  std::size_t at = 0;
  for (const Row& row : rows) {
    at = text.find(std::string("// Node Type: ") + row.line + " Node GUID: 0x", at);
    ASSERT_NE(at, std::string::npos) << row.line;
    at = text.find("\nvoid ", at);
    const std::string opening =
        std::string("\nvoid MyDev::") + row.function + "::setNodeInfo() {\n";
    EXPECT_EQ(text.substr(at, opening.size()), opening);
  }
}

TEST_F(Generate, PrintsSixteenDigitsOfTheGUIDAndThePortsInDecimal) {
  auto& nodes = fabric.fabscan.discovered_fabric;
  nodes.makeNode("a", 0x2c9, IB_CA_NODE, 0);
  nodes.makeNode("b", 0xfedcba9876543210, IB_CA_NODE, 255);
  const std::string text = Text("MyDev");
  EXPECT_NE(text.find("// Node Type: CA, Node GUID: 0x00000000000002c9, Ports: 0\n"),
            std::string::npos);
  EXPECT_NE(text.find("// Node Type: CA, Node GUID: 0xfedcba9876543210, Ports: 255\n"),
            std::string::npos);
}

TEST_F(Generate, DumpsByNameWhateverTheOrderOfCreationAndGUIDs) {
  for (const char* name : {"b", "c", "B", "a", "a1"}) fabric.Adapter(name);
  const auto by_name = ::testing::ElementsAre("B", "a", "a1", "b", "c");
  EXPECT_THAT(Names(), by_name);
  EXPECT_THAT(Names({1, 2, 3, 4, 5, 99}), by_name);
  EXPECT_THAT(Names({5, 1}), ::testing::ElementsAre("a1", "b"));
}

TEST_F(Generate, LeavesOutNodesOutsideTheSubFabricAndNullEntries) {
  fabric.Adapter("a").in_sub_fabric = false;
  fabric.Adapter("b");
  fabric.fabscan.discovered_fabric.NodeByName["0"] = nullptr;
  EXPECT_THAT(Names(), ::testing::ElementsAre("b"));
  EXPECT_THAT(Names({1}), ::testing::IsEmpty());
}

TEST_F(Generate, OrdersByTheKeyAndPrintsTheName) {
  IBNode& first = fabric.Adapter("a");
  IBNode& second = fabric.Adapter("b");
  auto& by_name = fabric.fabscan.discovered_fabric.NodeByName;
  by_name.clear();
  by_name["1"] = &second;
  by_name["2"] = &first;
  EXPECT_THAT(Names(), ::testing::ElementsAre("b", "a"));
}

TEST_F(Generate, ReturnsTheStatusOfOpeningAndWritesNothing) {
  fabric.Switch("S1");
  fabric.fabscan.setOutputFolder((folder_ / "missing").string());
  EXPECT_EQ(SimInfoDumpCPP(fabric.fabscan).Generate("MyDev", {}), Fabscan::kFileFailed);
  EXPECT_THAT(fabric.fabscan.lastError(), ::testing::HasSubstr("missing/mydev_generated.cpp"));
  EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(Generate, LeavesWhatClosingFindsToTheFacade) {
  fabric.Switch("S1");
  fs::create_symlink("/dev/full", folder_ / "mydev_generated.cpp");
  EXPECT_EQ(SimInfoDumpCPP(fabric.fabscan).Generate("MyDev", {}), 0);
  EXPECT_THAT(fabric.fabscan.lastError(), ::testing::HasSubstr("No space left on device"));
}

TEST_F(Generate, GivesTheSameBytesAgain) {
  IBNode& node = fabric.Switch("S1", 3);
  fabric.Put<SMP_NodeInfo>(node);
  const std::string once = Text("MyDev");
  EXPECT_EQ(Text("MyDev"), once);
}

TEST_F(Generate, TakesAPrefixOfNoLetters) {
  fabric.Switch("S1");
  const std::string text = Text("");
  EXPECT_EQ(file_name_, "_generated.cpp");
  EXPECT_NE(text.find("#include \".h\"\n"), std::string::npos);
  EXPECT_NE(text.find("\nvoid ::SW::setNodeInfo() {\n"), std::string::npos);
}

// Each byte is lower-cased by itself, and without the locale, which may have other letters.
TEST_F(Generate, LowersTheLettersOfAsciiAlone) {
  fabric.Switch("S1");
  const TurkishLetters letters;
  const std::string text = Text("\u00c4B\u00df\u0130");
  EXPECT_EQ(file_name_, "\u00c4b\u00df\u0130_generated.cpp");
  EXPECT_NE(text.find("#include \"\u00c4b\u00df\u0130.h\"\n"), std::string::npos);
  EXPECT_NE(text.find("\nvoid \u00c4B\u00df\u0130::SW::setNodeInfo() {\n"), std::string::npos);
}

TEST_F(Generate, TakesBytesOfAPrefixThatAreNoText) {
  fabric.Switch("S1");
  const std::string text = Text("\xff\x80Z");
  EXPECT_EQ(file_name_, "\xff\x80z_generated.cpp");
  EXPECT_NE(text.find("\nvoid \xff\x80Z::SW::setNodeInfo() {\n"), std::string::npos);
}

TEST_F(Generate, WritesTheSameUnderALocaleThatGroupsDigits) {
  FullFabric full;
  full.fabscan.setOutputFolder(folder_.string());
  full.fabscan.discovered_fabric.makeNode("A1", 0xfedcba9876543210, IB_CA_NODE, 255);
  const auto text = [&] {
    EXPECT_EQ(SimInfoDumpCPP(full.fabscan).Generate("MyDev", {}), 0);
    std::ifstream file(folder_ / "mydev_generated.cpp", std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(file), {}};
  };
  const std::string plain = text();
  const WithGroupedDigits everywhere;
  EXPECT_EQ(text(), plain);
  EXPECT_NE(plain.find("setWrenReductionCounters(30583, 30583, "), std::string::npos);
}

TEST_F(Generate, WritesLongNamesWhole) {
  const std::string name(100'000, 'n');
  fabric.Adapter(name);
  const std::string text = Text("MyDev");
  EXPECT_NE(text.find("// Name: '" + name + "', Alt: '\n"), std::string::npos);
  EXPECT_NE(text.find("// The node=" + name + " is not a switch\n"), std::string::npos);
}

}  // namespace
}  // namespace fabscan
