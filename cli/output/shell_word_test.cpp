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
}

}  // namespace
}  // namespace fabscan
