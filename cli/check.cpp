#include <fmt/format.h>
#include <snapshot.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <set>
#include <string>

#include "check_report.h"
#include "check_result.h"
#include "command.h"
#include "generated_nodes.h"
#include "guid_options.h"

namespace fabscan {

namespace {

struct CheckOptions {
  std::string snapshot;
  GuidOptions guids;
  bool json = false;
};

ExitStatus Check(const CheckOptions& options) {
  const std::set<u_int64_t> chosen = options.guids.Read();
  Fabscan fabscan;
  SnapshotReadOptions read_options;
  if (!chosen.empty()) read_options.guids = &chosen;
  ReadSnapshot(options.snapshot, fabscan, read_options);

  const std::set<u_int64_t> found = WarnOfMissing(chosen, fabscan.discovered_fabric);
  CheckResult result;
  if (chosen.empty() || !found.empty()) {
    ForEachGeneratedNode(fabscan, found, [&](const IBNode& node, const GeneratedNode& generated) {
      result.Add(node, generated);
    });
  }
  if (result.nodes().empty()) {
    throw CommandError(fmt::format(
        "{}: no node to check: {}", options.snapshot,
        chosen.empty() ? "none is in the sub-fabric; choose another snapshot"
                       : "none of the chosen GUIDs is in the sub-fabric; choose others"));
  }

  if (options.json) {
    PrintCheckJson(result, options.snapshot);
  } else {
    std::cout << CheckText(result, options.snapshot, StandardOutput());
  }
  return result.Builds() ? kDone : kIncomplete;
}

}  // namespace

std::function<ExitStatus()> AddCheck(CLI::App& app) {
  const auto options = std::make_shared<CheckOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  options->guids.AddTo(app);
  app.add_flag("--json", options->json, "Print one JSON object");
  app.footer(
      "Generates the nodes as one file, which is not kept, and says what is in it. Exit status: 0 "
      "when\n"
      "it would build, 3 when not.\n"
      "Example: what would be missing of one switch\n"
      "  fabscan check fabric.jsonl --guid 0x2c90000000001");
  return [options] { return Check(*options); };
}

}  // namespace fabscan
