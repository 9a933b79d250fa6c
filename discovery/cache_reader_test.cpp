#include "discovery/cache_reader.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <fstream>
#include <numeric>
#include <sstream>

#include "discovery/cache_file.h"
#include "discovery/fabric_builder.h"
#include "discovery/payload_decoder.h"
#include "discovery/testing/cache_builder.h"
#include "snapshot/snapshot_writer.h"

namespace fabscan {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr std::size_t kHeaderBytes = 28;
constexpr std::size_t kOffsetOfNodeGuid = 68;      // in a node
constexpr std::size_t kOffsetOfPortCount = 77;     // in a node
constexpr std::size_t kOffsetOfStoredCount = 206;  // in a node, its ports follow
constexpr std::size_t kPortBytes = 95;

std::string ErrorOf(const std::string& bytes) {
  try {
    const CacheFindings findings(bytes);
  } catch (const CacheError& error) {
    return error.what();
  }
  return "no error";
}

std::string SnapshotOf(const Fabscan& fabscan) {
  std::ostringstream out;
  WriteSnapshot(out, fabscan, {});
  return out.str();
}

std::string SnapshotInParts(const CacheFindings& findings, std::size_t ports) {
  std::ostringstream out;
  SnapshotWriter writer(out, {});
  BuildFabricInParts(findings, ports, [&](const Fabscan& part) { writer.Write(part); });
  writer.Finish();
  return out.str();
}

/// The snapshot made of these bytes, at once and in parts, or an empty text where they end in a
/// clear error. Anything else fails the test.
std::string Outcome(const std::string& bytes) {
  try {
    const CacheFindings findings(bytes);
    Fabscan fabscan;
    BuildFabric(findings, fabscan);
    std::string whole = SnapshotOf(fabscan);
    for (const std::size_t ports : {1U, 6U}) EXPECT_EQ(SnapshotInParts(findings, ports), whole);
    return whole;
  } catch (const CacheError& error) {
    EXPECT_THAT(error.what(), StartsWith("byte "));
    return {};
  }
}

TEST(CacheReader, ReadsNodesPortsAndPeers) {
  const CacheFindings findings(CacheBuilder::Sample().Bytes());
  ASSERT_EQ(findings.NodeCount(), 4U);
  EXPECT_EQ(findings.Guid(0), 0x200000U);
  EXPECT_EQ(findings.Description(0), "leaf");
  NodeFindings room;
  const NodeFindings& leaf = findings.Node(0, room);
  EXPECT_EQ(leaf.guid, 0x200000U);
  EXPECT_TRUE(leaf.switch_info.read());
  ASSERT_EQ(leaf.ports.size(), 5U);
  EXPECT_FALSE(leaf.ports[0].peer);
  EXPECT_EQ(leaf.ports[1].peer, (RemotePort{0x200010, 1}));
  EXPECT_EQ(leaf.ports[3].peer, (RemotePort{0x100000, 1}));
  EXPECT_EQ(leaf.ports[4].peer, (RemotePort{0x300000, 1}));
  const NodeFindings& adapter = findings.Node(2, room);
  EXPECT_EQ(adapter.ports[0].guid, 0x100001U);
  EXPECT_EQ(adapter.ports[0].peer, (RemotePort{0x200000, 3}));
  EXPECT_FALSE(adapter.ports[1].peer);
}

TEST(CacheReader, ReadsTheLinkOfAPortThatIsNotStoredFromItsPeer) {
  CacheBuilder sample = CacheBuilder::Sample();
  sample.nodes()[1].ports[2].is_stored = false;  // of the spine, at port 2 of the leaf
  sample.nodes()[2].ports[0].is_stored = false;  // of the adapter, at port 3 of the leaf
  const CacheFindings findings(sample.Bytes());
  NodeFindings room;
  const NodeFindings& leaf = findings.Node(0, room);
  EXPECT_EQ(leaf.ports[2].peer, (RemotePort{0x200010, 2}));
  EXPECT_EQ(leaf.ports[3].peer, (RemotePort{0x100000, 1}));
  const PortFindings& of_spine = findings.Node(1, room).ports[2];
  EXPECT_EQ(of_spine.peer, (RemotePort{0x200000, 2}));
  EXPECT_EQ(of_spine.info.outcome, Answer::Outcome::kFailed);
  const PortFindings& of_adapter = findings.Node(2, room).ports[0];
  EXPECT_EQ(of_adapter.guid, 0x100001U);
  EXPECT_EQ(of_adapter.peer, (RemotePort{0x200000, 3}));
  EXPECT_EQ(of_adapter.info.outcome, Answer::Outcome::kFailed);
  EXPECT_EQ(of_adapter.info.reason, "not in the discovery cache: the query had failed");

  Fabscan fabscan;
  EXPECT_THAT(BuildFabric(findings, fabscan).gaps,
              ElementsAre("host HCA-1 (0x0000000000100000) lacks PortInfo (not in the discovery "
                          "cache: the query had failed) of port 1",
                          "spine (0x0000000000200010) lacks PortInfo (not in the discovery cache: "
                          "the query had failed) of port 2"));
}

TEST(CacheReader, ReportsAPeerThatNoNodeNames) {
  CacheBuilder sample = CacheBuilder::Sample();
  sample.nodes()[0].ports[3].peer_guid = 0x77;  // the adapter then has another peer or none
  sample.nodes()[2].ports[0].has_peer = false;
  const CacheFindings findings(sample.Bytes());
  NodeFindings room;
  EXPECT_FALSE(findings.Node(0, room).ports[3].peer);
  Fabscan fabscan;
  EXPECT_THAT(BuildFabric(findings, fabscan).gaps,
              ElementsAre("host HCA-1 (0x0000000000100000) lacks the linked peer of port 1",
                          "leaf (0x0000000000200000) lacks the linked peer (not in the discovery "
                          "cache: the query had failed) of port 3"));
}

TEST(CacheReader, RefusesContradictoryLinks) {
  const CacheBuilder sample = CacheBuilder::Sample();
  const auto error_of = [&](auto change) {
    CacheBuilder changed = sample;
    change(changed.nodes());
    return ErrorOf(changed.Bytes());
  };
  EXPECT_THAT(error_of([](auto& nodes) { nodes[2].ports[0].has_peer = false; }),
              EndsWith("the port's peer, port 1 with port GUID 0x0000000000100001, has another "
                       "peer or none"));
  EXPECT_THAT(error_of([](auto& nodes) { nodes[0].ports[1].peer_number = 2; }),  // a ring
              EndsWith("has another peer or none"));
  EXPECT_THAT(error_of([](auto& nodes) {
                nodes[0].ports[1].peer_guid = nodes[0].guid;
                nodes[0].ports[1].peer_number = 1;
              }),
              EndsWith("the port is its own peer"));
  EXPECT_THAT(error_of([](auto& nodes) { nodes[0].ports[1].peer_number = 0; }),
              EndsWith("port 0 of a switch has a link"));
  EXPECT_THAT(error_of([](auto& nodes) {
                nodes[0].ports[1].peer_number = 2;
                nodes[1].ports[1].has_peer = false;
                nodes[1].ports[2].is_stored = false;
              }),
              EndsWith("port 2 with port GUID 0x0000000000200010 is the peer of another port too"));
}

TEST(CacheReader, AcceptsPortsInAnyOrder) {
  const CacheBuilder sample = CacheBuilder::Sample();
  const std::string bytes = sample.Bytes();
  const std::string snapshot = Outcome(bytes);
  std::size_t count = 0;
  for (const CacheBuilder::Node& node : sample.nodes()) count += node.ports.size();
  const std::size_t first = bytes.size() - count * kPortBytes;
  // Takes every third port, and wraps around, so that each port is taken once.
  for (std::size_t step = 1; step < count; ++step) {
    if (std::gcd(step, count) != 1) continue;
    std::string other = bytes.substr(0, first);
    for (std::size_t i = 0; i < count; ++i) {
      other += bytes.substr(first + i * step % count * kPortBytes, kPortBytes);
    }
    EXPECT_EQ(Outcome(other), snapshot) << step;
  }
  EXPECT_THAT(snapshot, HasSubstr("leaf"));
}

TEST(CacheReader, ReportsPortsThatACacheLacks) {
  const CacheFindings findings(CacheBuilder::Sample().Bytes());
  NodeFindings room;
  const NodeFindings& adapter = findings.Node(2, room);
  ASSERT_EQ(adapter.ports.size(), 2U);
  EXPECT_TRUE(adapter.ports[0].info.read());
  EXPECT_EQ(adapter.ports[1].info.outcome, Answer::Outcome::kNotAsked);
  EXPECT_EQ(adapter.ports[1].info.reason,
            "a discovery cache contains only the ports that the scan traversed");
}

TEST(CacheReader, ReportsAMissingSwitchPortAsAFailedQuery) {
  CacheBuilder builder;
  CacheBuilder::Node& node = builder.Add(0x10, IB_SW_NODE, 1, "s");
  builder.AddPort(node, 0);
  node.switch_info = {};
  NodeFindings room;
  const NodeFindings& findings = CacheFindings(builder.Bytes()).Node(0, room);
  EXPECT_EQ(findings.ports[1].info.outcome, Answer::Outcome::kFailed);
  EXPECT_EQ(findings.switch_info.outcome, Answer::Outcome::kFailed);
}

TEST(CacheReader, DoesNotMixFindingsOfTwoNodes) {
  const CacheFindings findings(CacheBuilder::Sample().Bytes());
  const auto adapter_in = [&](NodeFindings& room) {
    const NodeFindings& adapter = findings.Node(2, room);
    EXPECT_EQ(adapter.guid, 0x100000U);
    EXPECT_FALSE(adapter.switch_info.read());
    EXPECT_EQ(adapter.switch_info.reason, "");
    ASSERT_EQ(adapter.ports.size(), 2U);
    EXPECT_EQ(adapter.ports[0].number, 1);
    EXPECT_TRUE(adapter.ports[0].scanned);
    EXPECT_EQ(adapter.ports[1].number, 2);
    EXPECT_FALSE(adapter.ports[1].scanned);
    EXPECT_FALSE(adapter.ports[1].peer);
    EXPECT_FALSE(adapter.ports[1].info.read());
    EXPECT_EQ(adapter.ports[1].info.payload, Payload{});
  };
  NodeFindings room;
  adapter_in(room);
  EXPECT_TRUE(findings.Node(0, room).ports[2].scanned);
  adapter_in(room);
}

TEST(CacheReader, ReadsASwitchOf254Ports) {
  CacheBuilder builder;
  CacheBuilder::Node& node = builder.Add(0x10, IB_SW_NODE, 254, "s");
  for (unsigned number = 0; number <= 254; ++number) {
    builder.AddPort(node, static_cast<u_int8_t>(number));
  }
  NodeFindings room;
  EXPECT_EQ(CacheFindings(builder.Bytes()).Node(0, room).ports.size(), 255U);
}

TEST(CacheReader, RefusesOtherFiles) {
  EXPECT_EQ(ErrorOf(""), "byte 0: the file ends too early");
  EXPECT_EQ(ErrorOf(std::string(100, 'x')),
            "byte 0: not a discovery cache (as ibnetdiscover --cache writes it)");
  std::string bytes = CacheBuilder::Sample().Bytes();
  EXPECT_EQ(ErrorOf(bytes + 'x'), "byte " + std::to_string(bytes.size()) +
                                      ": the file is longer than its header announces");
  bytes[4] = 2;
  EXPECT_EQ(ErrorOf(bytes), "byte 4: discovery cache of version 2; expected 1");
  EXPECT_EQ(ErrorOf("\x8f\xe7\x83\x2b"),
            "byte 0: a discovery cache from a host with the other byte order");
}

TEST(CacheReader, RefusesContradictions) {
  const std::string sample = CacheBuilder::Sample().Bytes();
  std::string bytes = sample;
  bytes[kHeaderBytes + kOffsetOfPortCount] = 3;
  EXPECT_EQ(ErrorOf(bytes), "byte 28: the node's number of ports is 0x3, but 0x4 in its NodeInfo");

  bytes = sample;
  bytes[kHeaderBytes + kOffsetOfNodeGuid] = 1;
  EXPECT_EQ(ErrorOf(bytes), "byte 28: the node's GUID is 0x200001, but 0x200000 in its NodeInfo");

  bytes = sample;  // the second stored port becomes the first one again
  bytes[kHeaderBytes + kOffsetOfStoredCount + 1 + 9 + 8] = 0;
  EXPECT_EQ(ErrorOf(bytes), "byte 28: the node has an impossible or duplicate port 0");

  bytes = sample;  // the second node then begins with the last port of the first
  --bytes[kHeaderBytes + kOffsetOfStoredCount];
  EXPECT_EQ(ErrorOf(bytes),
            "byte 271: the node's GUID is 0x0, but 0x200000000000000 in its NodeInfo");

  CacheBuilder lonely;  // the last node names a port less than the file holds
  lonely.AddPort(lonely.Add(0x10, IB_SW_NODE, 1, "s"), 0);
  bytes = lonely.Bytes();
  bytes[kHeaderBytes + kOffsetOfStoredCount] = 0;
  EXPECT_EQ(ErrorOf(bytes), "byte 235: the nodes have fewer ports than the header announces");

  CacheBuilder twice;
  twice.Add(0x10, IB_CA_NODE, 1, "one");
  twice.Add(0x10, IB_CA_NODE, 1, "two");
  EXPECT_THAT(ErrorOf(twice.Bytes()), EndsWith(": a second node with GUID 0x0000000000000010"));
}

TEST(CacheReader, RefusesLidsThatContradictEachOther) {
  CacheBuilder builder;
  CacheBuilder::Node& node = builder.Add(0x10, IB_SW_NODE, 1, "s");
  CacheBuilder::Port& zero = builder.AddPort(node, 0);
  CacheBuilder::Port& one = builder.AddPort(node, 1);
  CacheBuilder::Node& host = builder.Add(0x20, IB_CA_NODE, 1, "h");
  CacheBuilder::Port& port = builder.AddPort(host, 1);
  CacheBuilder::Link(one, port);
  WriteBits(node.switch_info, 132, 1, 1);
  WriteBits(zero.info, 128, 16, 0x1234);
  WriteBits(zero.info, 277, 3, 2);
  WriteBits(one.info, 128, 16, 9);
  WriteBits(port.info, 128, 16, 0x5678);
  WriteBits(port.info, 277, 3, 1);
  const std::string bytes = builder.Bytes();
  ASSERT_EQ(ErrorOf(bytes), "no error");

  constexpr std::size_t kOffsetOfLid = 10;  // in a port
  const std::size_t first_port = bytes.size() - 3 * kPortBytes;
  const auto error_with = [&bytes](std::size_t offset, char value) {
    std::string changed = bytes;
    changed[offset] = value;
    return ErrorOf(changed);
  };
  EXPECT_EQ(error_with(kHeaderBytes, 0x35),
            "byte 469: the switch's LID is 4661 with mask 2, but 4660 with mask 2 in its PortInfo");
  EXPECT_EQ(error_with(kHeaderBytes + 2, 3),
            "byte 469: the switch's LID is 4660 with mask 3, but 4660 with mask 2 in its PortInfo");
  EXPECT_EQ(error_with(kHeaderBytes + 3, 0),
            "byte 28: the node's enhanced port 0 is 0x0, but 0x1 in its SwitchInfo");
  EXPECT_EQ(error_with(first_port + kOffsetOfLid, 0x35),
            "byte 469: the port's LID is 4661 with mask 2, but 4660 with mask 2 in its PortInfo");
  EXPECT_EQ(error_with(first_port + kPortBytes + kOffsetOfLid, 0x35),
            "byte 564: the port's LID is 4661 with mask 2, but 9 with mask 0 in its PortInfo");
  EXPECT_EQ(error_with(first_port + 2 * kPortBytes + kOffsetOfLid + 1, 0x57),
            "byte 659: the port's LID is 22392 with mask 1, but 22136 with mask 1 in its PortInfo");
  EXPECT_EQ(error_with(first_port + 2 * kPortBytes + kOffsetOfLid + 2, 0),
            "byte 659: the port's LID is 22136 with mask 0, but 22136 with mask 1 in its PortInfo");

  std::string early = bytes;  // read before port 0
  early.replace(first_port + kPortBytes + kOffsetOfLid, 3, 3, '\0');
  EXPECT_EQ(ErrorOf(early), "no error");
}

TEST(CacheReader, RefusesAScanThatBeganAtNoNode) {
  std::string bytes = CacheBuilder::Sample().Bytes();
  bytes[16] = 0x77;
  EXPECT_EQ(ErrorOf(bytes),
            "byte 16: the scan began at a node that is not in the file, with GUID "
            "0x0000000000200077");
  EXPECT_EQ(ErrorOf(CacheBuilder().Bytes()), "no error");
}

// The ordinary loader writes past the end of its table here.
TEST(CacheReader, RefusesAPortAboveTheNumberOfPorts) {
  CacheBuilder builder;
  CacheBuilder::Node& node = builder.Add(0x10, IB_SW_NODE, 1, "s");
  builder.AddPort(node, 0);
  builder.AddPort(node, 200);
  EXPECT_EQ(ErrorOf(builder.Bytes()), "byte 28: the node has an impossible or duplicate port 200");
}

TEST(CacheReader, RefusesEveryTruncation) {
  const std::string bytes = CacheBuilder::Sample().Bytes();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_THAT(ErrorOf(bytes.substr(0, length)),
                StartsWith("byte " + std::to_string(length) + ": the file ends too early"));
  }
}

