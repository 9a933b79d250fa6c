#include "model/harmless_name.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "model/utf8.h"

namespace fabscan {
namespace {

/// Independent of the code under test.
bool IsOrdinaryByte(unsigned char byte) {
  return byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\';
}

std::string Escaped(unsigned char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {'%', kDigits[byte / 16], kDigits[byte % 16]};
}

void ExpectHarmless(const std::string& name) {
  const std::string harmless = HarmlessName(name);
  EXPECT_EQ(OriginalName(harmless), name);
  EXPECT_TRUE(IsUtf8(harmless));
  for (const char* hazard : {"\\", "\"", "/*", "??"}) {
    EXPECT_EQ(harmless.find(hazard), std::string::npos) << harmless;
  }
  for (const char c : harmless) {
    EXPECT_FALSE(static_cast<unsigned char>(c) < 0x20 || c == 0x7F) << harmless;
  }
}

TEST(HarmlessNameTest, EveryByteAtFirstMiddleAndLastPosition) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto byte = static_cast<unsigned char>(value);
    const std::string text(1, static_cast<char>(byte));
    const std::string expected = IsOrdinaryByte(byte) ? text : Escaped(byte);
    EXPECT_EQ(HarmlessName(text + "xy"), expected + "xy");
    EXPECT_EQ(HarmlessName("x" + text + "y"), "x" + expected + "y");
    EXPECT_EQ(HarmlessName("xy" + text), "xy" + expected);
    ExpectHarmless(text);
  }
}

