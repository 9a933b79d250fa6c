#ifndef FABSCAN_CLI_SHOW_REPORT_H
#define FABSCAN_CLI_SHOW_REPORT_H

#include <infiniband/fabscan/fabscan.h>

#include <optional>
#include <string>
#include <vector>

#include "cli/terminal/terminal.h"
#include "snapshot/snapshot.h"

namespace fabscan {

/// What is shown of a snapshot.
struct ShownSnapshot {
  std::string path;
  SnapshotHeader header;
  const Fabscan& fabscan;
  std::vector<const IBNode*> nodes;
};

/// For people: a summary of the nodes.
std::string ShowHead(const ShownSnapshot& shown, const Terminal& terminal);
/// One line per node, how often each attribute was collected, and why attributes are absent.
std::string ShowNodes(const ShownSnapshot& shown, const Terminal& terminal);
/// The same with one line per device model.
std::string ShowModels(const ShownSnapshot& shown, const Terminal& terminal);
/// All details of one node, port by port.
std::string ShowNode(const Fabscan& fabscan, const IBNode& node, const Terminal& terminal);
/// The collected values of one node and its ports, or of one port.
std::string ShowValues(const Fabscan& fabscan, const IBNode& node,
                       const std::optional<unsigned>& port, const Terminal& terminal);
/// Levels, groups of switches that are alike, and links between levels; at most 40 lines.
std::string ShowTopology(const Fabscan& fabscan, const Terminal& terminal);
/// One JSON object on standard output.
void ShowJson(const ShownSnapshot& shown);

}  // namespace fabscan

#endif
