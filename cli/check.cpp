#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <set>
#include <string>

#include "check_page.h"
#include "check_report.h"
#include "check_result.h"
#include "command.h"
#include "generated_nodes.h"
#include "node_selection.h"
#include "read_limits.h"
#include "selected_nodes.h"
#include "staged_output.h"
#include "standard_streams.h"

namespace fabscan {

namespace {

struct CheckOptions {
  std::string snapshot;
  NodeSelection nodes;
  bool json = false;
  std::string html;
  bool force = false;
  SnapshotReadOptions reading;
};

/// The page, and what it was made of in few words where standard output is free for them.
void WritePage(const CheckPage& page, const CheckResult& result, const CheckOptions& options,
               StagedOutput& output) {
  page.Write(output.stream(), result, InputName(options.snapshot));
  output.Commit();
  if (options.json || IsStandardStream(options.html)) return;
  const Terminal terminal = StandardOutput();
  std::cout << options.html << '\n' << TotalsText(result, InputName(options.snapshot), terminal);
}

ExitStatus Check(const CheckOptions& options) {
  if (IsStandardStream(options.html) && options.json) {
    throw CommandError("--html - and --json both want standard output; name a file", kWrongUsage);
  }
  std::unique_ptr<StagedOutput> output;
  if (!options.html.empty()) {
    output = std::make_unique<StagedOutput>(options.html, options.force);
  }
  Fabscan fabscan;
  const std::set<u_int64_t> guids =
      options.nodes.Read(options.snapshot, fabscan, options.reading, {"check"}).guids;
  CheckResult result;
  CheckPage page;
  ForEachGeneratedNode(fabscan, guids, [&](const IBNode& node, const GeneratedNode& generated) {
    result.Add(node, generated);
    if (output) page.Add(node, generated);
  });
  if (guids.empty()) result.LeaveOut(NodesOutside(fabscan.discovered_fabric));

  if (output) WritePage(page, result, options, *output);
  if (options.json) {
    PrintCheckJson(result, options.snapshot);
  } else if (!output) {
    std::cout << CheckText(result, InputName(options.snapshot), StandardOutput());
  }
  return result.Builds() ? kDone : kIncomplete;
}

}  // namespace

std::function<ExitStatus()> AddCheck(CLI::App& app) {
  const auto options = std::make_shared<CheckOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  options->nodes.AddTo(app);
  app.add_flag("--json", options->json, "Print one JSON object");
  app.add_option("--html", options->html,
                 "Write a page for a browser instead: the matrix of nodes and functions, with the "
                 "text of each; one file that needs no network; - is standard output")
      ->type_name("FILE");
  app.add_flag("--force", options->force, "Replace a page that exists");
  AddReadLimits(app, options->reading);
  app.footer(
      "Generates the nodes as one file, which is not kept, and says what is in it. Exit status: 0 "
      "when it would build, 3 when not.\n"
      "Examples: what would be missing of one switch\n"
      "  fabscan check fabric.jsonl --guid 0x2c90000000001\n"
      "The whole fabric, to look around in\n"
      "  fabscan check fabric.jsonl --html check.html");
  return [options] { return Check(*options); };
}

}  // namespace fabscan
