#include "cli/command_line.h"

#include <fmt/format.h>

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "cli/exit_statuses.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/terminal.h"
#include "model/version.h"

namespace fabscan {

namespace {

/// Shows for each option what a user types: its name, its argument, and whether it is required.
/// Positionals are shown in the usage line. Descriptions fit the terminal.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() : width_(StandardOutput().width) {
    if (width_ == 0) width_ = kWidthElsewhere;
    column_width(width_ < kWidthForColumns ? 8 : 32);
  }
  std::string make_group(std::string group, bool is_positional,
                         std::vector<const CLI::Option*> options) const override {
    // CLI11 writes an empty line before each group, and one more after those before the last.
    const bool is_last = !is_positional && group != kFirstGroup;
    return CLI::Formatter::make_group(group, is_positional, std::move(options)).substr(is_last);
  }
  std::string make_option_opts(const CLI::Option* option) const override {
    if (option->get_positional() || option->get_type_size() == 0) return {};
    const std::string type = option->get_type_name();
    std::string text = ' ' + type.substr(0, type.find(':'));  // the validators follow
    if (!option->get_default_str().empty()) text += '=' + option->get_default_str();
    if (option->get_expected_max() == CLI::detail::expected_max_vector_size) text += " ...";
    if (option->get_required()) text += " (required)";
    return text;
  }
  std::string make_option_desc(const CLI::Option* option) const override {
    return BesideNames(option->get_description());
  }
  std::string make_subcommand(const CLI::App* subcommand) const override {
    std::ostringstream out;
    CLI::detail::format_help(out, subcommand->get_name(),
                             BesideNames(subcommand->get_description()), column_width_);
    return out.str();
  }
  std::string make_footer(const CLI::App* app) const override {
    const std::string notes = NotesText(app->get_footer(), width_);
    return notes.empty() ? notes : notes + '\n';
  }

 private:
  static constexpr char kFirstGroup[] = "Options";
  static constexpr std::size_t kWidthElsewhere = 100;
  static constexpr std::size_t kWidthForColumns = 64;

  std::string BesideNames(const std::string& description) const {
    const std::vector<std::string> lines =
        Wrapped(description, width_ > column_width_ ? width_ - column_width_ : 1);
    return fmt::format("{}", fmt::join(lines, "\n"));
  }

  std::size_t width_;
};

std::string ExitStatusText() {
  std::string text = "Exit status:\n";
  for (const auto& [status, meaning] : kExitStatuses) {
    text += fmt::format("  {}  {}\n", static_cast<int>(status), meaning);
  }
  return text;
}

}  // namespace

std::string NotesText(const std::string& notes, std::size_t width) {
  std::istringstream paragraphs(notes);
  std::vector<std::string> lines;
  for (std::string paragraph; std::getline(paragraphs, paragraph);) {
    if (paragraph.empty() || paragraph.front() == ' ') {
      lines.push_back(paragraph);
    } else {
      for (std::string& line : Wrapped(paragraph, width)) lines.push_back(std::move(line));
    }
  }
  return fmt::format("{}", fmt::join(lines, "\n"));
}

CommandLine::CommandLine()
    : app("Turns recorded attributes of an InfiniBand fabric into C++ source for a fabric "
          "simulator.",
          "fabscan") {
  app.set_version_flag("--version", fmt::format("fabscan {}", kVersion));
  app.require_subcommand(1);
  app.formatter(std::make_shared<HelpFormatter>());
  app.footer(ExitStatusText() + "\n'fabscan help SUBCOMMAND' shows the options and an example.");

  for (const Command* command = kCommands; command->name != nullptr; ++command) {
    CLI::App* subcommand = app.add_subcommand(command->name, command->summary);
    actions[subcommand] = command->add(*subcommand);
    AddLoudnessOptions(*subcommand);
  }
}

}  // namespace fabscan
