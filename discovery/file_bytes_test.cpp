#include "discovery/file_bytes.h"

#include <gtest/gtest.h>

#include <string>

namespace fabscan {
namespace {

TEST(FileBytes, KeepsItsBytesWhenItGrows) {
  FileBytes bytes;
  EXPECT_EQ(bytes.view(), "");
  std::string expected;
  for (std::size_t count = 0; count < 300; ++count) {
    const std::string piece(count, static_cast<char>('a' + count % 26));
    char* const room = bytes.Room(count + 5);  // more than comes
    std::copy(piece.begin(), piece.end(), room);
    bytes.Take(count);
    expected += piece;
    ASSERT_EQ(bytes.view(), expected);
  }
  EXPECT_EQ(bytes.size(), expected.size());
}

TEST(FileBytes, DoesNotMoveWhileThereIsSpace) {
  FileBytes bytes("begin");
  bytes.Reserve(100);
  const char* const begin = bytes.view().data();
  bytes.Reserve(10);
  EXPECT_EQ(bytes.Room(95), begin + 5);
  bytes.Take(95);
  EXPECT_EQ(bytes.view().substr(0, 5), "begin");
  EXPECT_EQ(bytes.view().data(), begin);
}

}  // namespace
}  // namespace fabscan
