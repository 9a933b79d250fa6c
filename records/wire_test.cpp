#include "records/wire.h"

#include <gmock/gmock.h>

#include <array>

#include "records/record_kinds.h"

namespace fabscan {
namespace {

using testing::Each;
using testing::ElementsAre;

using Bytes = std::array<u_int8_t, 72>;

/// Bit by bit.
u_int64_t SlowlyRead(const Bytes& bytes, Place place) {
  u_int64_t value = 0;
  for (unsigned bit = place.first_bit; bit < place.end(); ++bit) {
    value = value << 1U | (bytes[bit / 8] >> (7 - bit % 8) & 1U);
  }
  return value;
}

/// Calls `visit(place)` for all places of 72 bytes that a row may have.
template <class Visit>
void ForEachPlace(Visit visit) {
  for (unsigned bits = 1; bits <= 64; ++bits) {
    const unsigned step = bits > 57 ? 8 : 1;
    for (unsigned first = 0; first + bits <= 8 * sizeof(Bytes); first += step) {
      if (bits <= 57 || bits % 8 == 0) visit(Place{first, bits});
    }
  }
}

TEST(Wire, ReadsEveryPlace) {
  Bytes bytes;
  for (unsigned i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<u_int8_t>(37 * i + 11);
  ForEachPlace([&](Place place) {
    ASSERT_EQ(ReadBits(bytes.data(), place), SlowlyRead(bytes, place))
        << place.first_bit << ' ' << place.bits;
  });
}

TEST(Wire, WritesItsPlaceAndNothingElse) {
  ForEachPlace([](Place place) {
    Bytes bytes = {};
    WriteBits(bytes.data(), place, ~u_int64_t{0});
    ASSERT_EQ(SlowlyRead(bytes, place), ~u_int64_t{0} >> (64 - place.bits));
    unsigned set = 0;
    for (unsigned bit = 0; bit < 8 * bytes.size(); ++bit) set += bytes[bit / 8] >> bit % 8 & 1U;
    ASSERT_EQ(set, place.bits) << place.first_bit;
    WriteBits(bytes.data(), place, 0);
    ASSERT_THAT(bytes, Each(0));
  });
}

TEST(Wire, FieldsWithoutAPublishedPlaceFollowEachOther) {
  std::vector<std::pair<unsigned, unsigned>> places;
  ForEachNumber(TableOf<ib_private_lft_info>::value, [&](const Number& number) {
    places.emplace_back(number.place.first_bit, number.place.bits);
  });
  ASSERT_EQ(places.size(), 12U);
  for (unsigned i = 0; i < places.size(); ++i) EXPECT_EQ(places[i], std::make_pair(8 * i, 8U));
  EXPECT_EQ(PackedBytes(TableOf<ib_private_lft_info>::value), 64U);
  EXPECT_EQ(PackedBytes(TableOf<WrenReductionCounters>::value), 2U + 1 + 2 + 4 + 20 * 8);
  EXPECT_EQ(PackedBytes(TableOf<IB_ClassPortInfo>::value), 72U);
}

TEST(Wire, PacksAndUnpacksARecord) {
  CC_CongestionSwitchGeneralSettings record = {0x01, 0x02, 0x03, 0x04050607, 0x08};
  Bytes bytes = {};
  bytes[8] = 0xA5;  // belongs to no field
  PackRecord(TableOf<CC_CongestionSwitchGeneralSettings>::value, &record, bytes.data());
  EXPECT_THAT((std::vector<int>(bytes.begin(), bytes.begin() + 10)),
              ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 0xA5, 0));
  record = {};
  UnpackRecord(TableOf<CC_CongestionSwitchGeneralSettings>::value, bytes.data(), &record);
  EXPECT_EQ(record.aqs_time, 0x01);
  EXPECT_EQ(record.cap_total_buffer_size, 0x04050607U);
  EXPECT_EQ(record.cap_cc_profile_step_size, 0x08);
}

}  // namespace
}  // namespace fabscan
