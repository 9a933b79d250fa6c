#include "snapshot/json_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace fabscan {
namespace {

constexpr u_int32_t kLargest = std::numeric_limits<u_int32_t>::max();

/// What `write` writes.
template <class Write>
std::string Written(Write write) {
  std::ostringstream out;
  JsonWriter json(out);
  write(json);
  json.Flush();
  return out.str();
}

TEST(JsonWriter, SetsCommasAndNoBlanks) {
  EXPECT_EQ(Written([](JsonWriter& json) {
              json.BeginObject();
              json.Key("empty");
              json.BeginArray();
              json.EndArray();
              json.Key("list");
              json.BeginArray();
              json.Number(1);
              json.BeginObject();
              json.EndObject();
              json.Bool(true);
              json.EndArray();
              json.Key("text");
              json.String("x");
              json.Key("nothing");
              json.String({});
              json.EndObject();
              json.EndLine();
              json.Bool(false);
            }),
            "{\"empty\":[],\"list\":[1,{},true],\"text\":\"x\",\"nothing\":\"\"}\nfalse");
}

TEST(JsonWriter, WritesTheSameAtOnce) {
  EXPECT_EQ(Written([](JsonWriter& json) {
              json.Number(0);
              json.AtOnce([](JsonPiece& to) {
                to.BeginObject().Key("a").BeginArray().Number(1).Word("two").EndArray();
                to.Key("b").Bool(false).Key("c").Hex(0xab, 4);
              });
              json.Key("d");
              json.Bool(true);
              json.AtOnce([](JsonPiece& to) { to.EndObject().EndLine(); });
            }),
            "0,{\"a\":[1,\"two\"],\"b\":false,\"c\":\"0x00ab\",\"d\":true}\n");
}

TEST(JsonWriter, WritesEveryLengthOfANumber) {
  for (const u_int64_t value :
       {u_int64_t{0}, u_int64_t{9}, u_int64_t{10}, u_int64_t{99}, u_int64_t{100}, u_int64_t{999},
        u_int64_t{1000}, u_int64_t{9999}, u_int64_t{10'000}, u_int64_t{99'999}, u_int64_t{100'000},
        u_int64_t{999'999}, u_int64_t{10'203}, u_int64_t{9'999'999}, u_int64_t{10'000'000},
        u_int64_t{123'456'789}, u_int64_t{kLargest}, u_int64_t{kLargest} + 1, ~u_int64_t{0}}) {
    EXPECT_EQ(Written([&](JsonWriter& json) { json.Number(value); }), std::to_string(value));
  }
}

TEST(JsonWriter, WritesHexadecimalNumbersWithAsManyDigitsAsAskedFor) {
  const auto hex = [](u_int64_t value, unsigned digits) {
    return Written(
        [&](JsonWriter& json) { json.AtOnce([&](JsonPiece& to) { to.Hex(value, digits); }); });
  };
  EXPECT_EQ(hex(0, 1), "\"0x0\"");
  EXPECT_EQ(hex(0, 16), "\"0x0000000000000000\"");
  EXPECT_EQ(hex(0x5a1e0c, 3), "\"0x5a1e0c\"");
  EXPECT_EQ(hex(0x5a1e0c, 16), "\"0x00000000005a1e0c\"");
  EXPECT_EQ(hex(~u_int64_t{0}, 1), "\"0xffffffffffffffff\"");
}

TEST(JsonWriter, EscapesWhatJsonCannotHold) {
  EXPECT_EQ(Written([](JsonWriter& json) {
              json.BeginArray();
              json.String("a \"quoted\" back\\slash");
              json.String({"line\nand\ttab\x01\x1f\0", 15});
              json.String("gr\xc3\xbc\xc3\x9f");
              json.String("bad \xff\xc3");
              json.EndArray();
            }),
            "[\"a \\\"quoted\\\" back\\\\slash\",\"line\\nand\\ttab\\u0001\\u001f\\u0000\","
            "\"gr\xc3\xbc\xc3\x9f\",\"bad \xEF\xBF\xBD\xEF\xBF\xBD\"]");
}

TEST(JsonWriter, KnowsAWordWhereverTheByteStandsThatIsNone) {
  for (std::size_t size = 1; size <= 24; ++size) {
    for (std::size_t at = 0; at < size; ++at) {
      std::string text(size, '~');
      for (int value = 0; value < 256; ++value) {
        text[at] = static_cast<char>(value);
        const bool plain = value >= 0x20 && value < 0x80 && value != '"' && value != '\\';
        ASSERT_EQ(JsonWriter::IsWord(text), plain) << value << " at " << at << " of " << size;
      }
    }
  }
  EXPECT_TRUE(JsonWriter::IsWord(""));
  EXPECT_FALSE(JsonWriter::IsWord(std::string(JsonWriter::kMostAtOnce, 'x')));
}

/// Records the number of bytes of each write.
class Pieces : public std::stringbuf {
 public:
  std::vector<std::streamsize> sizes;

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    sizes.push_back(size);
    return std::stringbuf::xsputn(text, size);
  }
};

TEST(JsonWriter, HandsWholePiecesOverAndLosesNothing) {
  // Texts that are put at once, and one with an escape that is longer than a piece.
  const std::string word(1000, 'w');
  const std::string longer = std::string(JsonWriter::kPieceBytes, 'l') + '\n';
  Pieces pieces;
  std::ostream out(&pieces);
  JsonWriter json(out);
  std::string expected;
  json.BeginArray();
  for (int i = 0; i < 3000; ++i) {
    json.String(i == 1500 ? longer : word);
    expected += i == 0 ? "[\"" : ",\"";
    expected += i == 1500 ? longer.substr(0, longer.size() - 1) + "\\n" : word;
    expected += '"';
  }
  json.EndArray();
  json.Flush();
  expected += ']';
  EXPECT_TRUE(pieces.str() == expected);
  ASSERT_EQ(pieces.sizes.size(), expected.size() / JsonWriter::kPieceBytes + 1);
  const auto pieces_end = pieces.sizes.end() - 1;
  EXPECT_EQ(std::count(pieces.sizes.begin(), pieces_end, JsonWriter::kPieceBytes),
            pieces_end - pieces.sizes.begin());
}

}  // namespace
}  // namespace fabscan
