// Every file of the minefield, every truncation of the bundled example and every flipped bit of a
// small snapshot is read, or refused with the message in messages.tsv.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "snapshot/testing/snapshot_text.h"

namespace fabscan {
namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The files of one type, 'y' or 'n': file name -> text.
std::map<std::string, std::string> Mines(char kind) {
  std::map<std::string, std::string> mines;
  for (const auto& entry : fs::directory_iterator(FABSCAN_MINEFIELD)) {
    const std::string name = entry.path().filename().string();
    if (name.compare(0, 2, std::string(1, kind) + '_') == 0) mines[name] = ReadFile(entry.path());
  }
  return mines;
}

std::map<std::string, std::string> Messages() {
  std::ifstream table(FABSCAN_MINEFIELD "/messages.tsv", std::ios::binary);
  std::map<std::string, std::string> messages;
  for (std::string name, message;
       std::getline(table, name, '\t') && std::getline(table, message);) {
    messages[name] = message;
  }
  return messages;
}

TEST(Minefield, IsLarge) { EXPECT_GE(Mines('y').size() + Mines('n').size(), 160U); }

TEST(Minefield, WhatIsSoundIsReadAndWrittenAgainAsTheSameBytes) {
  for (const auto& [name, text] : Mines('y')) {
    SCOPED_TRACE(name);
    ASSERT_EQ(ReadError(text), "");
    const std::string written = Rewritten(text);
    EXPECT_EQ(Rewritten(written), written);
    EXPECT_EQ(Rewritten(text, 1), written);
  }
}

TEST(Minefield, WhatIsNotIsRefusedInTheWordsOfTheTable) {
  std::map<std::string, std::string> messages = Messages();
  for (const auto& [name, text] : Mines('n')) {
    const auto message = messages.find(name);
    ASSERT_NE(message, messages.end()) << name;
    EXPECT_EQ(ReadError(text), "f:" + message->second) << name;
    messages.erase(message);
  }
  EXPECT_TRUE(messages.empty()) << messages.begin()->first << " is in the table alone";
}

TEST(Minefield, ATruncatedExampleIsRefusedWhereverItEnds) {
  const std::string text = ReadFile(FABSCAN_EXAMPLES "/partial.fabscan.jsonl");
  ASSERT_EQ(ReadError(text), "");
  ASSERT_EQ(ReadError(text.substr(0, text.size() - 1)), "");  // the last line feed may be missing
  for (std::size_t size = 0; size + 1 < text.size(); ++size) {
    EXPECT_NE(ReadError(text.substr(0, size)), "") << size;
  }
}

/// Reads only the truncated line of the example: other truncations cover the lines before it.
TEST(Minefield, ATruncatedDemonstrationIsRefusedWhereverItEnds) {
  const std::string text = ReadFile(FABSCAN_EXAMPLES "/demo.fabscan.jsonl");
  const std::size_t header = text.find('\n') + 1;
  const std::string no_nodes = R"({"end":true,"nodes":0})";
  std::size_t cuts = 0;
  for (std::size_t begin = 0; begin < text.size(); begin = text.find('\n', begin) + 1) {
    const std::size_t end = text.find('\n', begin);
    const bool is_last = end + 1 == text.size();
    for (std::size_t size = 0; begin + size <= end; ++size, ++cuts) {
      std::string cut = begin == 0 ? "" : text.substr(0, header);
      cut += text.substr(begin, size);
      if (is_last && begin + size == end) continue;  // only the line feed is missing
      EXPECT_NE(ReadError(cut), "") << begin + size;
    }
  }
  EXPECT_EQ(cuts, text.size());
}

TEST(Minefield, AFlippedBitIsRefusedOrMakesAnotherSoundSnapshot) {
  const std::string small =
      OneNode(NodeLine(R"(,"alternativeName":"a","gmpCapabilityMask":[1,"0x2",3,4],"absent":)"
                       R"({"SMP_NodeInfo":"lost"},"ports":[{"num":0,"state":"DOWN","fnm":true,)"
                       R"("attributes":{"WrenReductionPortInfo":{"capability_mask":12}}}])"));
  ASSERT_EQ(ReadError(small), "");
  std::size_t sound = 0;
  for (std::size_t bit = 0; bit < 8 * small.size(); ++bit) {
    std::string flipped = small;
    flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << (bit % 8)));
    if (!ReadError(flipped).empty()) continue;
    ++sound;
    const std::string written = Rewritten(flipped);
    EXPECT_EQ(Rewritten(written), written) << flipped;
  }
  EXPECT_GT(sound, 0U);
  EXPECT_LT(sound, 2 * small.size());
}

}  // namespace
}  // namespace fabscan
