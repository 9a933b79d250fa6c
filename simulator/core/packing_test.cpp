#include <gmock/gmock.h>
#include <infiniband/fabscan/fabscan_fabric.h>

namespace fabscan::simulator {
namespace {

using ::testing::ElementsAreArray;

template <class Record>
class PackingTest : public testing::Test {};

template <class... Listed>
testing::Types<Listed..., FWInfo_Block_Element, HWInfo_Block_Element, SWInfo_Block_Element> TypesOf(
    RecordList<Listed...>);
using Records = decltype(TypesOf(EveryRecord{}));
TYPED_TEST_SUITE(PackingTest, Records, );

TYPED_TEST(PackingTest, PackingWhatWasUnpackedGivesTheSameBytes) {
  Packed<TypeParam> packed;
  for (std::size_t i = 0; i < sizeof packed.bytes; ++i) {
    packed.bytes[i] = static_cast<u_int8_t>(37 * i + 11);
  }
  const Packed<TypeParam> before = packed;
  TypeParam record{};
  UnpackRecord(TableOf<TypeParam>::value, packed.bytes, &record);
  PackRecord(TableOf<TypeParam>::value, &record, packed.bytes);
  EXPECT_THAT(packed.bytes, ElementsAreArray(before.bytes));
}

TYPED_TEST(PackingTest, AnAttributeHasAtLeastTheRoomOfASubnetManagementPacket) {
  EXPECT_GE(sizeof(Packed<TypeParam>), 64U);
}

TEST(Packing, RecordsWithoutPublishedLayoutGoInDeclaredOrderBigEndian) {
  const CC_CongestionSwitchGeneralSettings record = {0x01, 0x02, 0x03, 0x04050607, 0x08};
  Packed<CC_CongestionSwitchGeneralSettings> packed;
  CC_CongestionSwitchGeneralSettings_pack(&record, packed.bytes);
  u_int8_t expected[64] = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08};
  EXPECT_THAT(packed.bytes, ElementsAreArray(expected));
}

TEST(Packing, ArraysAndNestedRecordsGoElementByElement) {
  ib_private_lft_info lft{};
  lft.NoFallback = 0x04;
  lft.Description_Mode[0] = {0x05, 0x06};
  lft.Description_Mode[3] = {0x07, 0x08};
  Packed<ib_private_lft_info> packed;
  ib_private_lft_info_pack(&lft, packed.bytes);
  u_int8_t expected[64] = {0, 0, 0, 0x04, 0x05, 0x06, 0, 0, 0, 0, 0x07, 0x08};
  EXPECT_THAT(packed.bytes, ElementsAreArray(expected));

  FWInfo_Block_Element firmware{};
  firmware.PSID.PSID[0] = 'A';
  firmware.PSID.PSID[15] = 'Z';
  Packed<FWInfo_Block_Element> packed_firmware;
  FWInfo_Block_Element_pack(&firmware, packed_firmware.bytes);
  EXPECT_EQ(packed_firmware.bytes[17], 'A');
  EXPECT_EQ(packed_firmware.bytes[32], 'Z');
}

TEST(Packing, TheManagementKeyOfPortInfoStays) {
  Packed<SMP_PortInfo> packed;
  for (u_int8_t& byte : packed.bytes) byte = 0xA5;
  const SMP_PortInfo zero{};
  SMP_PortInfo_pack(&zero, packed.bytes);
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(packed.bytes[i], 0xA5) << i;
  for (std::size_t i = 8; i < 16; ++i) EXPECT_EQ(packed.bytes[i], 0x00) << i;
}

TEST(Packing, AValueThatDoesNotFitIsCutToItsLowBits) {
  SMP_SwitchInfo record{};
  record.LifeTimeValue = 0xFF;  // five bits
  Packed<SMP_SwitchInfo> packed;
  SMP_SwitchInfo_pack(&record, packed.bytes);
  EXPECT_EQ(packed.bytes[11], 0xF8);
  SMP_SwitchInfo_unpack(&record, packed.bytes);
  EXPECT_EQ(record.LifeTimeValue, 0x1F);
  EXPECT_EQ(record.PortStateChange, 0);
}

// Two bytes each behind the capability mask: the mode in use, then supported and enabled modes by
// speed, then the top of the partition table.
TEST(Packing, PortInfoExtendedAlternatesSupportedAndEnabledModes) {
  SMP_PortInfoExtended record{};
  record.CapMsk = 0x01020304;
  record.FECModeActive = 0x0506;
  record.FDRFECModeSupported = 0x0708;
  record.FDRFECModeEnabled = 0x090a;
  record.EDRFECModeSupported = 0x0b0c;
  record.EDRFECModeEnabled = 0x0d0e;
  record.HDRFECModeSupported = 0x0f10;
  record.HDRFECModeEnabled = 0x1112;
  record.NDRFECModeSupported = 0x1314;
  record.NDRFECModeEnabled = 0x1516;
  record.PartitionTop = 0x1718;
  Packed<SMP_PortInfoExtended> packed;
  SMP_PortInfoExtended_pack(&record, packed.bytes);
  for (u_int8_t i = 0; i < 24; ++i) EXPECT_EQ(packed.bytes[i], i + 1) << int{i};
}

}  // namespace
}  // namespace fabscan::simulator
