#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "command.h"
#include "natural_order.h"
#include "node_selection.h"
#include "read_limits.h"
#include "show_report.h"
#include "standard_streams.h"

namespace fabscan {

namespace {

struct ShowOptions {
  std::string snapshot;
  NodeSelection nodes;
  bool json = false;
  SnapshotReadOptions reading;
};

ExitStatus Show(const ShowOptions& options) {
  Fabscan fabscan;
  const SelectedSnapshot selected = options.nodes.Read(options.snapshot, fabscan, options.reading,
                                                       {"show", NodeScope::kWholeFabric});
  ShownSnapshot shown{options.snapshot, selected.header, fabscan, {}};
  for (const IBNode* node : NodesInNaturalOrder(fabscan.discovered_fabric)) {
    if (selected.Has(*node)) shown.nodes.push_back(node);
  }

  const Terminal terminal = StandardOutput();
  if (options.json) {
    ShowJson(shown);
  } else if (selected.guids.empty()) {
    std::cout << ShowSummary(shown, terminal);
  } else {
    for (const IBNode* node : shown.nodes) {
      std::cout << (node == shown.nodes.front() ? "" : "\n") << ShowNode(fabscan, *node, terminal);
    }
  }
  return kDone;
}

}  // namespace

std::function<ExitStatus()> AddShow(CLI::App& app) {
  const auto options = std::make_shared<ShowOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  options->nodes.AddTo(app);
  app.add_flag("--json", options->json, "Print one JSON object");
  AddReadLimits(app, options->reading);
  app.footer(
      "Without --guid, a line a node and what was collected in all; with it, all of these nodes, "
      "port by port.\n"
      "Example: the ports of one switch, and what was collected of each\n"
      "  fabscan show fabric.jsonl --guid 0x5a1e0c0000000200");
  return [options] { return Show(*options); };
}

}  // namespace fabscan
