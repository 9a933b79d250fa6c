#include "guid_options.h"

#include <gmock/gmock.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <string>

#include "command.h"

namespace fabscan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(GuidOptionsTest, ParsesHexadecimalDigits) {
  EXPECT_EQ(ParseGuid("0x2c9"), 0x2c9U);
  EXPECT_EQ(ParseGuid("2C9"), 0x2c9U);
  EXPECT_EQ(ParseGuid("0X2c9"), 0x2c9U);
  EXPECT_EQ(ParseGuid("0"), 0U);
  EXPECT_EQ(ParseGuid("0xffffffffffffffff"), 0xffffffffffffffffU);
  EXPECT_EQ(ParseGuid("0000000000000001"), 1U);
  for (const char* text : {"", "0x", "g", "0xg", "1 ", " 1", "-1", "+1", "0x-1", "1.0", "0x0x1",
                           "00000000000000001", "0x10000000000000000", "12:34"}) {
    EXPECT_FALSE(ParseGuid(text).has_value()) << text;
  }
}

TEST(GuidOptionsTest, WritesSixteenDigits) {
  EXPECT_EQ(GuidText(0x2c9), "0x00000000000002c9");
  EXPECT_EQ(GuidText(0), "0x0000000000000000");
}

class GuidFileTest : public testing::Test {
 protected:
  ~GuidFileTest() override { std::remove(path_.c_str()); }

  /// The GUIDs, or the message of the error.
  std::string ErrorOfFile(const std::string& content, ExitStatus expected_status) {
    std::ofstream(path_) << content;
    try {
      Read({"--guid-file", path_});
    } catch (const CommandError& error) {
      EXPECT_EQ(error.status(), expected_status);
      return error.what();
    }
    return "";
  }
  std::set<u_int64_t> Read(std::vector<std::string> arguments) {
    CLI::App app;
    GuidOptions options;
    options.AddTo(app);
    std::reverse(arguments.begin(), arguments.end());
    app.parse(arguments);
    return options.Read();
  }

  const std::string path_ = testing::TempDir() + "guids-" + std::to_string(::getpid());
};

TEST_F(GuidFileTest, JoinsOptionsAndFile) {
  std::ofstream(path_) << "# adapters\n\n  0x10  # the first\n11\r\n\t12\n10";
  EXPECT_THAT(Read({"--guid", "1", "--guid-file", path_, "--guid", "0x2"}),
              ElementsAre(1, 2, 0x10, 0x11, 0x12));
  EXPECT_THAT(Read({}), IsEmpty());
}

TEST_F(GuidFileTest, NamesFileAndLineOfAMalformedOne) {
  EXPECT_EQ(
      ErrorOfFile("1\n# comment\nxyz\n", kWrongUsage),
      path_ + ":3: 'xyz' is no GUID; a GUID is 1 to 16 hexadecimal digits, with or without 0x");
}

TEST_F(GuidFileTest, AFileWithoutGuidsDoesNotMeanAllNodes) {
  EXPECT_EQ(ErrorOfFile("# none\n", kWrongUsage), path_ + ": names no GUID; write one a line");
  EXPECT_EQ(ErrorOfFile("", kWrongUsage), path_ + ": names no GUID; write one a line");
}

TEST_F(GuidFileTest, NamesTheCauseOfAnUnreadableFile) {
  std::remove(path_.c_str());
  EXPECT_THROW(
      {
        try {
          Read({"--guid-file", path_});
        } catch (const CommandError& error) {
          EXPECT_EQ(error.what(), path_ + ": cannot read the GUIDs: No such file or directory; " +
                                      "check --guid-file");
          EXPECT_EQ(error.status(), kFailed);
          throw;
        }
      },
      CommandError);
  EXPECT_THROW(Read({"--guid-file", "/"}), CommandError);
}

TEST(GuidOptionsTest, WarnsOfNodesThatAreNotThere) {
  IBFabric fabric;
  fabric.makeNode("in", 1, IB_SW_NODE, 1);
  fabric.makeNode("out", 2, IB_SW_NODE, 1).in_sub_fabric = false;
  testing::internal::CaptureStderr();
  EXPECT_THAT(WarnOfMissing({1, 2, 3}, fabric), ElementsAre(1));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "fabscan: warning: the node 0x0000000000000002 (out) is outside the sub-fabric\n"
            "fabscan: warning: no node has the GUID 0x0000000000000003\n");
}

TEST(GuidOptionsTest, WarningsOfOneKindStayFew) {
  std::set<u_int64_t> many;
  for (u_int64_t guid = 1; guid <= 30; ++guid) many.insert(guid);
  testing::internal::CaptureStderr();
  EXPECT_THAT(WarnOfMissing(many, IBFabric()), IsEmpty());
  const std::string warnings = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(warnings.begin(), warnings.end(), '\n'), 21);
  EXPECT_THAT(warnings,
              testing::EndsWith("10 further GUIDs are missing or outside the sub-fabric\n"));
}

}  // namespace
}  // namespace fabscan
