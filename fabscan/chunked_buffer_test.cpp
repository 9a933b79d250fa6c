#include "chunked_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "source_writer.h"

namespace fabscan::generator {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::size_t kPage = 4096;
constexpr std::size_t kChunk = 64 * kPage;

/// A file that notes the sizes of the chunks that reach it. Takes `room` bytes, then fails, or
/// throws when it was told to.
class Chunks : public std::stringbuf {
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

class ChunkedBufferTest : public ::testing::Test {
 protected:
  Chunks chunks;
  std::ostream file{&chunks};
};

/// Text in which every place is told apart from its neighbours.
std::string Text(std::size_t size) {
  std::string text(size, ' ');
  for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i % 23);
  return text;
}

TEST_F(ChunkedBufferTest, KeepsWhatIsShortUntilItIsHandedOver) {
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  out << "abc" << std::flush << 'd' << std::endl;
  EXPECT_THAT(chunks.sizes, IsEmpty());
  EXPECT_TRUE(buffer.Flush());
  EXPECT_EQ(chunks.str(), "abcd\n");
  EXPECT_TRUE(buffer.Flush());
  EXPECT_THAT(chunks.sizes, ElementsAre(5U));
}

TEST_F(ChunkedBufferTest, WritesChunksOfWholePages) {
  const std::string text = Text(2 * kChunk + 10);
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  for (std::size_t at = 0; at < text.size(); at += 1000) out << text.substr(at, 1000);
  EXPECT_THAT(chunks.sizes, ElementsAre(kChunk, kChunk));
  EXPECT_TRUE(buffer.Flush());
  EXPECT_EQ(chunks.str(), text);
}

TEST_F(ChunkedBufferTest, WritesWhatIsLongerThanAPiece) {
  const std::string text = Text(3 * kChunk + 1);
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  out << 'x' << text;
  EXPECT_TRUE(buffer.Flush());
  EXPECT_EQ(chunks.str(), 'x' + text);
  EXPECT_THAT(chunks.sizes, ElementsAre(kChunk, kChunk, kChunk, 2U));
}

TEST_F(ChunkedBufferTest, WritesCharactersOneByOne) {
  const std::string text = Text(kChunk + 2);
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  for (const char c : text) out.put(c);
  EXPECT_TRUE(buffer.Flush());
  EXPECT_EQ(chunks.str(), text);
  EXPECT_THAT(chunks.sizes, ElementsAre(kChunk, 2U));
}

TEST_F(ChunkedBufferTest, WritesASingleCharacterAfterAPiece) {
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  out << Text(kChunk) << 'x';
  EXPECT_TRUE(buffer.Flush());
  EXPECT_EQ(chunks.str(), Text(kChunk) + 'x');
}

TEST_F(ChunkedBufferTest, TakesTextAfterWhatLiesBeyondThePiece) {
  const std::string beyond = Text(kChunk + 100);
  ChunkedBuffer buffer(file);
  buffer.Advance(std::copy(beyond.begin(), beyond.end(), buffer.Next()));
  EXPECT_EQ(buffer.sputn("abc", 3), 3);
  EXPECT_TRUE(buffer.Flush());
  EXPECT_EQ(chunks.str(), beyond + "abc");
  EXPECT_THAT(chunks.sizes, ElementsAre(kChunk, 103U));
}

TEST_F(ChunkedBufferTest, EndsTheFirstPieceWithAPageOfTheFile) {
  const std::string begun(kPage + 100, 'h');
  const std::string text = Text(2 * kChunk);
  file << begun;
  chunks.sizes.clear();
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  out << text;
  EXPECT_TRUE(buffer.Flush());
  EXPECT_EQ(chunks.str(), begun + text);
  EXPECT_THAT(chunks.sizes, ElementsAre(kChunk - 100, kChunk, 100U));
}

TEST_F(ChunkedBufferTest, WritesWhatIsPendingWhenItGoes) {
  {
    ChunkedBuffer buffer(file);
    std::ostream(&buffer) << "abc";
  }
  EXPECT_EQ(chunks.str(), "abc");
}

TEST_F(ChunkedBufferTest, TellsThatTheFileFailed) {
  chunks.room = 0;
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  out << Text(kChunk) << 'x';
  EXPECT_TRUE(out.bad());
  EXPECT_TRUE(file.bad());
  EXPECT_FALSE(buffer.Flush());

  std::ostream again(&buffer);
  again << "y";
  EXPECT_TRUE(again.good());
  EXPECT_FALSE(buffer.Flush());
}

TEST_F(ChunkedBufferTest, FailsWhereACharacterHasNoPlace) {
  chunks.room = 0;
  ChunkedBuffer buffer(file);
  for (std::size_t i = 0; i < kChunk; ++i) buffer.sputc('x');
  EXPECT_EQ(buffer.sputc('y'), std::char_traits<char>::eof());
}

TEST_F(ChunkedBufferTest, PassesOnWhatTheFileThrowsAndGoesQuietly) {
  chunks.room = kChunk;
  chunks.throws = true;
  file.exceptions(std::ios::badbit);
  {
    ChunkedBuffer buffer(file);
    std::ostream out(&buffer);
    out.exceptions(std::ios::badbit);
    EXPECT_NO_THROW(out << Text(kChunk));
    EXPECT_NO_THROW(out << Text(kChunk));
    EXPECT_THROW(out << 'x', std::runtime_error);
    out.clear();
    out << "pending";
  }
  EXPECT_EQ(chunks.str(), Text(kChunk));
}

TEST_F(ChunkedBufferTest, IsFoundUnderAStream) {
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  EXPECT_EQ(ChunkedBuffer::Of(out), &buffer);
  EXPECT_EQ(ChunkedBuffer::Of(file), nullptr);
  EXPECT_EQ(ChunkedBuffer::Of(std::ostream(nullptr)), nullptr);
}

TEST_F(ChunkedBufferTest, HasWhatAWriterComposes) {
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  const char* const begin = buffer.Next();
  {
    SourceWriter writer(out);
    writer.Text("abc");
    EXPECT_EQ(std::string(begin, 3), "abc");
  }
  EXPECT_EQ(buffer.Next(), begin + 3);
  out << "def";
  SourceWriter(out).Text("ghi");
  EXPECT_TRUE(buffer.Flush());
  EXPECT_EQ(chunks.str(), "abcdefghi");
}

constexpr Template kTwoValues(R"(
value = $a$;
value = $b$;)",
                              {"a", "b"});