TEST(HarmlessNameTest, OrdinaryNamesAreUnchanged) {
  for (const char* name :
       {"", "S1", "rack-07/leaf 3 port1", "MF0;switch-3:MQM8700/U1", "100% full", "50%-50%", "a%zz",
        "node(1)", "a?b", "a*b", "// not the start of anything", "R'x(", "H\xC3\xB4te",
        "\xE6\xA9\x9F\xE6\x9E\xB6", "\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(HarmlessName(name), name);
    EXPECT_EQ(OriginalName(name), name);
  }
}

TEST(HarmlessNameTest, EscapesHazardousSequences) {
  EXPECT_EQ(HarmlessName("a/*b"), "a/%2Ab");
  EXPECT_EQ(HarmlessName("a*/b"), "a*/b");
  EXPECT_EQ(HarmlessName("a?"
                         "?/b"),
            "a?%3F/b");
  EXPECT_EQ(HarmlessName("????"), "?%3F?%3F");
  EXPECT_EQ(HarmlessName("R\"x(b"), "R%22x(b");
  EXPECT_EQ(HarmlessName("a\\"), "a%5C");
  EXPECT_EQ(HarmlessName("a\\ "), "a%5C ");
  EXPECT_EQ(HarmlessName("//"), "//");
}

TEST(HarmlessNameTest, APercentSignThatReadsAsAnEscapeIsEscaped) {
  EXPECT_EQ(HarmlessName("%41"), "%2541");
  EXPECT_EQ(HarmlessName("%4f"), "%4f");  // lower case is not an escape
  EXPECT_EQ(HarmlessName("%%41"), "%%2541");
  EXPECT_EQ(HarmlessName("%4"), "%4");
  EXPECT_EQ(OriginalName("%2541"), "%41");
  // An escape after the percent sign must not combine with it.
  EXPECT_EQ(OriginalName(HarmlessName("%4\n")), "%4\n");
  EXPECT_EQ(OriginalName(HarmlessName("%\n41")), "%\n41");
}

TEST(HarmlessNameTest, DeceptiveCharactersAreEscaped) {
  EXPECT_EQ(HarmlessName("a\xE2\x80\xAE"
                         "b"),
            "a%E2%80%AEb");  // right-to-left override
  EXPECT_EQ(HarmlessName("a\xE2\x81\xA6"
                         "b"),
            "a%E2%81%A6b");  // left-to-right isolate
  EXPECT_EQ(HarmlessName("a\xE2\x80\x8B"
                         "b"),
            "a%E2%80%8Bb");  // zero-width space
  EXPECT_EQ(HarmlessName("a\xEF\xBB\xBF"
                         "b"),
            "a%EF%BB%BFb");  // byte order mark
  EXPECT_EQ(HarmlessName("a\xE2\x80\xA8"
                         "b"),
            "a%E2%80%A8b");  // line separator
  EXPECT_EQ(HarmlessName("a\xC2\x85"
                         "b"),
            "a%C2%85b");  // next line
}

TEST(HarmlessNameTest, InvisibleCharactersAreEscaped) {
  // Format characters, fillers, variation selectors, musical and shorthand format controls, tags.
  for (const char* invisible :
       {"\u00ad",     "\u034f",     "\u0600",     "\u061c",     "\u115f",     "\u1160",
        "\u17b4",     "\u180b",     "\u180e",     "\u180f",     "\u200d",     "\u2028",
        "\u2064",     "\u2069",     "\u3164",     "\ufe00",     "\ufe0f",     "\uffa0",
        "\ufff0",     "\ufffb",     "\U000110bd", "\U00013430", "\U0001343f", "\U0001bca0",
        "\U0001bca3", "\U0001d173", "\U0001d17a", "\U000e0000", "\U000e0061", "\U000e0100",
        "\U000e01ef", "\U000e0fff"}) {
    std::string escaped;
    for (const char byte : std::string(invisible)) {
      escaped += Escaped(static_cast<unsigned char>(byte));
    }
    EXPECT_EQ(HarmlessName("leaf-01" + std::string(invisible)), "leaf-01" + escaped);
    ExpectHarmless(std::string(invisible) + "x" + invisible);
  }
}

TEST(HarmlessNameTest, NeighboursOfInvisibleCharactersAreUnchanged) {
  for (const char* visible :
       {"\u00a0",     "\u00ac",     "\u00ae",     "\u034e",     "\u0350",     "\u05ff",
        "\u0606",     "\u061b",     "\u115e",     "\u1161",     "\u180a",     "\u1810",
        "\u200a",     "\u2010",     "\u2027",     "\u202f",     "\u205f",     "\u2070",
        "\u3163",     "\u3165",     "\ufdff",     "\ufe10",     "\uff9f",     "\uffa1",
        "\uffef",     "\ufffc",     "\U0001342f", "\U00013440", "\U0001bc9f", "\U0001bca4",
        "\U0001d172", "\U0001d17b", "\U000dffff", "\U000e1000", "\U0010ffff"}) {
    EXPECT_EQ(HarmlessName(visible), visible);
  }
}

TEST(HarmlessNameTest, EveryPairOfHazardousSequences) {
  const std::vector<std::string> pieces = {"/",
                                           "*",
                                           "?",
                                           "\\",
                                           "\"",
                                           "'",
                                           "%",
                                           "%2",
                                           "41",
                                           "A",
                                           "\n",
                                           "\r",
                                           "\t",
                                           " ",
                                           "(",
                                           ")",
                                           "R",
                                           "x",
                                           "#",
                                           "<",
                                           ">",
                                           "}",
                                           std::string(1, '\0'),
                                           "\x7F",
                                           "\x80",
                                           "\xC2",
                                           "\xE2\x80\xAE",
                                           "\xFF"};
  for (const std::string& first : pieces) {
    for (const std::string& second : pieces) {
      ExpectHarmless(first + second);
      ExpectHarmless("a" + first + second + "b");
      for (const std::string& third : pieces) ExpectHarmless(first + second + third);
    }
  }
}

TEST(HarmlessNameTest, RandomBytesAreRestored) {
  std::mt19937 random(20240607);
  // Drawn from few bytes, for frequent hazards, and from all bytes.
  const std::string few = "%2A5F/*?\\\"\n a\xC2\x85\xE2\x80\xAE";
  for (int round = 0; round < 200'000; ++round) {
    std::string name(random() % 12, '\0');
    for (char& c : name) {
      c = round % 2 == 0 ? few[random() % few.size()] : static_cast<char>(random() % 256);
    }
    const std::string harmless = HarmlessName(name);
    ASSERT_EQ(OriginalName(harmless), name);
    ASSERT_TRUE(IsUtf8(harmless));
    ASSERT_EQ(harmless.find("/*"), std::string::npos);
    ASSERT_EQ(harmless.find("??"), std::string::npos);
  }
}

TEST(HarmlessNameTest, DifferentNamesStayDifferent) {
  EXPECT_NE(HarmlessName("a\n"), HarmlessName("a%0A"));
  EXPECT_NE(HarmlessName("%"), HarmlessName("%25"));
}

}  // namespace
}  // namespace fabscan
