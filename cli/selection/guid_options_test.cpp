#include "cli/selection/guid_options.h"

#include <gmock/gmock.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <string>

#include "cli/command.h"

namespace fabscan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(GuidOptionsTest, ParsesHexadecimalDigits) {
  EXPECT_EQ(ParseGuid("0x5a1e0c"), 0x5a1e0cU);
  EXPECT_EQ(ParseGuid("5A1E0C"), 0x5a1e0cU);
  EXPECT_EQ(ParseGuid("0X5a1e0c"), 0x5a1e0cU);
  EXPECT_EQ(ParseGuid("0"), 0U);
  EXPECT_EQ(ParseGuid("0xffffffffffffffff"), 0xffffffffffffffffU);
  EXPECT_EQ(ParseGuid("0000000000000001"), 1U);
  for (const char* text : {"", "0x", "g", "0xg", "1 ", " 1", "-1", "+1", "0x-1", "1.0", "0x0x1",
                           "00000000000000001", "0x10000000000000000"}) {
    EXPECT_FALSE(ParseGuid(text).has_value()) << text;
  }
}

TEST(GuidOptionsTest, ParsesGroupsOfFourOrTwoDigits) {
  EXPECT_EQ(ParseGuid("5a1e:0c00:0000:0100"), 0x5a1e0c0000000100U);
  EXPECT_EQ(ParseGuid("5a:1E:0c:00:00:00:01:00"), 0x5a1e0c0000000100U);
  EXPECT_EQ(ParseGuid("0x5a1e:0c00:0000:0100"), 0x5a1e0c0000000100U);
  for (const char* text : {"12:34", ":", "5a1e:", "5a1e:0c00", "5a1e:0c00:0000:100",
                           "5a1e:0c00:0000:0100:", "5a1e:0c00:0000:01000", "5a1e:0c00:00000100",
                           "5a1e:0c:00:0000:0100", "5a1e0c00:00000100", "5a:1e:0c:00:00:00:01",
                           "5a:1e:0c:00:00:00:01:", "5a:1e:0c:00:00:00:0100",
                           ":5a1e:0c00:0000:0100", "5a1e::0000:0100", "5a1e:0c00:0000:01g0"}) {
    EXPECT_FALSE(ParseGuid(text).has_value()) << text;
  }
}

TEST(GuidOptionsTest, ParsesTheNodesOfATopologyFile) {
  EXPECT_EQ(ParseGuid("S-5a1e0c0000000100"), 0x5a1e0c0000000100U);
  EXPECT_EQ(ParseGuid("H-5a1e0c0000000600"), 0x5a1e0c0000000600U);
  EXPECT_EQ(ParseGuid("R-5a1e0c0000000500"), 0x5a1e0c0000000500U);
  for (const char* text : {"S-", "X-1", "S1", "-1", "S-0x1", "S-H-1"}) {
    EXPECT_FALSE(ParseGuid(text).has_value()) << text;
  }
}

TEST(GuidOptionsTest, WritesSixteenDigits) {
  EXPECT_EQ(GuidText(0x5a1e0c), "0x00000000005a1e0c");
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
  std::ofstream(path_) << "# adapters\n\n  0x10  # the first\n11\r\n\t12\n10\nS-13";
  EXPECT_THAT(Read({"--guid", "1", "--guid-file", path_, "--guid", "0x2"}),
              ElementsAre(1, 2, 0x10, 0x11, 0x12, 0x13));
  EXPECT_THAT(Read({}), IsEmpty());
}

TEST_F(GuidFileTest, ReportsFileAndLineOfAMalformedGuid) {
  EXPECT_EQ(ErrorOfFile("1\n# comment\nxyz\n", kWrongUsage),
            path_ +
                ":3: 'xyz' is not a valid GUID; expected 1 to 16 hexadecimal digits, with or "
                "without 0x or colons");
}

TEST_F(GuidFileTest, AFileWithoutGuidsIsAnError) {
  EXPECT_EQ(ErrorOfFile("# none\n", kWrongUsage), path_ + ": contains no GUID; write one per line");
  EXPECT_EQ(ErrorOfFile("", kWrongUsage), path_ + ": contains no GUID; write one per line");
}

TEST_F(GuidFileTest, ReportsWhyAFileCannotBeRead) {
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

}  // namespace
}  // namespace fabscan
