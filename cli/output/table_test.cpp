#include "cli/output/table.h"

#include <gtest/gtest.h>
#include <utf8proc.h>

namespace fabscan {
namespace {

Table Names() {
  Table table({{"name", false, Narrow::kCut}, {"ports", true}, {"why", false, Narrow::kWrap}});
  table.AddRow({"leaf", "2", "no answer within 1000 ms"});
  table.AddRow({"a switch with a long name", "40", ""});
  return table;
}

TEST(TableTest, AlignsAndLeavesNoBlanksAtLineEnds) {
  EXPECT_EQ(Names().text({}),
            "name                       ports  why\n"
            "leaf                           2  no answer within 1000 ms\n"
            "a switch with a long name     40\n");
}

TEST(TableTest, Indents) {
  Table table({{"a"}, {"b"}});
  table.AddRow({"1", "2"});
  EXPECT_EQ(table.text({}, 2), "  a  b\n  1  2\n");
}

TEST(TableTest, FitsTheTerminal) {
  // The last column first, down to twelve; then the one before it.
  EXPECT_EQ(Names().text({false, 40}),
            "name                 ports  why\n"
            "leaf                     2  no answer\n"
            "                            within 1000\n"
            "                            ms\n"
            "a switch with a lo\u2026     40\n");
}

TEST(TableTest, KeepsAMinimumWidth) {
  Table table({{"name", false, Narrow::kCut}});
  table.AddRow({"abcdefghijklmnop"});
  EXPECT_EQ(table.text({false, 3}), "name\nabcdefghijk\u2026\n");
}

TEST(TableTest, PaintsOnlyOnATerminal) {
  Table table({{"state"}, {"port"}});
  Cell cell("up", Style::kGood);
  cell.Add("!", Style::kBad);
  table.AddRow({cell, "1"});
  EXPECT_EQ(table.text({true, 80}),
            "\x1b[1mstate\x1b[0m  \x1b[1mport\x1b[0m\n"
            "\x1b[32mup\x1b[0m\x1b[31m!\x1b[0m    1\n");
  EXPECT_EQ(table.text({}), "state  port\nup!    1\n");
}

TEST(BesideTest, IndentsByTheWidthOfTheHead) {
  EXPECT_EQ(Beside("  is  ", "one two three", 13), "  is  one two\n      three\n");
  EXPECT_EQ(Beside("  is  ", "one two three", 0), "  is  one two three\n");
  EXPECT_EQ(Beside("head ", "", 20), "head \n");
}

TEST(CellTest, PaintsARunOfOneStyleOnce) {
  Cell cell("");
  for (const char* sign : {"+", "+", "+"}) cell.Add(sign, Style::kGood);
  cell.Add("!", Style::kBad);
  EXPECT_EQ(cell.Paint({true, 0}), "\x1b[32m+++\x1b[0m\x1b[31m!\x1b[0m");
  EXPECT_EQ(cell.width(), 4U);
}

TEST(DisplayWidthTest, CountsColumns) {
  EXPECT_EQ(DisplayWidth(""), 0U);
  EXPECT_EQ(DisplayWidth("plain"), 5U);
  EXPECT_EQ(DisplayWidth("\u00fcber"), 4U);
  EXPECT_EQ(DisplayWidth("\u4ea4\u6362"), 4U) << "these take two columns each";
  EXPECT_EQ(DisplayWidth("e\u0301"), 1U) << "a combining mark takes none";
  EXPECT_EQ(DisplayWidth("\xff\xfe"), 2U);
}

TEST(WithoutControlsTest, EscapesByUnicodeProperties) {
  for (utf8proc_int32_t code = 0; code < 0x110000; ++code) {
    if (code >= 0xD800 && code < 0xE000) continue;
    utf8proc_uint8_t bytes[4];
    const auto size = utf8proc_encode_char(code, bytes);
    const std::string text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    const utf8proc_category_t category = utf8proc_category(code);
    const bool is_invisible =
        category == UTF8PROC_CATEGORY_CC || category == UTF8PROC_CATEGORY_CF ||
        category == UTF8PROC_CATEGORY_ZL || category == UTF8PROC_CATEGORY_ZP ||
        utf8proc_get_property(code)->ignorable != 0;
    const bool is_escaped = WithoutControls(text) != text;
    // Unassigned characters can be ignorable too, which the library does not know.
    if (is_invisible || category != UTF8PROC_CATEGORY_CN) {
      EXPECT_EQ(is_escaped, is_invisible) << std::hex << code;
    }
  }
}

TEST(CutTest, KeepsTextThatFits) {
  EXPECT_EQ(Cut("abc", 3), "abc");
  EXPECT_EQ(Cut("abcd", 3), "ab\u2026");
  EXPECT_EQ(Cut("\u4ea4\u6362\u673a", 4), "\u4ea4\u2026") << "no half characters";
  EXPECT_EQ(Cut("\u00fc\u00fc\u00fc\u00fc", 3), "\u00fc\u00fc\u2026");
}

}  // namespace
}  // namespace fabscan
