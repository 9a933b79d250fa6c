#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/command.h"
#include "cli/files/snapshot_output.h"
#include "cli/output/discovery_report.h"
#include "cli/output/report.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/termination.h"
#include "discovery/fabric_builder.h"
#include "discovery/live/live_discovery.h"

namespace fabscan {

namespace {

struct DiscoverOptions {
  LiveOptions live;
  SnapshotOutputOptions output;
};

ExitStatus Discover(const DiscoverOptions& options) {
  StagedOutput output(options.output.path, options.output.force);
  InterruptRequest interrupt;
  Progress progress;

  LiveOptions live = options.live;
  live.stopped = [&interrupt] { return interrupt.received(); };
  live.progress = [&progress](const std::string& what, std::size_t done, std::size_t total) {
    progress.Show(what, done, total);
  };
  LiveFindings found;
  try {
    found = DiscoverLive(live);
  } catch (const DiscoveryError& error) {
    progress.Finish();
    throw CommandError(error.what());
  }
  progress.Finish();

  Fabscan fabscan;
  const DiscoveryReport report = BuildFabric(found.fabric, fabscan);
  WriteFabric(output, fabscan, {"fabscan discover, " + found.where, CurrentTime(), ""});
  ExitStatus status = Tell(report, output.path());
  if (report.nodes == 1) {
    PrintWarning(
        fmt::format("only this host's adapter was found; does {} have a link?", found.where));
    status = kIncomplete;
  }
  if (found.stopped) {
    PrintWarning("interrupted; the snapshot contains what was read so far");
    status = kIncomplete;
  }
  output.Commit();
  return status;
}

}  // namespace

std::function<ExitStatus()> AddDiscover(CLI::App& app) {
  const auto options = std::make_shared<DiscoverOptions>();
  options->output.AddTo(app, "SNAPSHOT");
  app.add_option("-C", options->live.channel_adapter,
                 "Local adapter to send queries from (default: the first with a link)")
      ->type_name("CA");
  app.add_option("-P", options->live.port, "Port of that adapter (default: the first with a link)")
      ->check(CLI::Range(1, 254))
      ->type_name("PORT");
  app.add_option("--timeout-ms", options->live.timeout_ms,
                 "Timeout for each answer, in milliseconds")
      ->check(CLI::Range(1, 600000))
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--retries", options->live.retries,
                 "Retries of a query without an answer; the scan itself retries at least once")
      ->check(CLI::Range(0, 100))
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--outstanding", options->live.outstanding,
                 "Maximum number of outstanding queries of the scan")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str()
      ->type_name("N");
  app.add_flag("--keep-partial", options->live.keep_partial,
               "On Ctrl-C, write what was read so far; makes the scan slower");
  app.footer(
      "Sends only Get queries: nothing in the fabric is changed. Exits 3 if the snapshot is "
      "incomplete.\n"
      "Example: the fabric behind port 1 of adapter ibp1s0\n"
      "  fabscan discover -C ibp1s0 -P 1 --output fabric.jsonl");
  return [options] { return Discover(*options); };
}

}  // namespace fabscan
