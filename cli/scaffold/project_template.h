#ifndef FABSCAN_CLI_PROJECT_TEMPLATE_H
#define FABSCAN_CLI_PROJECT_TEMPLATE_H

#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// A device of a project, as its templates name it.
struct ProjectDevice {
  std::string prefix;      // MyDev_SW_d2f0
  std::string directory;   // mydev_sw_d2f0
  std::string class_name;  // SW
  std::string node;        // the node's name, for a comment
  unsigned last_port = 0;
};

/// The template, with each line that contains @prefix@, @directory@, @class@, @node@ or @ports@
/// repeated for each device.
std::string FillTemplate(std::string_view text, const std::vector<ProjectDevice>& devices);

}  // namespace fabscan

#endif
