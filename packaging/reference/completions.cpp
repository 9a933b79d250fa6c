#include "packaging/reference/completions.h"

#include <fmt/format.h>

#include <vector>

#include "packaging/reference/options.h"

namespace fabscan {

namespace {

constexpr char kBash[] = R"(# bash completion of fabscan
_fabscan() {{
  local word=${{COMP_WORDS[COMP_CWORD]}} previous=${{COMP_WORDS[COMP_CWORD-1]}}
  local options= files= directories= others=
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W "{} --help --version" -- "$word")
    return
  fi
  case ${{COMP_WORDS[1]}} in
{}  esac
  if [[ " $directories " == *" $previous "* ]]; then
    mapfile -t COMPREPLY < <(compgen -d -- "$word")
  elif [[ " $others " == *" $previous "* ]]; then
    return
  elif [[ $word == -* && " $files " != *" $previous "* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}}
complete -o filenames -F _fabscan fabscan
)";

constexpr char kZsh[] = R"(#compdef fabscan
_fabscan() {{
  local -a subcommands
  subcommands=(
{}  )
  if (( CURRENT == 2 )); then
    _describe subcommand subcommands
    return
  fi
  local subcommand=$words[2]
  shift words
  (( CURRENT-- ))
  case $subcommand in
{}  esac
}}
if [ "$funcstack[1]" = _fabscan ]; then
  _fabscan "$@"
else
  compdef _fabscan fabscan
fi
)";

std::string Joined(const std::vector<std::string>& words) {
  std::string joined;
  for (const std::string& word : words) joined += (joined.empty() ? "" : " ") + word;
  return joined;
}

void Append(std::vector<std::string>& words, const std::vector<std::string>& more) {
  words.insert(words.end(), more.begin(), more.end());
}

/// Escapes each character of `special` with a backslash.
std::string Escaped(const std::string& text, std::string_view special) {
  std::string escaped;
  for (const char c : text) {
    if (special.find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

/// The text in single quotes.
std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

std::string BashCase(const CLI::App& subcommand) {
  std::vector<std::string> options;
  std::vector<std::string> of_kind[3];
  for (const CLI::Option* option : NamedOptionsOf(subcommand)) {
    Append(options, NamesOf(*option));
    if (!TakesValue(*option)) continue;
    Append(of_kind[static_cast<std::size_t>(KindOfValue(*option))], NamesOf(*option));
  }
  return fmt::format("    {}) options=\"{}\" files=\"{}\" directories=\"{}\" others=\"{}\" ;;\n",
                     subcommand.get_name(), Joined(options), Joined(of_kind[0]), Joined(of_kind[1]),
                     Joined(of_kind[2]));
}

std::string ZshAction(const CLI::Option& option) {
  constexpr const char* kActions[] = {"_files", "_files -/", ""};
  return fmt::format(":{}:{}", ValueWord(option),
                     kActions[static_cast<std::size_t>(KindOfValue(option))]);
}

std::string ZshCase(const CLI::App& subcommand) {
  std::string arguments;
  for (const CLI::Option* option : NamedOptionsOf(subcommand)) {
    for (const std::string& name : NamesOf(*option)) {
      const std::string described =
          fmt::format("*{}[{}]{}", name, Escaped(option->get_description(), "[]\\"),
                      TakesValue(*option) ? ZshAction(*option) : "");
      arguments += fmt::format(" \\\n        {}", Quoted(described));
    }
  }
  if (!PositionalsOf(subcommand).empty()) arguments += " \\\n        '*:file:_files'";
  return fmt::format("    {})\n      _arguments{}\n      ;;\n", subcommand.get_name(), arguments);
}

std::string FishOption(const CLI::App& subcommand, const CLI::Option& option) {
  std::string names;
  for (const std::string& name : option.get_snames()) names += " -s " + name;
  for (const std::string& name : option.get_lnames()) names += " -l " + name;
  constexpr const char* kValues[] = {" -r -F", " -x -a '(__fish_complete_directories)'", " -x"};
  return fmt::format(
      "complete -c fabscan -n '__fish_seen_subcommand_from {}'{}{} -d {}\n", subcommand.get_name(),
      names, TakesValue(option) ? kValues[static_cast<std::size_t>(KindOfValue(option))] : "",
      Quoted(Escaped(option.get_description(), "\\")));
}

}  // namespace

std::string BashCompletion(const CLI::App& app) {
  std::vector<std::string> names;
  std::string cases;
  for (const CLI::App* subcommand : SubcommandsOf(app)) {
    names.push_back(subcommand->get_name());
    cases += BashCase(*subcommand);
  }
  return fmt::format(kBash, Joined(names), cases);
}

std::string ZshCompletion(const CLI::App& app) {
  std::string names;
  std::string cases;
  for (const CLI::App* subcommand : SubcommandsOf(app)) {
    names += fmt::format("    {}\n",
                         Quoted(subcommand->get_name() + ':' + subcommand->get_description()));
    cases += ZshCase(*subcommand);
  }
  return fmt::format(kZsh, names, cases);
}

std::string FishCompletion(const CLI::App& app) {
  std::string text = "# fish completion of fabscan\n";
  for (const CLI::App* subcommand : SubcommandsOf(app)) {
    text +=
        fmt::format("complete -c fabscan -n __fish_use_subcommand -f -a {} -d {}\n",
                    subcommand->get_name(), Quoted(Escaped(subcommand->get_description(), "\\")));
  }
  text += "complete -c fabscan -n __fish_use_subcommand -l version -d 'Print the version'\n";
  for (const CLI::App* subcommand : SubcommandsOf(app)) {
    for (const CLI::Option* option : NamedOptionsOf(*subcommand)) {
      text += FishOption(*subcommand, *option);
    }
  }
  return text;
}

}  // namespace fabscan
