#ifndef FABSCAN_CLI_SHOW_REPORT_H
#define FABSCAN_CLI_SHOW_REPORT_H

#include <infiniband/fabscan/fabscan.h>
#include <snapshot.h>

#include <string>
#include <vector>

#include "terminal.h"

namespace fabscan {

/// What is shown of a snapshot.
struct ShownSnapshot {
  std::string path;
  SnapshotHeader header;
  const Fabscan& fabscan;
  std::vector<const IBNode*> nodes;
};

/// For people: a line a node, how often each attribute was collected, and why some were not.
std::string ShowSummary(const ShownSnapshot& shown, const Terminal& terminal);
/// For people: all of one node, port by port.
std::string ShowNode(const Fabscan& fabscan, const IBNode& node, const Terminal& terminal);
/// One JSON object on standard output.
void ShowJson(const ShownSnapshot& shown);

}  // namespace fabscan

#endif
