#include "snapshot/byte_source.h"

#include <gtest/gtest.h>
#include <zstd.h>

#include <sstream>

#include "snapshot/line_reader.h"
#include "snapshot/testing/snapshot_text.h"
#include "snapshot/zstd_output.h"

namespace fabscan {
namespace {

std::string Compressed(const std::string& text) {
  std::ostringstream to;
  ZstdOutput compressed(to);
  std::ostream out(&compressed);
  out << text.substr(0, 1);
  out.put(text[1]);
  out.write(text.data() + 2, static_cast<std::streamsize>(text.size()) - 2);
  EXPECT_TRUE(compressed.Finish());
  return to.str();
}

std::string ReadAll(ByteSource& source, std::size_t chunk) {
  std::string text;
  std::string piece(chunk, '\0');
  while (const std::size_t got = source.Read(piece.data(), chunk)) text.append(piece, 0, got);
  return text;
}

std::string LongText() {
  std::string text;
  for (int i = 0; i < 200000; ++i) text += std::to_string(i * 7919 % 100003) + '\n';
  return text;
}

TEST(ByteSource, GivesPlainBytesAsTheyAre) {
  for (const std::string text : {"", "a", "abc", "\x28\xB5\x2F", "abcdefgh"}) {
    for (const std::size_t chunk : {1U, 3U, 100U}) {
      EXPECT_EQ(ReadAll(*Decompressed(MakeMemorySource(text)), chunk), text);
    }
  }
}

TEST(ByteSource, DecompressesFramesOneAfterTheOther) {
  const std::string text = LongText();
  const std::string compressed = Compressed(text);
  EXPECT_LT(compressed.size(), text.size());
  const std::string twice = compressed + compressed;
  for (const std::size_t chunk : {7U, 65536U}) {
    EXPECT_EQ(ReadAll(*Decompressed(MakeMemorySource(twice)), chunk), text + text);
  }
}

TEST(ByteSource, DecompressesFramesWithoutAChecksum) {
  const std::string text = LongText();
  std::string compressed(ZSTD_compressBound(text.size()), '\0');
  compressed.resize(
      ZSTD_compress(compressed.data(), compressed.size(), text.data(), text.size(), 1));
  for (const std::size_t chunk : {1U, 7U, 1000U, 65536U, 1U << 18U}) {
    EXPECT_EQ(ReadAll(*Decompressed(MakeMemorySource(compressed)), chunk), text) << chunk;
  }
}

std::string ErrorOf(const std::string& bytes) {
  try {
    ReadAll(*Decompressed(MakeMemorySource(bytes)), 65536);
    return {};
  } catch (const SourceError& error) {
    return error.what();
  }
}

TEST(ByteSource, TellsOfCompressedDataThatIsCutShortOrDamaged) {
  const std::string compressed = Compressed(LongText());
  ASSERT_EQ(ErrorOf(compressed), "");
  for (std::size_t size = 4; size < compressed.size(); size += 1 + size / 8) {
    EXPECT_EQ(ErrorOf(compressed.substr(0, size)),
              "the compressed data ends too early; copy it again")
        << size;
  }
  EXPECT_EQ(ErrorOf(compressed.substr(0, compressed.size() - 1)),
            "the compressed data ends too early; copy it again");
  std::string damaged = compressed;
  damaged[damaged.size() / 2] = static_cast<char>(damaged[damaged.size() / 2] ^ 0x10);
  EXPECT_EQ(ErrorOf(damaged).rfind("cannot decompress: ", 0), 0U) << ErrorOf(damaged);
}

TEST(ByteSource, ReadsCompressedSnapshotsAndNamesTheirLines) {
  const std::string text = OneNode(NodeLine(""));
  EXPECT_EQ(Rewritten(Compressed(text)), text);
  EXPECT_EQ(ReadError(Compressed(OneNode(NodeLine(",\"colour\":1")))),
            "f:2: unknown key \"colour\"; remove it");
  const std::string compressed = Compressed(text);
  EXPECT_EQ(ReadError(compressed.substr(0, compressed.size() - 1)),
            "f:4: the compressed data ends too early; copy it again");
}

class FailingBuffer : public std::streambuf {};

TEST(ZstdOutput, TellsOfAStreamThatTakesNothing) {
  FailingBuffer nowhere;
  std::ostream to(&nowhere);
  ZstdOutput compressed(to);
  std::ostream out(&compressed);
  out << LongText();
  EXPECT_FALSE(compressed.Finish());
}

std::vector<std::string> Lines(const std::string& text, std::size_t chunk) {
  const auto source = MakeMemorySource(text);
  LineReader reader(*source, 1000, chunk);
  std::vector<std::string> lines;
  while (const auto line = reader.Next()) {
    EXPECT_GE(line->readable, line->text.size() + LineReader::kPadding);
    lines.emplace_back(line->text);
    EXPECT_EQ(reader.number(), lines.size());
  }
  return lines;
}

TEST(LineReader, CutsAtLineFeedsWhateverTheChunk) {
  const std::vector<std::string> lines = {"", "a", std::string(300, 'b'), "", "\r", "last"};
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  for (std::size_t chunk = 1; chunk < 400; chunk += 1 + chunk / 5) {
    EXPECT_EQ(Lines(text, chunk), lines) << chunk;
    EXPECT_EQ(Lines(text.substr(0, text.size() - 1), chunk), lines) << chunk;
  }
  EXPECT_TRUE(Lines("", 10).empty());
}

TEST(LineReader, AllowsLinesUpToTheLimit) {
  for (const std::size_t chunk : {1U, 999U, 1001U, 5000U}) {
    EXPECT_EQ(Lines(std::string(1000, 'x') + "\ny", chunk).size(), 2U);
    EXPECT_THROW(Lines(std::string(1001, 'x') + "\ny", chunk), SourceError);
    EXPECT_THROW(Lines(std::string(1001, 'x'), chunk), SourceError);
  }
}

}  // namespace
}  // namespace fabscan
