#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <vector>

#include "records/number.h"
#include "records/record_kinds.h"
#include "snapshot/testing/snapshot_text.h"

namespace fabscan {
namespace {

std::string ExampleText(const char* name) {
  std::ifstream in(std::string(FABSCAN_EXAMPLES) + '/' + name, std::ios::binary);
  EXPECT_TRUE(in.is_open()) << name;
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(RoundTrip, GivesTheSameBytesForTheBundledSnapshots) {
  for (const char* name : {"demo.fabscan.jsonl", "partial.fabscan.jsonl"}) {
    const std::string text = ExampleText(name);
    ASSERT_GT(text.size(), 1000U);
    EXPECT_EQ(Rewritten(text), text) << name;
  }
}

/// A snapshot that a release wrote, which no change may touch.
std::string FrozenText(const char* name) {
  return ExampleText((std::string("../snapshot/testing/") + name).c_str());
}

TEST(Versions, Version1IsReadAsItAlwaysWas) {
  const std::string text = FrozenText("version_1.jsonl");
  const std::string header = "{\"fabscan_snapshot\":1";
  ASSERT_EQ(text.compare(0, header.size(), header), 0);
  EXPECT_EQ(Rewritten(text), "{\"fabscan_snapshot\":2" + text.substr(header.size()));

  Fabscan fabscan;
  ReadText(text, fabscan);
  const IBNode* leaf = fabscan.discovered_fabric.getNodeByGuid(0x5a1e0c0000000200);
  ASSERT_NE(leaf, nullptr);
  EXPECT_EQ(leaf->name, "leaf-01/U1");
  EXPECT_EQ(leaf->numPorts, 4);
  EXPECT_FALSE(leaf->getDescription());
  const IBPort* port = leaf->getPort(2);
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(port->port_state, IB_PORT_STATE_ACTIVE);
  EXPECT_EQ(port->guid, 0U);
  EXPECT_FALSE(port->getRemotePort());
}

TEST(Versions, Version2IsReadAsItAlwaysWas) {
  const std::string text = FrozenText("version_2.jsonl");
  EXPECT_EQ(Rewritten(text), text);

  Fabscan fabscan;
  ReadText(text, fabscan);
  const IBNode* leaf = fabscan.discovered_fabric.getNodeByGuid(0x5a1e0c0000000200);
  ASSERT_NE(leaf, nullptr);
  EXPECT_EQ(leaf->getDescription(), "leaf-01/U1");
  EXPECT_EQ(leaf->getPort(3)->getRemotePort(), (RemotePort{0x5a1e0c0000000600, 1}));
  const IBNode* host = fabscan.discovered_fabric.getNodeByGuid(0x5a1e0c0000000600);
  ASSERT_NE(host, nullptr);
  EXPECT_EQ(host->getPort(1)->guid, 0x5a1e0c0000000601);
}

TEST(Versions, Version2HasLinksPortGuidsDescriptionsAndExtraObjects) {
  const std::string text =
      "{\"fabscan_snapshot\":2,\"extra\":{\"by\":\"us\"}}\n"
      R"({"name":"S","guid":"0x0000000000000001","type":"SW","numPorts":2,"description":"S one",)"
      R"("extra":{"rack":[7,{"u":1.50}]},"ports":[{"num":0,"state":"UNKNOWN"},)"
      R"({"num":1,"state":"ACTIVE","peer":{"guid":"0x0000000000000002","port":1}},)"
      R"({"num":2,"state":"ACTIVE","peer":{"guid":"0x00000000000000ff","port":36},)"
      R"("extra":{"cable":"\u0041"}}]})"
      "\n"
      R"({"name":"H","guid":"0x0000000000000002","type":"CA","numPorts":1,"description":"",)"
      R"("ports":[{"num":1,"state":"ACTIVE","portGuid":"0x0000000000000003",)"
      R"("peer":{"guid":"0x0000000000000001","port":1}}]})"
      "\n{\"end\":true,\"nodes\":2}\n";
  EXPECT_EQ(Rewritten(text), text);

  Fabscan fabscan;
  EXPECT_EQ(ReadText(text, fabscan).extra, R"({"by":"us"})");
  const IBFabric& fabric = fabscan.discovered_fabric;
  const IBNode& leaf = fabric.nodes()[0];
  const IBNode& host = fabric.nodes()[1];
  EXPECT_EQ(leaf.getDescription(), "S one");
  EXPECT_EQ(host.getDescription(), "");
  EXPECT_EQ(fabric.extraOf(leaf), R"({"rack":[7,{"u":1.50}]})");
  EXPECT_EQ(fabric.extraOf(host), "");
  EXPECT_EQ(fabric.extraOf(*leaf.getPort(2)), R"({"cable":"\u0041"})");
  EXPECT_EQ(leaf.getPort(1)->getRemotePort(), (RemotePort{2, 1}));
  EXPECT_EQ(leaf.getPort(2)->getRemotePort(), (RemotePort{0xff, 36}));
  EXPECT_EQ(host.getPort(1)->getRemotePort(), (RemotePort{1, 1}));
  EXPECT_EQ(host.getPort(1)->guid, 3U);
  EXPECT_FALSE(leaf.getPort(0)->getRemotePort());
}

TEST(Versions, OnlyChosenNodesAreCheckedForLinks) {
  const std::string text =
      std::string(kHeaderLine) +
      R"({"name":"S","guid":1,"type":"SW","numPorts":2,"ports":[{"num":1,"state":"ARM","peer":{"guid":2,"port":1}}]})"
      "\n"
      R"({"name":"T","guid":2,"type":"SW","numPorts":2,"ports":[{"num":1,"state":"ARM","peer":{"guid":1,"port":1}}]})"
      "\n" +
      EndLine(2);
  const std::set<u_int64_t> guids = {1};
  SnapshotReadOptions options;
  options.guids = &guids;
  EXPECT_EQ(ReadError(text, options), "");
}

TEST(RoundTrip, DoesNotDependOnHowManyBytesAReadGives) {
  const std::string text = ExampleText("demo.fabscan.jsonl");
  for (const std::size_t chunk : {1U, 2U, 3U, 7U, 63U, 64U, 65U, 1000U, 4096U}) {
    EXPECT_EQ(Rewritten(text, chunk), text) << chunk;
  }
}

TEST(RoundTrip, TakesKeysInAnyOrderBlanksAndNumbersOfEitherForm) {
  const std::string loose =
      "{ \"source\": \"hand\", \"fabscan_snapshot\": \"0x1\" }\r\n"
      R"({"ports": [ {"state":"ARM", "attributes":{"WrenReductionPortInfo":)"
      R"({"push_error1_cnt_type":"0xfF","capability_mask":"0X00000000000000000000ffffffff"}},)"
      R"( "num" : 2, "fnm1":true}], "type":"SW", "numPorts":"0x2", "guid":17, "na\u006de":"S\u0031"})"
      "\r\n{\"nodes\":1,\"end\":true}";
  EXPECT_EQ(Rewritten(loose),
            "{\"fabscan_snapshot\":2,\"source\":\"hand\"}\n"
            R"({"name":"S1","guid":"0x0000000000000011","type":"SW","numPorts":2,)"
            R"("ports":[{"num":2,"state":"ARM","fnm1":true,"attributes":{"WrenReductionPortInfo":)"
            R"({"capability_mask":4294967295,"push_error1_cnt_type":255}}}]})"
            "\n{\"end\":true,\"nodes\":1}\n");
}

/// Sets number `index` of the record, in the order of `ForEachNumber`, to its largest value.
void FillNumber(const RecordTable& table, void* record, std::size_t index) {
  ForEachNumber(table, [&](const Number& number) {
    if (index-- == 0) number.Store(record, number.row.largest());
  });
}

using Numbers = std::vector<u_int64_t>;

Numbers NumbersOf(const RecordTable& table, const void* record) {
  Numbers numbers;
  ForEachNumber(table, [&](const Number& number) { numbers.push_back(number.Load(record)); });
  return numbers;
}

/// One switch for each number of the record: there, that number is at its largest.
template <class Owner, class OwnerOf>
void CheckEveryNumber(const RecordKind<Owner>& kind, const OwnerOf& owner_of) {
  Fabscan fabscan;
  for (std::size_t n = 0; n < kind.table->numbers; ++n) {
    IBFabric& fabric = fabscan.discovered_fabric;
    IBNode& node = fabric.makeNode(std::to_string(n), n, IB_SW_NODE, 1);
    fabric.makePort(node, 1);
    FillNumber(*kind.table, kind.put(fabscan.fabric_extended_info, owner_of(node)), n);
  }
  Fabscan again;
  ReadText(WriteText(fabscan), again);
  for (std::size_t n = 0; n < kind.table->numbers; ++n) {
    const IBNode& node = again.discovered_fabric.nodes()[n];
    const void* record = kind.find(again.fabric_extended_info, owner_of(node));
    ASSERT_NE(record, nullptr) << kind.table->name;
    const Numbers numbers = NumbersOf(*kind.table, record);
    const auto nonzero = static_cast<std::size_t>(
        std::count_if(numbers.begin(), numbers.end(), [](u_int64_t v) { return v != 0; }));
    EXPECT_EQ(nonzero, 1U) << kind.table->name << ' ' << n;
    const u_int64_t value = numbers[n];
    EXPECT_TRUE(value == 0xFF || value == 0xFFFF || value == 0xFFFFFFFF || value == ~u_int64_t{0})
        << kind.table->name << ' ' << n << ": " << value;
  }
}

TEST(RoundTrip, KeepsEveryBitOfEveryField) {
  for (const auto& kind : kNodeRecords) {
    CheckEveryNumber(kind, [](const IBNode& node) -> const IBNode& { return node; });
  }
  const auto port_of = [](const IBNode& node) -> const IBPort& { return *node.getPort(1); };
  for (const auto& kind : kPortRecords) CheckEveryNumber(kind, port_of);
  CheckEveryNumber(
      RecordKind<IBPort>{&kCountersTable,
                         [](const TesselExtendedInfo& store, const IBPort& port) -> const void* {
                           return store.getWrenReductionCounters(port.createIndex, 7);
                         },
                         [](TesselExtendedInfo& store, const IBPort& port) -> void* {
                           return &store.putCounters(port, 7);
                         }},
      port_of);
}

TEST(RoundTrip, KeepsNamesOfEveryByte) {
  Fabscan fabscan;
  u_int64_t guid = 1;
  for (int byte = 0; byte < 256; ++byte) {
    for (const char* around : {"<", "\xC3", "%4"}) {
      const std::string name = around + std::string(1, static_cast<char>(byte)) + around;
      fabscan.discovered_fabric.makeNode(name, guid++, IB_CA_NODE, 1).setAlternativeName(name);
    }
  }
  const std::string written = WriteText(fabscan);
  Fabscan again;
  ReadText(written, again);
  ASSERT_EQ(again.discovered_fabric.nodeCount(), fabscan.discovered_fabric.nodeCount());
  for (std::size_t i = 0; i < again.discovered_fabric.nodeCount(); ++i) {
    const IBNode& had = fabscan.discovered_fabric.nodes()[i];
    const IBNode& has = again.discovered_fabric.nodes()[i];
    EXPECT_EQ(has.name, had.name);
    EXPECT_EQ(has.getAlternativeName(), had.getAlternativeName());
  }
  EXPECT_EQ(WriteText(again), written);
}

TEST(RoundTrip, WritesOrdinaryNamesAsTheyAreAndOthersEscaped) {
  Fabscan fabscan;
  IBFabric& fabric = fabscan.discovered_fabric;
  fabric.makeNode("leaf \"7\"\\ /*100%\t", 1, IB_CA_NODE, 1);
  fabric.makeNode("caf\xC3\xA9", 2, IB_CA_NODE, 1);
  fabric.makeNode("bad \xFF 100%25", 3, IB_CA_NODE, 1);
  const std::string text = WriteText(fabscan);
  EXPECT_NE(text.find(R"("name":"leaf \"7\"\\ /*100%\t",)"), std::string::npos) << text;
  EXPECT_NE(text.find("\"name\":\"caf\xC3\xA9\","), std::string::npos) << text;
  EXPECT_NE(text.find(R"("name":{"escaped":"bad %FF 100%2525"},)"), std::string::npos) << text;
}

TEST(RoundTrip, KeepsTheOrderOfCreation) {
  Fabscan fabscan;
  for (const char* name : {"z", "a", "m"}) {
    fabscan.discovered_fabric.makeNode(name, static_cast<u_int64_t>(*name), IB_CA_NODE, 1);
  }
  const std::string text = WriteText(fabscan);
  EXPECT_LT(text.find("\"z\""), text.find("\"a\""));
  EXPECT_LT(text.find("\"a\""), text.find("\"m\""));
  EXPECT_EQ(Rewritten(text), text);
}

TEST(RoundTrip, LeavesOutReasonsForRecordsThatAreThere) {
  Fabscan fabscan;
  IBNode& node = fabscan.discovered_fabric.makeNode("S1", 1, IB_SW_NODE, 1);
  const IBPort& port = fabscan.discovered_fabric.makePort(node, 1);
  TesselExtendedInfo& store = fabscan.fabric_extended_info;
  store.setAbsent(node, "WrenReductionInfo", "time-out");
  store.setAbsent(node, "SMP_RouterInfo", "not a router");
  store.put<WrenReductionInfo>(node);
  store.setAbsent(port, "WrenReductionCounters", "time-out");
  store.putCounters(port, 3);
  const std::string text = WriteText(fabscan);
  EXPECT_EQ(text.find("time-out"), std::string::npos) << text;
  EXPECT_NE(text.find(R"("absent":{"SMP_RouterInfo":"not a router"})"), std::string::npos) << text;
  EXPECT_EQ(Rewritten(text), text);
}

TEST(Selection, DecodesOnlyTheNodesThatAreWanted) {
  const std::set<u_int64_t> wanted = {2};
  SnapshotReadOptions options;
  options.guids = &wanted;
  const std::string text =
      kHeaderLine +
      std::string(R"({"name":"S1","guid":1,"type":"SW","numPorts":2,"opalSwitch":true,)"
                  R"("ports":[{"num":1,"state":"NO SUCH STATE"}]})"
                  "\n"
                  R"({"name":"S2","guid":2,"type":"SW","numPorts":2,"opalSwitch":true,)"
                  R"("ports":[{"num":1,"state":"ACTIVE"}]})"
                  "\n") +
      EndLine(2);
  Fabscan fabscan;
  ReadText(text, fabscan, options);
  const IBNode* left = fabscan.discovered_fabric.getNodeByGuid(1);
  ASSERT_NE(left, nullptr);
  EXPECT_EQ(left->name, "S1");
  EXPECT_EQ(left->type, IB_SW_NODE);
  EXPECT_EQ(left->numPorts, 2);
  EXPECT_TRUE(left->Ports.empty());
  EXPECT_FALSE(left->isOpalSwitch());
  const IBNode* taken = fabscan.discovered_fabric.getNodeByGuid(2);
  ASSERT_NE(taken, nullptr);
  EXPECT_NE(taken->getPort(1), nullptr);
  EXPECT_TRUE(taken->isOpalSwitch());
}

}  // namespace
}  // namespace fabscan
