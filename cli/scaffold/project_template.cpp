#include "project_template.h"

#include <algorithm>
#include <utility>

namespace fabscan {

namespace {

/// The line with the device's words in its holes.
std::string Filled(std::string_view line, const ProjectDevice& device) {
  const std::pair<std::string_view, std::string> holes[] = {
      {"@prefix@", device.prefix},
      {"@directory@", device.directory},
      {"@class@", device.class_name},
      {"@node@", device.node},
      {"@ports@", std::to_string(device.last_port)},
  };
  std::string text;
  while (!line.empty()) {
    const auto* hole = std::find_if(std::begin(holes), std::end(holes), [line](const auto& entry) {
      return line.substr(0, entry.first.size()) == entry.first;
    });
    if (hole == std::end(holes)) {
      text += line.front();
      line.remove_prefix(1);
    } else {
      text += hole->second;
      line.remove_prefix(hole->first.size());
    }
  }
  return text;
}

}  // namespace

std::string FillTemplate(std::string_view text, const std::vector<ProjectDevice>& devices) {
  std::string filled;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end == text.npos ? end : end + 1);
    text.remove_prefix(line.size());
    if (line.find('@') == line.npos) {
      filled += line;
    } else {
      for (const ProjectDevice& device : devices) filled += Filled(line, device);
    }
  }
  return filled;
}

}  // namespace fabscan
