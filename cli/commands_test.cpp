#include "cli/commands.h"

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
    // The returned function owns the options that parsing fills.
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

}  // namespace
}  // namespace fabscan
