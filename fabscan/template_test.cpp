#include "template.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

#include "source_writer.h"
#include "testing/written.h"

namespace fabscan::generator {
namespace {

constexpr Template kPlain(R"(
one
  two

three)");
constexpr Template kEnded(R"(

after an empty line
)");
constexpr Template kHoles(R"(
$a$ and $b$, $a$;
    $b$
$c$)",
                          {"a", "b", "c"});
constexpr Template kLoop(R"(
loop {
    $lines$
})",
                         {"lines"});

TEST(Template, IsWrittenAsItReads) {
  EXPECT_EQ(Written([](SourceWriter& to) { to.EmitLines<kPlain>(0); }), "\none\n  two\n\nthree");
  EXPECT_EQ(Written([](SourceWriter& to) { to.Emit<kPlain>(0); }), "one\n  two\n\nthree");
  EXPECT_EQ(Written([](SourceWriter& to) { to.EmitLines<kEnded>(0); }),
            "\n\nafter an empty line\n");
}

TEST(Template, IndentsLinesThatAreNotEmpty) {
  EXPECT_EQ(Written([](SourceWriter& to) { to.Emit<kPlain>(4); }),
            "    one\n      two\n\n    three");
}

TEST(Template, IndentsByAnyNumberOfBlanks) {
  for (const int indent : {std::numeric_limits<int>::min(), -1, 13, 14, 15, 17, 40'000}) {
    const std::string blanks(indent > 0 ? static_cast<unsigned>(indent) : 0, ' ');
    const std::string two(indent > -2 ? static_cast<unsigned>(indent + 2) : 0, ' ');
    EXPECT_EQ(Written([&](SourceWriter& to) { to.EmitLines<kPlain>(indent); }),
              '\n' + blanks + "one\n" + two + "two\n\n" + blanks + "three")
        << indent;
  }
}

TEST(Template, FillsHolesByTheOrderInWhichTheyAreListed) {
  EXPECT_EQ(Written([](SourceWriter& to) { to.Emit<kHoles>(1, 1U, 22U, 333U); }),
            " 1 and 22, 1;\n     22\n 333");
  const std::string text = "text";
  EXPECT_EQ(Written([&](SourceWriter& to) { to.Emit<kHoles>(1, text, "", 4294967295U); }),
            " text and , text;\n     \n 4294967295");
}

TEST(Template, AHoleAloneOnItsLineTakesWholeLines) {
  const auto lines = [](SourceWriter& to, int indent) {
    to.Line(indent).Text("a");
    to.Line(indent).Text("b");
  };
  EXPECT_EQ(Written([&](SourceWriter& to) { to.Emit<kLoop>(2, lines); }),
            "  loop {\n      a\n      b\n  }");
  const auto none = [](SourceWriter&, int) {};
  EXPECT_EQ(Written([&](SourceWriter& to) { to.Emit<kLoop>(0, none); }), "loop {\n}");
}

TEST(Template, FillsAHoleOfAnother) {
  const std::string expected =
      "loop {\n    loop {\n        one\n          two\n\n        three\n"
      "    }\n}";
  EXPECT_EQ(Written([](SourceWriter& to) { to.Emit<kLoop>(0, Filled<kLoop>(Filled<kPlain>())); }),
            expected);
}

TEST(Template, IsBoundedIfItsValuesAre) {
  constexpr auto kBounded = Filled<kHoles>(1U, 2U, 3U);
  EXPECT_LT(decltype(kBounded)::kMostBytes, 300U);
  EXPECT_EQ(decltype(kBounded)::kDepth, 4);
  const auto unbounded = Filled<kHoles>(1U, "text", 3U);
  EXPECT_EQ(decltype(unbounded)::kMostBytes, kUnbounded);
  const auto deep = Filled<kLoop>(Filled<kLoop>(Filled<kPlain>()));
  EXPECT_EQ(decltype(deep)::kDepth, 4 + 4 + 2);
}

TEST(Template, StaysWholeWhereverTheBufferEnds) {
  const auto write = [](SourceWriter& to) {
    to.EmitLines<kLoop>(4, Filled<kHoles>(1U, std::string_view("text"), 333U));
  };
  const std::string expected = Written(write);
  for (std::size_t left = 0; left < 300; ++left) {
    const std::string before(SourceWriter::kCapacity - left, 'x');
    EXPECT_EQ(Written([&](SourceWriter& to) { write(to.Text(before)); }), before + expected);
  }
}

}  // namespace
}  // namespace fabscan::generator
