#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <string>

#include "class_prefix.h"
#include "command.h"
#include "dump_file.h"
#include "dump_options.h"
#include "dump_summary.h"
#include "progress.h"
#include "read_limits.h"
#include "report.h"
#include "selected_nodes.h"
#include "staged_output.h"
#include "standard_streams.h"

namespace fabscan {

namespace {

void Report(const DumpOptions& options, const std::string& path, const DumpSummary& summary,
            const IBFabric& fabric, std::size_t left_out) {
  fmt::print("{}\n{}\n", path, summary.text(left_out));
  for (const std::string& line : summary.warnings(options.prefix, fabric)) PrintWarning(line);
  if (!options.strict || summary.compiles()) return;
  throw CommandError(
      fmt::format("{}: written, but does not compile: {} functions with #error, {} to finish by "
                  "hand, {} classes that several nodes define; see to them, or leave --strict away",
                  path, summary.functions(BodyKind::kError), summary.handPlaces(),
                  summary.sharedClasses()),
      kIncomplete);
}

ExitStatus Dump(const DumpOptions& options) {
  CheckClassPrefix(options.prefix);
  if (options.one_per_model) return DumpModels(options);
  const std::filesystem::path output_dir(options.output_dir);
  StagedOutput output(output_dir / GeneratedFileName(options.prefix), options.force);

  Fabscan fabscan;
  const std::set<u_int64_t> guids =
      options.nodes.Read(options.snapshot, fabscan, options.reading, {"write"}).guids;
  Progress progress;
  const DumpSummary summary = WriteDumpFile(fabscan, options.prefix, guids, output, progress);
  progress.Finish();
  output.Commit();

  const IBFabric& fabric = fabscan.discovered_fabric;
  Report(options, output.path(), summary, fabric, guids.empty() ? NodesOutside(fabric) : 0);
  return kDone;
}

}  // namespace

std::function<ExitStatus()> AddDump(CLI::App& app) {
  const auto options = std::make_shared<DumpOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  app.add_option("--prefix", options->prefix,
                 "The class that holds the simulated devices; its name in lower case, with "
                 "_generated.cpp, names the file")
      ->required()
      ->type_name("NAME");
  options->nodes.AddTo(app);
  app.add_flag(
      "--one-per-model", options->one_per_model,
      "Write a file for each device model, with one of its nodes; each has a prefix of its "
      "own, which begins with NAME");
  app.add_option("--output-dir", options->output_dir, "Where files go; the working folder")
      ->type_name("DIR");
  app.add_flag("--force", options->force, "Replace a file that exists");
  app.add_flag("--strict", options->strict, "Exit 3 when a file will not compile as it stands");
  AddReadLimits(app, options->reading);
  app.footer(
      "Examples: one switch and one adapter, as devices of class MyDev, into mydev_generated.cpp\n"
      "  fabscan dump fabric.jsonl --prefix MyDev --guid 0x2c90000000001 --guid 0x2c90000000002\n"
      "One node of each device model, such as MyDev_SW_d2f0 into mydev_sw_d2f0_generated.cpp\n"
      "  fabscan dump fabric.jsonl --prefix MyDev --one-per-model");
  return [options] { return Dump(*options); };
}

}  // namespace fabscan
