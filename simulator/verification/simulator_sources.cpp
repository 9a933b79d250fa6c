#include "simulator_sources.h"

#include <algorithm>
#include <stdexcept>

namespace fabscan {

namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string Transformed(std::string text, char (*change)(char)) {
  std::transform(text.begin(), text.end(), text.begin(), change);
  return text;
}

}  // namespace

std::string LowerCase(std::string text) { return Transformed(std::move(text), Lower); }

std::string_view SimulatorSourceText(std::string_view path) {
  for (const SimulatorSource* source = kSimulatorSources; source->path != nullptr; ++source) {
    if (path == source->path) return source->text;
  }
  throw std::logic_error("no such simulator source: " + std::string(path));
}

std::string DeviceSource(std::string_view example_path, const std::string& prefix) {
  const std::pair<std::string_view, std::string> names[] = {
      {"Example", prefix},
      {"example", Transformed(prefix, Lower)},
      {"EXAMPLE", Transformed(prefix, Upper)},
  };
  std::string_view rest = SimulatorSourceText(example_path);
  std::string text;
  while (!rest.empty()) {
    const auto* name = std::find_if(std::begin(names), std::end(names), [rest](const auto& pair) {
      return rest.substr(0, pair.first.size()) == pair.first;
    });
    if (name == std::end(names)) {
      text += rest.front();
      rest.remove_prefix(1);
    } else {
      text += name->second;
      rest.remove_prefix(name->first.size());
    }
  }
  return text;
}

}  // namespace fabscan
