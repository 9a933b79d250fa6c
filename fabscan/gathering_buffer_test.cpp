#include "gathering_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

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

}  // namespace
}  // namespace fabscan
