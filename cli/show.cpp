#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/files/read_limits.h"
#include "cli/files/standard_streams.h"
#include "cli/selection/node_selection.h"
#include "cli/show/show_report.h"
#include "fabrics/natural_order.h"

namespace fabscan {

namespace {

struct ShowOptions {
  std::string snapshot;
  NodeSelection nodes;
  bool json = false;
  bool summary = false;
  bool values = false;
  bool topology = false;
  std::optional<unsigned> port;
  SnapshotReadOptions reading;
};

void PrintValues(const ShownSnapshot& shown, const std::optional<unsigned>& port) {
  std::vector<const IBNode*> nodes;
  std::copy_if(shown.nodes.begin(), shown.nodes.end(), std::back_inserter(nodes),
               [&port](const IBNode* node) {
                 return !port || node->getPort(static_cast<phys_port_t>(*port)) != nullptr;
               });
  if (nodes.empty() && port) {
    throw CommandError(fmt::format("{}: no node to show: none has a port {}; use another port",
                                   InputName(shown.path), *port));
  }
  for (const IBNode* node : nodes) {
    std::cout << (node == nodes.front() ? "" : "\n")
              << ShowValues(shown.fabscan, *node, port, StandardOutput());
  }
}

void PrintText(const ShownSnapshot& shown, const ShowOptions& options, bool all) {
  const Terminal terminal = StandardOutput();
  if (all || options.summary) {
    std::cout << ShowHead(shown, terminal);
    if (shown.nodes.empty()) return;
    std::cout << '\n' << (options.summary ? ShowModels : ShowNodes)(shown, terminal);
    return;
  }
  for (const IBNode* node : shown.nodes) {
    std::cout << (node == shown.nodes.front() ? "" : "\n")
              << ShowNode(shown.fabscan, *node, terminal);
  }
}

ExitStatus Show(const ShowOptions& options) {
  Fabscan fabscan;
  const SelectedSnapshot selected = options.nodes.Read(options.snapshot, fabscan, options.reading,
                                                       {"show", NodeScope::kWholeFabric});
  ShownSnapshot shown{options.snapshot, selected.header, fabscan, {}};
  for (const IBNode* node : NodesInNaturalOrder(fabscan.discovered_fabric)) {
    if (selected.Has(*node)) shown.nodes.push_back(node);
  }

  if (options.topology) {
    std::cout << ShowHead(shown, StandardOutput()) << '\n'
              << ShowTopology(fabscan, StandardOutput());
  } else if (options.json) {
    ShowJson(shown);
  } else if (options.values) {
    PrintValues(shown, options.port);
  } else {
    PrintText(shown, options, selected.guids.empty());
  }
  return kDone;
}

}  // namespace

std::function<ExitStatus()> AddShow(CLI::App& app) {
  const auto options = std::make_shared<ShowOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  options->nodes.AddTo(app);
  CLI::Option* json = app.add_flag("--json", options->json, "Print one JSON object");
  CLI::Option* summary = app.add_flag("--summary", options->summary,
                                      "Print one line per device model, and the totals");
  CLI::Option* values = app.add_flag("--values", options->values,
                                     "Print the collected values of the nodes and their ports");
  CLI::Option* topology =
      app.add_flag("--topology", options->topology,
                   "Print the levels of the fabric, its groups of switches, and the links between "
                   "them");
  app.add_option("--port", options->port, "With --values, print only this port")
      ->check(CLI::Range(0, 255).description(""))
      ->needs(values)
      ->type_name("N");
  json->excludes(summary)->excludes(values);
  summary->excludes(values);
  topology->excludes(json)->excludes(summary)->excludes(values);
  AddReadLimits(app, options->reading);
  app.footer(
      "Without --guid, prints one line per node, and totals; with it, prints each of these nodes "
      "port by port.\n"
      "Examples: the ports of one switch, with their collected attributes\n"
      "  fabscan show fabric.jsonl --guid 0x5a1e0c0000000200\n"
      "The collected values of one port\n"
      "  fabscan show fabric.jsonl --guid 0x5a1e0c0000000200 --values --port 3\n"
      "A large fabric, by device model\n"
      "  fabscan show fabric.jsonl --summary");
  return [options] { return Show(*options); };
}

}  // namespace fabscan
