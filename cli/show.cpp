#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <set>
#include <string>

#include "command.h"
#include "guid_options.h"
#include "read_limits.h"
#include "read_snapshot.h"
#include "show_report.h"
#include "standard_streams.h"

namespace fabscan {

namespace {

struct ShowOptions {
  std::string snapshot;
  GuidOptions guids;
  bool json = false;
  SnapshotReadOptions reading;
};

ExitStatus Show(const ShowOptions& options) {
  const std::set<u_int64_t> chosen = options.guids.Read();
  Fabscan fabscan;
  ShownSnapshot shown{options.snapshot,
                      ReadSnapshotWithProgress(options.snapshot, fabscan, options.reading, chosen),
                      fabscan,
                      {}};

  const std::set<u_int64_t> found = WarnOfUnknown(chosen, fabscan.discovered_fabric);
  if (!chosen.empty() && found.empty()) {
    throw CommandError(fmt::format("{}: no node to show: none has a chosen GUID; choose others",
                                   InputName(options.snapshot)));
  }
  for (const auto& entry : fabscan.discovered_fabric.NodeByName) {
    const IBNode* node = entry.second;
    if (chosen.empty() || found.count(node->guid) != 0) shown.nodes.push_back(node);
  }

  const Terminal terminal = StandardOutput();
  if (options.json) {
    ShowJson(shown);
  } else if (chosen.empty()) {
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
  options->guids.AddTo(app);
  app.add_flag("--json", options->json, "Print one JSON object");
  AddReadLimits(app, options->reading);
  app.footer(
      "Without --guid, a line a node and what was collected in all; with it, all of these nodes, "
      "port by port.\n"
      "Example: the ports of one switch, and what was collected of each\n"
      "  fabscan show fabric.jsonl --guid 0x2c90000000001");
  return [options] { return Show(*options); };
}

}  // namespace fabscan