// Wherever the chunk ends in what one writer writes, and between two.
TEST_F(ChunkedBufferTest, TakesWhatWritersWriteBeyondThePiece) {
  const std::string line = "\n    value = 1234567890;";
  for (std::size_t room = 0; room < 100; ++room) {
    chunks.str("");
    chunks.sizes.clear();
    ChunkedBuffer buffer(file);
    std::ostream out(&buffer);
    const std::string before = Text(kChunk - room);
    SourceWriter(out).Text(before);
    std::string expected = before;
    for (int i = 0; i < 1000; ++i) {
      SourceWriter writer(out);
      writer.EmitLines<kTwoValues>(4, 1234567890U, 1234567890U);
      writer.Line(4).Text("value = ").Decimal(1234567890).Text(";");
      for (int line_count = 0; line_count < 3; ++line_count) expected += line;
    }
    EXPECT_TRUE(buffer.Flush());
    ASSERT_EQ(chunks.str(), expected) << room;
    EXPECT_EQ(chunks.sizes.front(), kChunk);
    EXPECT_EQ(chunks.sizes.size(), 2U);
  }
}

TEST_F(ChunkedBufferTest, TakesAWritersTextsOfAnyLength) {
  for (const std::size_t size : {kChunk - 1, kChunk, kChunk + ChunkedBuffer::kSlack,
                                 kChunk + ChunkedBuffer::kSlack + 1, 3 * kChunk + 5}) {
    chunks.str("");
    ChunkedBuffer buffer(file);
    std::ostream out(&buffer);
    const std::string text = Text(size);
    SourceWriter(out).Text("a").Text(text).Text("b").Indent(20'000).Text(text);
    out << text << 'c';
    EXPECT_TRUE(buffer.Flush());
    EXPECT_EQ(chunks.str(), "a" + text + "b" + std::string(20'000, ' ') + text + text + 'c');
  }
}

TEST_F(ChunkedBufferTest, TellsAWritersStreamThatTheFileFailed) {
  chunks.room = kChunk;
  ChunkedBuffer buffer(file);
  std::ostream out(&buffer);
  SourceWriter(out).Text(Text(kChunk + ChunkedBuffer::kSlack));
  EXPECT_TRUE(out.good());
  SourceWriter(out).Text("a");
  EXPECT_TRUE(out.good());
  SourceWriter(out).Text(Text(2 * kChunk));
  EXPECT_TRUE(out.bad());
  SourceWriter(out).Text(Text(5 * kChunk)).Text("b");
  EXPECT_FALSE(buffer.Flush());
  EXPECT_EQ(chunks.str(), Text(kChunk));
}

TEST_F(ChunkedBufferTest, PassesWhatTheFileThrowsThroughAWriter) {
  chunks.room = kChunk;
  chunks.throws = true;
  file.exceptions(std::ios::badbit);
  {
    ChunkedBuffer buffer(file);
    std::ostream out(&buffer);
    out.exceptions(std::ios::badbit);
    EXPECT_THROW(SourceWriter(out).Text(Text(4 * kChunk)), std::runtime_error);
    EXPECT_NO_THROW(SourceWriter(out).Text("pending"));
  }
  EXPECT_EQ(chunks.str(), Text(kChunk));
}

TEST_F(ChunkedBufferTest, KeepsWhatAWriterWroteBeforeAnExceptionOfItsCaller) {
  {
    ChunkedBuffer buffer(file);
    std::ostream out(&buffer);
    EXPECT_THROW(
        {
          SourceWriter writer(out);
          writer.Text("before").EndLine();
          throw 1;
        },
        int);
    SourceWriter(out).Text("after");
  }
  EXPECT_EQ(chunks.str(), "before\nafter");
}

}  // namespace
}  // namespace fabscan::generator
