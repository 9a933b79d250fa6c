#include "simulator/verification/simulator_sources.h"

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

std::string Replaced(std::string_view text, const std::vector<Replacement>& replacements) {
  std::string replaced;
  while (!text.empty()) {
    const auto found = std::find_if(
        replacements.begin(), replacements.end(),
        [text](const auto& entry) { return text.substr(0, entry.first.size()) == entry.first; });
    if (found == replacements.end()) {
      replaced += text.front();
      text.remove_prefix(1);
    } else {
      replaced += found->second;
      text.remove_prefix(found->first.size());
    }
  }
  return replaced;
}

std::string DeviceSource(std::string_view example_path, const std::string& prefix) {
  return Replaced(SimulatorSourceText(example_path), {{"Example", prefix},
                                                      {"example", Transformed(prefix, Lower)},
                                                      {"EXAMPLE", Transformed(prefix, Upper)}});
}

}  // namespace fabscan
