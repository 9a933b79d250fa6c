// Text that hides code from a compiler, or reveals more, must change the compiled text.

#include "fuzz/compiled_text.h"

#include <gtest/gtest.h>

namespace fabscan {
namespace {

TEST(CompiledText, HasNoCommentsAndNoLineEnds) {
  EXPECT_EQ(CompiledText("a;  // b\nc /* d\n e */ f\n"), "a; c f ");
  EXPECT_EQ(CompiledText("a /* never closed\nb"), "a ");
}

TEST(CompiledText, OmitsTheLineAfterAContinuedComment) {
  EXPECT_EQ(CompiledText("// x\\\nint a;\nint b;"), "int b;");
  EXPECT_EQ(CompiledText("// x\\ \t\nint a;\nint b;"), "int b;");
  EXPECT_EQ(CompiledText("// x?\?/\nint a;\nint b;"), "int b;");
  EXPECT_EQ(CompiledText("// x\\y\nint a;"), "int a;");
}

TEST(CompiledText, ContainsTextAfterALineEndInAName) {
  EXPECT_EQ(CompiledText("// x\rint a;\nint b;"), "int a; int b;");
}

TEST(CompiledText, KeepsLiteralsWhole) {
  EXPECT_EQ(CompiledText("f(\"// no /* comment\", '\"');"), "f(\"// no /* comment\", '\"');");
  EXPECT_EQ(CompiledText("f(\"\\\"//\");// x"), "f(\"\\\"//\");");
  EXPECT_EQ(CompiledText("f(R\"x(\"//)\" )x\"); // y"), "f(R\"x(\"//)\" )x\"); ");
}

}  // namespace
}  // namespace fabscan
