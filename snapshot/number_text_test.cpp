#include "snapshot/number_text.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>

namespace fabscan {
namespace {

bool Read(const std::string& digits, u_int64_t& number) {
  const std::string readable = digits + "f\"fffffffff";  // what follows counts for nothing
  return ReadHexDigits(std::string_view(readable).substr(0, digits.size()), number);
}

TEST(HexNumber, ReadsEveryCountOfDigits) {
  const std::string digits = "123456789aBcDeF0";
  for (std::size_t count = 1; count <= 16; ++count) {
    u_int64_t number = 0;
    ASSERT_TRUE(Read(digits.substr(0, count), number)) << count;
    EXPECT_EQ(number, 0x123456789ABCDEF0 >> (64 - 4 * count));
  }
}

TEST(HexNumber, TakesLeadingZerosButNoWiderNumber) {
  u_int64_t number = 0;
  ASSERT_TRUE(Read("00000000000000000000ffffffffffffffff", number));
  EXPECT_EQ(number, ~u_int64_t{0});
  ASSERT_TRUE(Read("0000000000000000000000", number));
  EXPECT_EQ(number, 0U);
  EXPECT_FALSE(Read("10000000000000000", number));
  EXPECT_FALSE(Read("", number));
}

TEST(HexNumber, TakesTheHexadecimalDigitsAlone) {
  for (int byte = 0x20; byte < 256; ++byte) {
    for (std::size_t place = 0; place < 16; ++place) {
      std::string digits = "0123456789abcdef";
      digits[place] = static_cast<char>(byte);
      u_int64_t number = 0;
      ASSERT_EQ(Read(digits, number), std::isxdigit(byte) != 0) << byte << " at " << place;
      if (std::isxdigit(byte) != 0) {
        EXPECT_EQ(number, std::stoull(digits, nullptr, 16));
      }
    }
  }
}

}  // namespace
}  // namespace fabscan
