#include "model/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace fabscan {
namespace {

TEST(Utf8Test, ReadsTheSmallestAndLargestCharacterOfEachLength) {
  struct Row {
    std::string text;
    char32_t code;
  };
  const Row rows[] = {{std::string(1, '\0'), 0x0},
                      {"\x7F", 0x7F},
                      {"\xC2\x80", 0x80},
                      {"\xDF\xBF", 0x7FF},
                      {"\xE0\xA0\x80", 0x800},
                      {"\xEF\xBF\xBF", 0xFFFF},
                      {"\xF0\x90\x80\x80", 0x10000},
                      {"\xF4\x8F\xBF\xBF", 0x10FFFF}};
  for (const Row& row : rows) {
    const Utf8Character character = FirstCharacter(row.text + "x");
    EXPECT_EQ(character.code, row.code);
    EXPECT_EQ(character.length, row.text.size());
    EXPECT_TRUE(IsUtf8(row.text));
  }
}

TEST(Utf8Test, RefusesMalformedText) {
  const std::string malformed[] = {
      "\x80",              // a continuation alone
      "\xC2",              // truncated
      "\xE0\xA0",          // truncated
      "\xC2\x41",          // no continuation
      "\xC0\x80",          // overlong
      "\xC1\xBF",          // overlong
      "\xE0\x9F\xBF",      // overlong
      "\xF0\x8F\xBF\xBF",  // overlong
      "\xED\xA0\x80",      // surrogate
      "\xED\xBF\xBF",      // surrogate
      "\xF4\x90\x80\x80",  // beyond the last code
      "\xF8\x88\x80\x80\x80",
      "\xFF",
  };
  for (const std::string& text : malformed) {
    EXPECT_EQ(FirstCharacter(text).length, 0U);
    EXPECT_FALSE(IsUtf8(text));
    EXPECT_FALSE(IsUtf8("good " + text + " good"));
  }
}

TEST(Utf8Test, TheEmptyTextIsWellFormed) { EXPECT_TRUE(IsUtf8("")); }

}  // namespace
}  // namespace fabscan
