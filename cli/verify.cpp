#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <exception>
#include <iostream>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <thread>
#include <utility>

#include "cli/command.h"
#include "cli/files/read_limits.h"
#include "cli/files/standard_streams.h"
#include "cli/output/report.h"
#include "cli/selection/node_selection.h"
#include "cli/selection/selected_nodes.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/termination.h"
#include "cli/verify/verify_directory.h"
#include "cli/verify/verify_report.h"
#include "fabrics/device_models.h"
#include "fabrics/natural_order.h"
#include "simulator/verification/process.h"
#include "simulator/verification/verification.h"

namespace fabscan {

namespace {

constexpr unsigned kMostJobs = 1024;

struct VerifyOptions {
  std::string snapshot;
  NodeSelection nodes;
  Compiler compiler;
  std::string keep;
  bool buildable = false;
  unsigned jobs = std::max(1U, std::thread::hardware_concurrency());
  SnapshotReadOptions reading;
};

void PrintDetails(const std::vector<std::string>& lines) {
  for (const std::string& line : lines) PrintMessage("  " + WithoutControls(line) + '\n');
}

/// Verifies nodes on several threads; each thread compiles and runs its own program.
class Run {
 public:
  Run(Fabscan& fabscan, const Workspace& workspace, const std::vector<const IBNode*>& nodes)
      : fabscan_(fabscan), workspace_(workspace), verified_(nodes.size()) {
    for (std::size_t i = 0; i < nodes.size(); ++i) verified_[i].node = nodes[i];
  }

  const std::vector<VerifiedNode>& Verify(unsigned jobs) {
    Progress progress;
    progress.Watch(
        "nodes verified", verified_.size(), [this] { return done_.load(); },
        [&] { WorkOnThreads(std::min<std::size_t>(jobs, verified_.size())); });
    if (failure_) std::rethrow_exception(failure_);
    progress.Show("nodes verified", done_, verified_.size());
    return verified_;
  }

 private:
  /// On `count` threads with this one, or on fewer if the system does not start as many.
  void WorkOnThreads(std::size_t count) {
    std::vector<std::thread> threads;
    threads.reserve(count);
    try {
      while (threads.size() + 1 < count) threads.emplace_back([this] { work(); });
    } catch (const std::exception&) {  // continue with the threads that were started
    }
    work();
    for (std::thread& thread : threads) thread.join();
  }

  void work() noexcept {
    try {
      for (std::size_t i = next_++; i < verified_.size(); i = next_++) {
        VerifyNode(verified_[i]);
        ++done_;
      }
    } catch (...) {
      const std::lock_guard lock(mutex_);
      if (!failure_) failure_ = std::current_exception();
      next_ = verified_.size();
    }
  }

  void VerifyNode(VerifiedNode& verified) {
    try {
      const GeneratedSource source = generate(*verified.node);
      const std::string program = "verify_" + source.prefix;
      verified.report = fabscan::Verify(workspace_, program, fabscan_, {source}).front();
    } catch (const VerificationError& error) {
      verified.failure = error.what();
      verified.failure_details = error.details();
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      verified.failure = error.what();
    }
  }

  GeneratedSource generate(const IBNode& node) {
    const std::lock_guard lock(mutex_);
    return Generate(workspace_, fabscan_, node, fmt::format("Node{:x}", node.guid));
  }

  Fabscan& fabscan_;
  const Workspace& workspace_;
  std::vector<VerifiedNode> verified_;
  std::atomic<std::size_t> next_{0};
  std::atomic<std::size_t> done_{0};
  std::mutex mutex_;            // of the generator and of `failure_`
  std::exception_ptr failure_;  // the first that ended a thread
};

Workspace MakeWorkspace(const VerifyDirectory& directory, const Compiler& compiler) {
  std::optional<Workspace> workspace;
  try {
    Progress progress;
    progress.Watch("compiling the simulator",
                   [&] { workspace.emplace(directory.path(), compiler); });
    return *std::move(workspace);
  } catch (const VerificationError& error) {
    PrintDetails(error.details());
    throw CommandError(error.what());
  }
}

ExitStatus Verify(const VerifyOptions& options) {
  const VerifyDirectory directory(options.keep);
  const CleanupAtTermination processes(EndProcesses);
  Fabscan fabscan;
  const std::set<u_int64_t> guids = options.nodes
                                        .Read(options.snapshot, fabscan, options.reading,
                                              {"verify", NodeScope::kSubFabric, Unmatched::kRefuse})
                                        .guids;
  std::vector<const IBNode*> nodes = options.nodes.ByGuid()
                                         ? SelectedNodes(fabscan.discovered_fabric, guids)
                                         : RepresentativeNodes(fabscan, guids);
  SortNaturally(nodes);

  const Workspace workspace = MakeWorkspace(directory, options.compiler);
  Run run(fabscan, workspace, nodes);
  VerifyTotals totals;
  for (const VerifiedNode& node : run.Verify(options.jobs)) {
    totals.Add(node);
    std::cout << ReportText(node, StandardOutput()) << '\n';
  }
  std::cout << totals.text();

  if (totals.failed != 0) {
    throw CommandError(
        fmt::format("{}: {} of {} nodes could not be verified; the report gives the reasons",
                    InputName(options.snapshot), totals.failed, totals.nodes));
  }
  if (totals.differences != 0) {
    throw CommandError(fmt::format("{}: {} fields of simulated nodes differ; the report lists them",
                                   InputName(options.snapshot), totals.differences),
                       kIncomplete);
  }
  if (!options.buildable && (totals.with_error_lines != 0 || totals.edited != 0)) {
    throw CommandError(
        fmt::format("{}: all values agree, but not every generated file compiles as written; the "
                    "report lists the lines; use --buildable to accept them, as 'dump "
                    "--buildable' and 'scaffold' do",
                    InputName(options.snapshot)),
        kIncomplete);
  }
  return kDone;
}

}  // namespace

std::function<ExitStatus()> AddVerify(CLI::App& app) {
  const auto options = std::make_shared<VerifyOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  options->nodes.AddTo(app);
  app.add_option("--compiler", options->compiler.command, "The C++ compiler (default: c++)")
      ->type_name("CXX");
  app.add_option("--std", options->compiler.standard, "The C++ standard (default: c++17)")
      ->type_name("STANDARD");
  app.add_flag("--buildable", options->buildable,
               "Accept lines that do not compile as written: verify them with the edits of 'dump "
               "--buildable' and 'scaffold'");
  app.add_option("--keep", options->keep,
                 "Keep all compiled files in this directory, which must be new or empty")
      ->type_name("DIR");
  app.add_option("--jobs", options->jobs, "Number of nodes to compile in parallel")
      ->type_name("COUNT")
      ->check(CLI::Range(1U, kMostJobs).description(""));
  AddReadLimits(app, options->reading);
  app.footer(
      "Without --guid, verifies one of the selected nodes of each device model.\n"
      "Example: verify one switch with another compiler\n"
      "  fabscan verify fabric.jsonl --guid 0x5a1e0c0000000200 --compiler clang++");
  return [options] { return Verify(*options); };
}

}  // namespace fabscan
