#include <cache_file.h>
#include <cache_reader.h>
#include <fabric_builder.h>
#include <fmt/format.h>
#include <snapshot.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "command.h"
#include "discovery_report.h"
#include "staged_output.h"

namespace fabscan {

namespace {

struct ImportOptions {
  std::string cache;
  std::string output;
  bool force = false;
};

ExitStatus Import(const ImportOptions& options) {
  StagedOutput output(options.output, options.force);
  Fabscan fabscan;
  DiscoveryReport report;
  try {
    report = BuildFabric(ReadCacheFile(options.cache), fabscan);
  } catch (const CacheError& error) {
    throw CommandError(error.what());
  }
  WriteSnapshot(output.stream(), fabscan, {"fabscan import of a discovery cache", ""});
  output.Commit();
  return Tell(report, output.path());
}

}  // namespace

std::function<ExitStatus()> AddImport(CLI::App& app) {
  const auto options = std::make_shared<ImportOptions>();
  app.add_option("CACHE", options->cache,
                 "The cache that ibnetdiscover --cache wrote; - is standard input")
      ->required();
  app.add_option("--output", options->output, "The snapshot to write; - is standard output")
      ->required()
      ->type_name("SNAPSHOT");
  app.add_flag("--force", options->force, "Replace a file that exists");
  app.footer(
      "A cache lacks PortInfoExtended, and the unconnected ports of adapters. Exits 3 when the "
      "fabric was read in part.\n"
      "Example:\n"
      "  ibnetdiscover --cache fabric.cache > /dev/null\n"
      "  fabscan import fabric.cache --output fabric.jsonl");
  return [options] { return Import(*options); };
}

}  // namespace fabscan
