#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <set>
#include <string>

#include "class_prefix.h"
#include "command.h"
#include "compile_warning.h"
#include "directories.h"
#include "dump_file.h"
#include "dump_options.h"
#include "dump_summary.h"
#include "edit_report.h"
#include "guid_options.h"
#include "progress.h"
#include "read_limits.h"
#include "read_snapshot.h"
#include "report.h"
#include "selected_nodes.h"
#include "shared_classes.h"
#include "staged_output.h"
#include "standard_streams.h"

namespace fabscan {

namespace {

/// The nodes to write; empty for all. Throws when none is left to write.
std::set<u_int64_t> SelectNodes(const std::set<u_int64_t>& chosen, const DumpOptions& options,
                                const IBFabric& fabric) {
  std::set<u_int64_t> found = WarnOfMissing(chosen, fabric);
  bool any = !found.empty();
  if (chosen.empty()) {
    for (const IBNode& node : fabric.nodes()) any = any || node.in_sub_fabric;
  }
  if (!any) {
    throw CommandError(fmt::format(
        "{}: no node to write: {}", InputName(options.snapshot),
        chosen.empty() ? "none is in the sub-fabric; choose another snapshot"
                       : "none of the chosen GUIDs is in the sub-fabric; choose others"));
  }
  return found;
}

void CheckUsage(const DumpOptions& options) {
  CheckClassPrefix(options.prefix);
  if (options.output.empty()) return;
  if (options.one_per_model || !options.output_dir.empty()) {
    throw CommandError(fmt::format("--output names one file; omit {}",
                                   options.one_per_model ? "--one-per-model" : "--output-dir"),
                       kWrongUsage);
  }
}

std::string OutputPath(const DumpOptions& options) {
  if (!options.output.empty()) return options.output;
  return std::filesystem::path(options.output_dir) / GeneratedFileName(options.prefix);
}

/// On standard output, unless that is where the file goes.
void Report(const DumpedFile& file, const std::string& path, std::size_t left_out) {
  const bool is_busy = IsStandardStream(path);
  std::string text = fmt::format("{}\n{}\n", OutputName(path), file.summary.text(left_out));
  text += EditsText(file.edits, is_busy ? Terminal() : StandardOutput());
  (is_busy ? std::cerr : std::cout) << text;
}

ExitStatus Dump(const DumpOptions& options) {
  CheckUsage(options);
  if (options.one_per_model) return DumpModels(options);
  const std::set<u_int64_t> chosen = options.guids.Read();
  NewDirectories directories;
  directories.Make(options.output_dir);
  StagedOutput output(OutputPath(options), options.force);

  Fabscan fabscan;
  ReadSnapshotWithProgress(options.snapshot, fabscan, options.reading, chosen);
  const IBFabric& fabric = fabscan.discovered_fabric;
  const std::set<u_int64_t> guids = SelectNodes(chosen, options, fabric);
  if (options.variant == Variant::kBuildable) RefuseSharedClasses(fabscan, guids, options.prefix);
  Progress progress;
  const DumpedFile file =
      WriteDumpFile(fabscan, options.prefix, guids, options.variant, output, &progress);
  progress.Finish();
  output.Commit();
  directories.Keep();

  Report(file, output.path(), chosen.empty() ? NodesOutside(fabric) : 0);
  if (options.variant == Variant::kExact) {
    WarnOfFaults(OutputName(output.path()) + " does not compile as written", file.summary.faults(),
                 options, guids);
  }
  return kDone;
}

}  // namespace

std::function<ExitStatus()> AddDump(CLI::App& app) {
  const auto options = std::make_shared<DumpOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  app.add_option("--prefix", options->prefix,
                 "The namespace of the simulated devices; in lower case, with _generated.cpp, it "
                 "names the file")
      ->required()
      ->type_name("NAME");
  options->guids.AddTo(app);
  app.add_flag("--one-per-model", options->one_per_model,
               "Write one file for each device model, from one of its nodes; the prefix of each "
               "begins with NAME");
  app.add_flag(
      "--buildable", [options](std::int64_t) { options->variant = Variant::kBuildable; },
      "Write a variant that compiles, and list what was edited: #error lines become comments");
  app.add_option("--output-dir", options->output_dir,
                 "Output directory, created if missing (default: current directory)")
      ->type_name("DIR");
  app.add_option("--output", options->output,
                 "Write to this file instead of NAME_generated.cpp; - is standard output")
      ->type_name("FILE");
  app.add_flag("--force", options->force, "Replace a file that exists");
  app.add_flag("--strict", options->strict, "Exit 3 if a file does not compile as written");
  AddReadLimits(app, options->reading);
  app.footer(
      "Without --buildable, files are exactly what the generator writes. A function whose data is "
      "missing can have an #error line, and a few need an edit before they compile; a warning "
      "counts them.\n"
      "Examples: one switch and one adapter, as devices of MyDev, into mydev_generated.cpp\n"
      "  fabscan dump fabric.jsonl --prefix MyDev --guid 0x5a1e0c0000000200 --guid "
      "0x5a1e0c0000000700\n"
      "One node of each device model, such as MyDev_SW_d2f0 into mydev_sw_d2f0_generated.cpp\n"
      "  fabscan dump fabric.jsonl --prefix MyDev --one-per-model");
  return [options] { return Dump(*options); };
}

}  // namespace fabscan
