#include "gathering_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "source_writer.h"

namespace fabscan {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::size_t kPage = 4096;
constexpr std::size_t kPiece = 256 * kPage;

/// A file that notes the sizes of the pieces that reach it. Takes `room` bytes, then fails, or
/// throws when it was told to.
class Pieces : public std::stringbuf {
 public:
  std::vector<std::size_t> sizes;
  std::size_t room = ~std::size_t{0};
  bool throws = false;

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    const auto count = static_cast<std::size_t>(size);
    if (count > room) {
      if (throws) throw std::runtime_error("full");
      return 0;
    }
    room -= count;
    sizes.push_back(count);
    return std::stringbuf::xsputn(text, size);
  }
};

class GatheringBufferTest : public ::testing::Test {
 protected:
  Pieces pieces;
  std::ostream file{&pieces};
};

/// Text in which every place is told apart from its neighbours.
std::string Text(std::size_t size) {
  std::string text(size, ' ');
  for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i % 23);
  return text;
}

TEST_F(GatheringBufferTest, KeepsWhatIsShortUntilItIsHandedOver) {
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  out << "abc" << std::flush << 'd' << std::endl;
  EXPECT_THAT(pieces.sizes, IsEmpty());
  EXPECT_TRUE(gathered.HandOver());
  EXPECT_EQ(pieces.str(), "abcd\n");
  EXPECT_TRUE(gathered.HandOver());
  EXPECT_THAT(pieces.sizes, ElementsAre(5U));
}

TEST_F(GatheringBufferTest, WritesPiecesOfWholePages) {
  const std::string text = Text(2 * kPiece + 10);
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  for (std::size_t at = 0; at < text.size(); at += 1000) out << text.substr(at, 1000);
  EXPECT_THAT(pieces.sizes, ElementsAre(kPiece, kPiece));
  EXPECT_TRUE(gathered.HandOver());
  EXPECT_EQ(pieces.str(), text);
}

TEST_F(GatheringBufferTest, WritesWhatIsLongerThanAPiece) {
  const std::string text = Text(3 * kPiece + 1);
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  out << 'x' << text;
  EXPECT_TRUE(gathered.HandOver());
  EXPECT_EQ(pieces.str(), 'x' + text);
  EXPECT_THAT(pieces.sizes, ElementsAre(kPiece, kPiece, kPiece, 2U));
}

TEST_F(GatheringBufferTest, WritesCharactersOneByOne) {
  const std::string text = Text(kPiece + 2);
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  for (const char c : text) out.put(c);
  EXPECT_TRUE(gathered.HandOver());
  EXPECT_EQ(pieces.str(), text);
  EXPECT_THAT(pieces.sizes, ElementsAre(kPiece, 2U));
}

TEST_F(GatheringBufferTest, WritesASingleCharacterAfterAPiece) {
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  out << Text(kPiece) << 'x';
  EXPECT_TRUE(gathered.HandOver());
  EXPECT_EQ(pieces.str(), Text(kPiece) + 'x');
}

TEST_F(GatheringBufferTest, TakesTextAfterWhatLiesBeyondThePiece) {
  const std::string beyond = Text(kPiece + 100);
  GatheringBuffer gathered(file);
  gathered.Advance(std::copy(beyond.begin(), beyond.end(), gathered.Next()));
  EXPECT_EQ(gathered.sputn("abc", 3), 3);
  EXPECT_TRUE(gathered.HandOver());
  EXPECT_EQ(pieces.str(), beyond + "abc");
  EXPECT_THAT(pieces.sizes, ElementsAre(kPiece, 103U));
}

TEST_F(GatheringBufferTest, EndsTheFirstPieceWithAPageOfTheFile) {
  const std::string begun(kPage + 100, 'h');
  const std::string text = Text(2 * kPiece);
  file << begun;
  pieces.sizes.clear();
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  out << text;
  EXPECT_TRUE(gathered.HandOver());
  EXPECT_EQ(pieces.str(), begun + text);
  EXPECT_THAT(pieces.sizes, ElementsAre(kPiece - 100, kPiece, 100U));
}

TEST_F(GatheringBufferTest, WritesWhatIsPendingWhenItGoes) {
  {
    GatheringBuffer gathered(file);
    std::ostream(&gathered) << "abc";
  }
  EXPECT_EQ(pieces.str(), "abc");
}

TEST_F(GatheringBufferTest, TellsThatTheFileFailed) {
  pieces.room = 0;
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  out << Text(kPiece) << 'x';
  EXPECT_TRUE(out.bad());
  EXPECT_TRUE(file.bad());
  EXPECT_FALSE(gathered.HandOver());

  std::ostream again(&gathered);
  again << "y";
  EXPECT_TRUE(again.good());
  EXPECT_FALSE(gathered.HandOver());
}

TEST_F(GatheringBufferTest, FailsWhereACharacterHasNoPlace) {
  pieces.room = 0;
  GatheringBuffer gathered(file);
  for (std::size_t i = 0; i < kPiece; ++i) gathered.sputc('x');
  EXPECT_EQ(gathered.sputc('y'), std::char_traits<char>::eof());
}

