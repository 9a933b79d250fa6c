#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstddef>
#include <memory>
#include <string>

#include "cli/command.h"
#include "cli/files/snapshot_output.h"
#include "cli/files/standard_streams.h"
#include "cli/output/discovery_report.h"
#include "cli/terminal/progress.h"
#include "discovery/cache_file.h"
#include "discovery/cache_reader.h"
#include "discovery/fabric_builder.h"

namespace fabscan {

namespace {

struct ImportOptions {
  std::string cache;
  SnapshotOutputOptions output;
};

CacheFindings ReadFindings(const std::string& cache) {
  Progress progress;
  const std::string what = "reading " + InputName(cache);
  try {
    return ReadCacheFile(cache, [&](std::size_t done, std::size_t total) {
      progress.Show(what, done, total, Unit::kBytes);
    });
  } catch (const CacheError& error) {
    throw CommandError(error.what());
  }
}

ExitStatus Import(const ImportOptions& options) {
  StagedOutput output(options.output.path, options.output.force);
  const CacheFindings findings = ReadFindings(options.cache);
  DiscoveryReport report;
  WriteFabric(output, {"fabscan import of a discovery cache", "", ""}, [&](SnapshotWriter& writer) {
    Progress progress;
    const auto show = [&](std::size_t nodes) {
      progress.Show("nodes written", nodes, findings.NodeCount());
    };
    report = BuildFabricInParts(findings, kPortsOfAPart,
                                [&](const Fabscan& part) { writer.Write(part, show); });
  });
  const ExitStatus status = Tell(report, output.path());
  output.Commit();
  return status;
}

}  // namespace

std::function<ExitStatus()> AddImport(CLI::App& app) {
  const auto options = std::make_shared<ImportOptions>();
  app.add_option("CACHE", options->cache,
                 "The file that ibnetdiscover --cache wrote; - is standard input")
      ->required();
  options->output.AddTo(app, "SNAPSHOT");
  app.footer(
      "A cache lacks PortInfoExtended, and the unconnected ports of adapters. Exits 3 if the "
      "snapshot is incomplete.\n"
      "Example:\n"
      "  ibnetdiscover --cache fabric.cache > /dev/null\n"
      "  fabscan import fabric.cache --output fabric.jsonl");
  return [options] { return Import(*options); };
}

}  // namespace fabscan