TEST(CacheReader, RefusesOrReadsEveryChangedByte) {
  std::string bytes = CacheBuilder::Sample().Bytes();
  std::size_t readable = 0;
  for (char& byte : bytes) {
    const char original = byte;
    for (unsigned change = 1; change < 256; ++change) {
      byte = static_cast<char>(static_cast<unsigned char>(original) ^ change);
      try {
        ASSERT_EQ(CacheFindings(bytes).NodeCount(), 4U);
        ++readable;
      } catch (const CacheError& error) {
        ASSERT_EQ(std::string_view(error.what()).substr(0, 5), "byte ");
      }
    }
    byte = original;
  }
  EXPECT_GT(readable, 255U * 500U);  // payloads are most of a cache
}

TEST(CacheReader, WritesReadableSnapshotsForEveryInvertedByte) {
  const std::string path = ::testing::TempDir() + "cache_reader_test.jsonl";
  std::string bytes = CacheBuilder::Sample().Bytes();
  std::size_t snapshots = 0;
  for (char& byte : bytes) {
    byte = static_cast<char>(~byte);
    const std::string snapshot = Outcome(bytes);
    byte = static_cast<char>(~byte);
    if (snapshot.empty()) continue;
    ++snapshots;
    std::ofstream(path, std::ios::binary) << snapshot;
    Fabscan again;
    ASSERT_NO_THROW(ReadSnapshot(path, again)) << snapshot;
    ASSERT_EQ(SnapshotOf(again), snapshot);
  }
  static_cast<void>(std::remove(path.c_str()));
  EXPECT_GT(snapshots, 500U);
}

TEST(CacheReader, DropsTheManagementKey) {
  const std::string snapshot = Outcome(CacheBuilder::Sample().Bytes());
  EXPECT_THAT(snapshot, HasSubstr("SMP_PortInfo"));
  EXPECT_EQ(snapshot.find("5ec2e7"), std::string::npos);
}

TEST(CacheFile, ReportsThePathInErrors) {
  EXPECT_THROW(
      {
        try {
          ReadCacheFile("/nonexistent/fabric.cache");
        } catch (const CacheError& error) {
          EXPECT_STREQ(error.what(),
                       "/nonexistent/fabric.cache: cannot open: No such file or directory");
          throw;
        }
      },
      CacheError);
}

TEST(CacheFile, StopsAtTheAnnouncedSize) {
  EXPECT_THROW(ReadCacheFile("/dev/zero"), CacheError);
  EXPECT_THROW(ReadCacheFile("/"), CacheError);
}

}  // namespace
}  // namespace fabscan
