#include "commands.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace fabscan {
namespace {

TEST(CommandsTest, EveryRowHasANameASummaryAndAnExampleThatParses) {
  for (const Command* command = kCommands; command->name != nullptr; ++command) {
    CLI::App app;
    CLI::App* subcommand = app.add_subcommand(command->name, command->summary);
    // What is returned holds the options that parsing fills.
    const std::function<ExitStatus()> action = command->add(*subcommand);
    ASSERT_TRUE(action) << command->name;
    EXPECT_EQ(FindCommand(command->name), command) << "two rows of one name";
    EXPECT_NE(std::string(command->summary), "");

    const std::string footer = subcommand->get_footer();
    const std::size_t example = footer.find(std::string("\n  fabscan ") + command->name + ' ');
    ASSERT_NE(footer.find("Example"), std::string::npos) << command->name;
    ASSERT_NE(example, std::string::npos) << command->name;
    const std::size_t begin = footer.find(command->name, example);
    const std::string line = footer.substr(begin, footer.find('\n', begin) - begin);
    EXPECT_NO_THROW(app.parse(line)) << line;
  }
}

TEST(CommandsTest, FindsByTheWholeName) {
  EXPECT_STREQ(FindCommand("dump")->name, "dump");
  EXPECT_EQ(FindCommand("dum"), nullptr);
  EXPECT_EQ(FindCommand(""), nullptr);
}

TEST(CommandsTest, CountsChangesAndSwaps) {
  EXPECT_EQ(EditDistance("dump", "dump"), 0U);
  EXPECT_EQ(EditDistance("", "dump"), 4U);
  EXPECT_EQ(EditDistance("dump", ""), 4U);
  EXPECT_EQ(EditDistance("dmup", "dump"), 1U);
  EXPECT_EQ(EditDistance("dum", "dump"), 1U);
  EXPECT_EQ(EditDistance("bump", "dump"), 1U);
  EXPECT_EQ(EditDistance("kitten", "sitting"), 3U);
}

TEST(CommandsTest, SuggestsTheNearestNameIfItIsNear) {
  const std::vector<std::string> names = {"dump", "discover", "diff"};
  EXPECT_EQ(NearestName("dmup", names), "dump");
  EXPECT_EQ(NearestName("discovr", names), "discover");
  EXPECT_EQ(NearestName("dif", names), "diff");
  EXPECT_EQ(NearestName("anonymise", names), "");
}

}  // namespace
}  // namespace fabscan
