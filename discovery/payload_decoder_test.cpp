#include "discovery/payload_decoder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "discovery/testing/cache_builder.h"
#include "records/number.h"

namespace fabscan {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

Payload PayloadOf(std::initializer_list<u_int8_t> bytes) {
  Payload payload = {};
  std::copy(bytes.begin(), bytes.end(), payload.begin());
  return payload;
}

TEST(PayloadDecoder, ReadsNodeInfo) {
  const SMP_NodeInfo info = Decode<SMP_NodeInfo>(PayloadOf({
      0x01, 0x02, 0x03, 0x24,                          // versions, type, ports
      0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18,  // system image
      0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28,  // node
      0x31, 0x32, 0x33, 0x34, 0x35, 0x36, 0x37, 0x38,  // port
      0x00, 0x40, 0xd2, 0xf0,                          // partitions, device
      0x00, 0x00, 0x00, 0xa1,                          // revision
      0x05, 0x5a, 0x1e, 0x0c,                          // local port, vendor
  }));
  EXPECT_EQ(info.BaseVersion, 1);
  EXPECT_EQ(info.ClassVersion, 2);
  EXPECT_EQ(info.NodeType, 3);
  EXPECT_EQ(info.NumPorts, 0x24);
  EXPECT_EQ(info.SystemImageGUID, 0x1112131415161718U);
  EXPECT_EQ(info.NodeGUID, 0x2122232425262728U);
  EXPECT_EQ(info.PortGUID, 0x3132333435363738U);
  EXPECT_EQ(info.PartitionCap, 0x40);
  EXPECT_EQ(info.DeviceID, 0xd2f0);
  EXPECT_EQ(info.revision, 0xa1U);
  EXPECT_EQ(info.LocalPortNum, 5);
  EXPECT_EQ(info.VendorID, 0x5a1e0cU);
}

TEST(PayloadDecoder, ReadsTheTenNumbersOfPortInfoExtendedInTheirOrder) {
  Payload payload = {};
  WriteBits(payload, 0, 32, 0x80000001);
  for (unsigned i = 0; i < 10; ++i) WriteBits(payload, 32 + 16 * i, 16, 0x101 * (i + 1));
  const SMP_PortInfoExtended info = Decode<SMP_PortInfoExtended>(payload);
  EXPECT_EQ(info.CapMsk, 0x80000001U);
  EXPECT_EQ(info.FECModeActive, 0x101);
  EXPECT_EQ(info.FDRFECModeSupported, 0x202);
  EXPECT_EQ(info.FDRFECModeEnabled, 0x303);
  EXPECT_EQ(info.EDRFECModeSupported, 0x404);
  EXPECT_EQ(info.EDRFECModeEnabled, 0x505);
  EXPECT_EQ(info.HDRFECModeSupported, 0x606);
  EXPECT_EQ(info.HDRFECModeEnabled, 0x707);
  EXPECT_EQ(info.NDRFECModeSupported, 0x808);
  EXPECT_EQ(info.NDRFECModeEnabled, 0x909);
  EXPECT_EQ(info.PartitionTop, 0xa0a);
}

/// The names of the record's numbers that are 0.
template <class Record>
std::vector<std::string> Zeroes(const Record& record) {
  std::vector<std::string> names;
  ForEachNumber(TableOf<Record>::value, [&](const Number& number) {
    if (number.Load(&record) == 0) names.push_back(number.path());
  });
  return names;
}

TEST(PayloadDecoder, FillsEveryFieldThatHasAPlace) {
  Payload ones;
  ones.fill(0xff);
  EXPECT_THAT(Zeroes(Decode<SMP_NodeInfo>(ones)), IsEmpty());
  EXPECT_THAT(Zeroes(Decode<SMP_SwitchInfo>(ones)), IsEmpty());
  EXPECT_THAT(Zeroes(Decode<SMP_PortInfo>(ones)), IsEmpty());
  EXPECT_THAT(Zeroes(Decode<SMP_PortInfoExtended>(ones)), IsEmpty());
}

TEST(PayloadDecoder, LeavesTheManagementKeyBehind) {
  Payload payload = {};
  WriteBits(payload, 0, 64, ~u_int64_t{0});
  EXPECT_EQ(Zeroes(Decode<SMP_PortInfo>(payload)).size(), TableOf<SMP_PortInfo>::value.numbers);
}

TEST(PayloadDecoder, EndsADescriptionAtItsZeroByteAndWithoutBlanks) {
  EXPECT_EQ(DescriptionText("host HCA-1"), "host HCA-1");
  EXPECT_EQ(DescriptionText({"host\0\0\0", 7}), "host");
  EXPECT_EQ(DescriptionText("padded   "), "padded");
  EXPECT_EQ(DescriptionText({"old\0er text", 11}), "old");
  EXPECT_EQ(DescriptionText({"\0\0", 2}), "");
  EXPECT_EQ(DescriptionText("   "), "");
  EXPECT_EQ(DescriptionText(std::string(64, 'x')), std::string(64, 'x'));
}

TEST(PayloadDecoder, BelievesTheSecondCapabilityMaskOnlyWhereTheFirstAnnouncesIt) {
  Payload payload = {};
  WriteBits(payload, 480, 16, 1U << 1U | 1U << 11U);
  EXPECT_FALSE(HasPortInfoExtended(payload));
  WriteBits(payload, 160, 32, 1U << 15U);
  EXPECT_TRUE(HasPortInfoExtended(payload));
}

TEST(PayloadDecoder, ReadsTheSecondSetOfExtendedSpeeds) {
  Payload payload = {};
  payload[56] = 0x7f;  // its first bit is reserved
  const auto info = Decode<SMP_PortInfo>(payload);
  EXPECT_EQ(info.LinkSpeedExtActive2, 3);
  EXPECT_EQ(info.LinkSpeedExtSup2, 3);
  EXPECT_EQ(info.LinkSpeedExtEnabled2, 7);
  payload[56] = 0x2a;  // 01 01 010
  const auto xdr = Decode<SMP_PortInfo>(payload);
  EXPECT_EQ(xdr.LinkSpeedExtActive2, 1);
  EXPECT_EQ(xdr.LinkSpeedExtSup2, 1);
  EXPECT_EQ(xdr.LinkSpeedExtEnabled2, 2);
}

TEST(PayloadDecoder, HasNoWordForNumbersThatAreReserved) {
  EXPECT_EQ(NodeTypeOf(2), IB_SW_NODE);
  EXPECT_EQ(NodeTypeOf(4), IB_UNKNOWN_NODE_TYPE);
  EXPECT_EQ(PortStateOf(4), IB_PORT_STATE_ACTIVE);
  EXPECT_EQ(PortStateOf(5), IB_UNKNOWN_PORT_STATE);
}

}  // namespace
}  // namespace fabscan
