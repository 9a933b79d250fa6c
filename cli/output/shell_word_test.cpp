#include "cli/output/shell_word.h"

#include <gtest/gtest.h>

namespace fabscan {
namespace {

TEST(ShellWordTest, QuotesShellCharacters) {
  EXPECT_EQ(ShellWord("out/fabric-1.jsonl.zst"), "out/fabric-1.jsonl.zst");
  EXPECT_EQ(ShellWord(""), "''");
  EXPECT_EQ(ShellWord("my fabric"), "'my fabric'");
  EXPECT_EQ(ShellWord("a;b$(c)`d`*"), "'a;b$(c)`d`*'");
  EXPECT_EQ(ShellWord("it's"), "'it'\\''s'");
  EXPECT_EQ(ShellWord("\u00e9"), "'\u00e9'");
}

TEST(ShellWordTest, EscapesControlCharacters) {
  EXPECT_EQ(ShellWord("a\x1b[31m\nb"), "$'a\\033[31m\\012b'");
  EXPECT_EQ(ShellWord("it's\\\t"), "$'it\\'s\\\\\\011'");
  EXPECT_EQ(ShellWord("\u00e9\u202e\xff"), "$'\\303\\251\\342\\200\\256\\377'");
}

}  // namespace
}  // namespace fabscan