TEST_F(GatheringBufferTest, PassesOnWhatTheFileThrowsAndGoesQuietly) {
  pieces.room = kPiece;
  pieces.throws = true;
  file.exceptions(std::ios::badbit);
  {
    GatheringBuffer gathered(file);
    std::ostream out(&gathered);
    out.exceptions(std::ios::badbit);
    EXPECT_NO_THROW(out << Text(kPiece));
    EXPECT_NO_THROW(out << Text(kPiece));
    EXPECT_THROW(out << 'x', std::runtime_error);
    out.clear();
    out << "pending";
  }
  EXPECT_EQ(pieces.str(), Text(kPiece));
}

TEST_F(GatheringBufferTest, IsFoundUnderAStream) {
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  EXPECT_EQ(GatheringBuffer::Of(out), &gathered);
  EXPECT_EQ(GatheringBuffer::Of(file), nullptr);
  EXPECT_EQ(GatheringBuffer::Of(std::ostream(nullptr)), nullptr);
}

TEST_F(GatheringBufferTest, HasWhatAWriterWritesAtOnce) {
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  const char* const begin = gathered.Next();
  {
    SourceWriter writer(out);
    writer.Text("abc");
    EXPECT_EQ(std::string(begin, 3), "abc");
  }
  EXPECT_EQ(gathered.Next(), begin + 3);
  out << "def";
  SourceWriter(out).Text("ghi");
  EXPECT_TRUE(gathered.HandOver());
  EXPECT_EQ(pieces.str(), "abcdefghi");
}

// Wherever the piece ends in what one writer writes, and between two.
TEST_F(GatheringBufferTest, TakesWhatWritersWriteBeyondThePiece) {
  constexpr std::size_t kLine = 1 + 4 + 8 + kMostHexDigits + 1;
  const std::string line = "\n    value = 123456789abcdef0;";
  for (std::size_t room = 0; room < 2 * kLine; ++room) {
    pieces.str("");
    pieces.sizes.clear();
    GatheringBuffer gathered(file);
    std::ostream out(&gathered);
    const std::string before = Text(kPiece - room);
    SourceWriter(out).Text(before);
    std::string expected = before;
    for (int i = 0; i < 1000; ++i) {
      SourceWriter writer(out);
      writer.AtOnce([](auto& to) {
        to.Line(4).Text("value = ").Hex(0x123456789abcdef0).Text(";");
        to.Line(4).Text("value = ").Hex(0x123456789abcdef0).Text(";");
      });
      writer.Line(4).Text("value = ").Hex(0x123456789abcdef0).Text(";");
      for (int line_count = 0; line_count < 3; ++line_count) expected += line;
    }
    EXPECT_TRUE(gathered.HandOver());
    ASSERT_EQ(pieces.str(), expected) << room;
    EXPECT_EQ(pieces.sizes.front(), kPiece);
    EXPECT_EQ(pieces.sizes.size(), 2U);
  }
}

TEST_F(GatheringBufferTest, TakesAWritersTextsOfAnyLength) {
  for (const std::size_t size : {kPiece - 1, kPiece, kPiece + GatheringBuffer::kSlack,
                                 kPiece + GatheringBuffer::kSlack + 1, 3 * kPiece + 5}) {
    pieces.str("");
    GatheringBuffer gathered(file);
    std::ostream out(&gathered);
    const std::string text = Text(size);
    SourceWriter(out).Text("a").Text(text).Text("b").Indent(20'000).Text(text);
    out << text << 'c';
    EXPECT_TRUE(gathered.HandOver());
    EXPECT_EQ(pieces.str(), "a" + text + "b" + std::string(20'000, ' ') + text + text + 'c');
  }
}

TEST_F(GatheringBufferTest, TellsAWritersStreamThatTheFileFailed) {
  pieces.room = kPiece;
  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  SourceWriter(out).Text(Text(kPiece + GatheringBuffer::kSlack));
  EXPECT_TRUE(out.good());
  SourceWriter(out).Text("a");
  EXPECT_TRUE(out.good());
  SourceWriter(out).Text(Text(2 * kPiece));
  EXPECT_TRUE(out.bad());
  SourceWriter(out).Text(Text(5 * kPiece)).Text("b");
  EXPECT_FALSE(gathered.HandOver());
  EXPECT_EQ(pieces.str(), Text(kPiece));
}

TEST_F(GatheringBufferTest, PassesWhatTheFileThrowsThroughAWriter) {
  pieces.room = kPiece;
  pieces.throws = true;
  file.exceptions(std::ios::badbit);
  {
    GatheringBuffer gathered(file);
    std::ostream out(&gathered);
    out.exceptions(std::ios::badbit);
    EXPECT_THROW(SourceWriter(out).Text(Text(4 * kPiece)), std::runtime_error);
    EXPECT_NO_THROW(SourceWriter(out).Text("pending"));
  }
  EXPECT_EQ(pieces.str(), Text(kPiece));
}

TEST_F(GatheringBufferTest, KeepsWhatAWriterWroteBeforeAnExceptionOfItsCaller) {
  {
    GatheringBuffer gathered(file);
    std::ostream out(&gathered);
    EXPECT_THROW(
        {
          SourceWriter writer(out);
          writer.Text("before").EndLine();
          throw 1;
        },
        int);
    SourceWriter(out).Text("after");
  }
  EXPECT_EQ(pieces.str(), "before\nafter");
}

}  // namespace
}  // namespace fabscan
