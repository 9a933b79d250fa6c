#include "cli/scaffold/project_template.h"

#include "simulator/verification/simulator_sources.h"

namespace fabscan {

namespace {

std::vector<Replacement> HolesOf(const ProjectDevice& device) {
  return {{"@prefix@", device.prefix},
          {"@directory@", device.directory},
          {"@class@", device.class_name},
          {"@node@", device.node},
          {"@ports@", std::to_string(device.last_port)}};
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
      for (const ProjectDevice& device : devices) filled += Replaced(line, HolesOf(device));
    }
  }
  return filled;
}

}  // namespace fabscan
