#include "packaging/reference/options.h"

#include <algorithm>
#include <string_view>

namespace fabscan {

std::vector<const CLI::App*> SubcommandsOf(const CLI::App& app) {
  return app.get_subcommands(static_cast<std::function<bool(const CLI::App*)>>(nullptr));
}

std::vector<const CLI::Option*> PositionalsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<const CLI::Option*> NamedOptionsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) {
    return option->nonpositional() && !option->get_group().empty();
  });
}

std::vector<std::string> NamesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back('-' + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

bool TakesValue(const CLI::Option& option) { return option.get_type_size() > 0; }

std::string ValueWord(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return type.substr(0, type.find(':'));
}

ValueKind KindOfValue(const CLI::Option& option) {
  constexpr std::string_view kFiles[] = {"FILE", "SNAPSHOT", "CXX"};
  const std::string word = ValueWord(option);
  if (word == "DIR") return ValueKind::kFolder;
  const bool file = std::find(std::begin(kFiles), std::end(kFiles), word) != std::end(kFiles);
  return file || NamesOf(option).back() == "--output" ? ValueKind::kFile : ValueKind::kOther;
}

}  // namespace fabscan
