#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "cli/check/check_report.h"
#include "cli/check/check_result.h"
#include "cli/check/expected_cabling.h"
#include "cli/command.h"
#include "cli/dump/function_body.h"
#include "cli/files/read_limits.h"
#include "cli/files/staged_output.h"
#include "cli/files/standard_streams.h"
#include "cli/page/check_page.h"
#include "cli/selection/node_selection.h"
#include "cli/selection/selected_nodes.h"
#include "cli/terminal/progress.h"

namespace fabscan {

namespace {

struct CheckOptions {
  std::string snapshot;
  NodeSelection nodes;
  bool summary = false;
  bool json = false;
  std::string html;
  std::string plan;
  bool force = false;
  SnapshotReadOptions reading;
};

/// Adds the generated functions of each node to the result, and to the page if there is one.
void Generate(Fabscan& fabscan, const std::set<u_int64_t>& guids, CheckResult& result,
              CheckPage* page) {
  const SimInfoDumpCPP dump(fabscan);
  BodyQuery query(fabscan);
  const std::vector<const IBNode*> nodes = SelectedNodes(fabscan.discovered_fabric, guids);
  Progress progress;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    progress.Show("nodes generated", i, nodes.size());
    result.Add(*nodes[i], query.Ask(*nodes[i]));
    if (page == nullptr) continue;
    std::vector<std::string> bodies;
    for (const generator::GeneratedFunction& function : generator::kGeneratedFunctions) {
      bodies.push_back(BodyText(dump, function, *nodes[i]));
    }
    page->Add(*nodes[i], bodies);
  }
  progress.Show("nodes generated", nodes.size(), nodes.size());
}

/// Writes the page, and the totals unless standard output is in use.
void WritePage(const CheckPage& page, const CheckReport& report, const CheckOptions& options,
               StagedOutput& output) {
  page.Write(output.stream(), report);
  output.Finish();
  if (options.json || IsStandardOutput(options.html)) return;
  std::cout << OutputName(options.html) << '\n' << TotalsText(report, StandardOutput());
}

ExitStatus Check(const CheckOptions& options) {
  if (!options.plan.empty()) {
    return CheckCabling(options.snapshot, options.plan, options.json, options.reading);
  }
  if (IsStandardOutput(options.html) && options.json) {
    throw CommandError(
        "--html - and --json both write to standard output; specify a file for --html",
        kWrongUsage);
  }
  std::unique_ptr<StagedOutput> output;
  if (!options.html.empty()) {
    output = std::make_unique<StagedOutput>(options.html, options.force);
  }
  Fabscan fabscan;
  const SelectedSnapshot selected =
      options.nodes.Read(options.snapshot, fabscan, options.reading, {"check"});
  const std::set<u_int64_t>& guids = selected.guids;
  CheckResult result(fabscan);
  CheckPage page;
  Generate(fabscan, guids, result, output ? &page : nullptr);
  result.SortNodes();
  if (guids.empty()) result.LeaveOut(NodesOutside(fabscan.discovered_fabric));

  const CheckReport report(result, options.snapshot, options.nodes.Words());
  if (output) WritePage(page, report, options, *output);
  if (options.json) {
    PrintCheckJson(report, options.summary ? CheckDetail::kSummary : CheckDetail::kNodes);
  } else if (!output) {
    const Terminal terminal = StandardOutput();
    std::cout << (options.summary ? SummaryText(report, terminal) : CheckText(report, terminal));
  }
  const ExitStatus status = result.Builds() && !selected.unmatched ? kDone : kIncomplete;
  if (output) output->Commit();
  return status;
}

}  // namespace

std::function<ExitStatus()> AddCheck(CLI::App& app) {
  const auto options = std::make_shared<CheckOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  options->nodes.AddTo(app);
  CLI::Option* summary =
      app.add_flag("--summary", options->summary,
                   "Report only causes, totals and the next step, without the nodes");
  app.add_flag("--json", options->json, "Print one JSON object");
  CLI::Option* html =
      app.add_option("--html", options->html,
                     "Write a page for a browser instead: a matrix of nodes and functions, with "
                     "the text of "
                     "each; a single file that needs no network; - is standard output")
          ->type_name("FILE");
  app.add_flag("--force", options->force, "Replace an existing page");
  app.add_option("--expect", options->plan,
                 "Compare the links with a plan instead: a table as 'export --format csv' writes "
                 "it, or a snapshot")
      ->excludes(summary)
      ->excludes(html)
      ->type_name("PLAN");
  AddReadLimits(app, options->reading);
  app.footer(
      "Reports what one generated file of the nodes would contain: which functions are blocks, why "
      "the others are not, and what to do next. Exit status: 0 if the file would build, 3 if "
      "not, or if a selected node is missing.\n"
      "Examples: what is missing for one switch\n"
      "  fabscan check fabric.jsonl --guid 0x5a1e0c0000000200\n"
      "A large fabric in a few lines\n"
      "  fabscan check fabric.jsonl --summary\n"
      "The whole fabric, to browse\n"
      "  fabscan check fabric.jsonl --html check.html\n"
      "The cabling, against a plan; exits 3 if it differs\n"
      "  fabscan check fabric.jsonl --expect plan.csv");
  return [options] { return Check(*options); };
}

}  // namespace fabscan
