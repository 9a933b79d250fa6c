#include "packaging/reference/manual_page.h"

#include <fmt/format.h>

#include <cctype>
#include <string>

#include "cli/exit_statuses.h"
#include "model/version.h"
#include "packaging/reference/options.h"

namespace fabscan {

namespace {

/// Escapes text so that the formatter shows it literally.
std::string Escaped(const std::string& text) {
  std::string escaped;
  bool line_begins = true;
  for (const char c : text) {
    if (line_begins && (c == '.' || c == '\'')) escaped += "\\&";
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else {
      escaped += c;
    }
    line_begins = c == '\n';
  }
  return escaped;
}

std::string Head(const std::string& name, const std::string& summary) {
  std::string title;
  for (const char c : name) title += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return fmt::format(".TH {} 1 \"\" \"fabscan {}\" \"fabscan\"\n.SH NAME\n{} \\- {}\n",
                     Escaped(title), kVersion, Escaped(name), Escaped(summary));
}

std::string Tagged(const std::string& tag, const std::string& text) {
  return fmt::format(".TP\n{}\n{}\n", tag, Escaped(text));
}

std::string Synopsis(const CLI::App& subcommand) {
  std::string words = fmt::format("fabscan {} [OPTIONS]", subcommand.get_name());
  for (const CLI::Option* option : PositionalsOf(subcommand)) words += ' ' + option->get_name(true);
  return fmt::format(".SH SYNOPSIS\n.B {}\n", Escaped(words));
}

std::string Options(const CLI::App& subcommand) {
  std::string text;
  for (const CLI::Option* option : PositionalsOf(subcommand)) {
    text +=
        Tagged(fmt::format(".I {}", Escaped(option->get_name(true))), option->get_description());
  }
  for (const CLI::Option* option : NamedOptionsOf(subcommand)) {
    std::string tag;
    for (const std::string& name : NamesOf(*option)) {
      tag += fmt::format("{}\\fB{}\\fR", tag.empty() ? "" : ", ", Escaped(name));
    }
    if (TakesValue(*option)) tag += fmt::format(" \\fI{}\\fR", Escaped(ValueWord(*option)));
    const std::string required = option->get_required() ? " (required)" : "";
    const std::string standard = option->get_default_str();
    text += Tagged(tag, option->get_description() + required +
                            (standard.empty() ? "" : fmt::format(" ({} unless given)", standard)));
  }
  return ".SH OPTIONS\n" + text;
}

/// Width of a page on a narrow terminal, without margins.
constexpr std::size_t kNotesWidth = 72;

/// The text below the options, with the line breaks of the help text.
std::string Notes(const CLI::App& app) {
  return fmt::format(".SH NOTES\n.nf\n{}\n.fi\n",
                     Escaped(NotesText(app.get_footer(), kNotesWidth)));
}

}  // namespace

std::string ManualPage(const CommandLine& line) {
  std::string page = Head("fabscan", "simulated devices out of what an InfiniBand fabric reported");
  page +=
      ".SH SYNOPSIS\n.B fabscan\n.I SUBCOMMAND\n[\\fIOPTIONS\\fR]\n.br\n.B fabscan \\-\\-version\n";
  page += fmt::format(".SH DESCRIPTION\n{}\n", Escaped(line.app.get_description()));
  page += ".SH SUBCOMMANDS\n";
  std::string pages;
  for (const CLI::App* subcommand : SubcommandsOf(line.app)) {
    page += Tagged(fmt::format(".B {}", subcommand->get_name()), subcommand->get_description());
    pages +=
        fmt::format("{}.BR fabscan\\-{} (1)", pages.empty() ? "" : ",\n", subcommand->get_name());
  }
  page += ".SH EXIT STATUS\n";
  for (const auto& [status, text] : kExitStatuses) page += Tagged(std::to_string(status), text);
  page += fmt::format(".SH ENVIRONMENT\n{}{}", Tagged(".B NO_COLOR", "If set, disables colours."),
                      Tagged(".B TMPDIR", "Directory for temporary files."));
  return page + ".SH SEE ALSO\n" + pages + '\n';
}

std::string ManualPage(const CLI::App& subcommand) {
  return Head("fabscan-" + subcommand.get_name(), subcommand.get_description()) +
         Synopsis(subcommand) + Options(subcommand) + Notes(subcommand) +
         ".SH EXIT STATUS\nSee\n.BR fabscan (1).\n.SH SEE ALSO\n.BR fabscan (1)\n";
}

}  // namespace fabscan
