#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
#include <set>
#include <string>

#include "cli/command.h"
#include "cli/dump/class_prefix.h"
#include "cli/dump/compile_warning.h"
#include "cli/dump/dump_file.h"
#include "cli/dump/dump_options.h"
#include "cli/dump/dump_summary.h"
#include "cli/dump/edit_report.h"
#include "cli/dump/shared_classes.h"
#include "cli/files/read_limits.h"
#include "cli/files/staged_output.h"
#include "cli/files/standard_streams.h"
#include "cli/output/report.h"
#include "cli/selection/selected_nodes.h"
#include "cli/terminal/progress.h"

namespace fabscan {

namespace {

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

/// Prints to standard error if the file itself is written to standard output.
void Report(const DumpedFile& file, const std::string& path, Variant variant,
            std::size_t left_out) {
  const bool is_busy = IsStandardOutput(path);
  std::string text =
      fmt::format("{}\n{}\n", OutputName(path), file.summary.text(left_out, variant));
  text += EditsText(file.edits, is_busy ? Terminal() : StandardOutput());
  (is_busy ? std::cerr : std::cout) << text;
}

ExitStatus Dump(const DumpOptions& options) {
  CheckUsage(options);
  if (options.one_per_model) return DumpModels(options);
  StagedOutput output(OutputPath(options), options.force);

  Fabscan fabscan;
  const SelectedSnapshot selected =
      options.nodes.Read(options.snapshot, fabscan, options.reading, {"write"});
  const std::set<u_int64_t>& guids = selected.guids;
  if (options.variant == Variant::kBuildable) RefuseSharedClasses(fabscan, guids, options.prefix);
  Progress progress;
  const DumpedFile file =
      WriteDumpFile(fabscan, options.prefix, guids, options.variant, output, &progress);
  progress.Finish();
  output.Finish();
  Report(file, output.path(), options.variant,
         guids.empty() ? NodesOutside(fabscan.discovered_fabric) : 0);
  const std::string warning = CompileWarning(
      OutputName(output.path()) + " does not compile as written", file.summary.faults(), options);
  output.Commit();
  PrintMessage(warning);
  return options.strict && (selected.unmatched || !warning.empty()) ? kIncomplete : kDone;
}

}  // namespace

std::function<ExitStatus()> AddDump(CLI::App& app) {
  const auto options = std::make_shared<DumpOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  app.add_option("--prefix", options->prefix,
                 "The namespace of the simulated devices; in lower case, it begins the file name: "
                 "name_generated.cpp")
      ->required()
      ->type_name("NAME");
  options->nodes.AddTo(app);
  app.add_flag("--one-per-model", options->one_per_model,
               "Write one file for each device model, from one of its nodes; each prefix begins "
               "with NAME");
  app.add_flag(
      "--buildable", [options](std::int64_t) { options->variant = Variant::kBuildable; },
      "Write a variant that compiles, and list the edits: #error lines become comments");
  app.add_option("--output-dir", options->output_dir,
                 "Output directory, created if missing (default: current directory)")
      ->type_name("DIR");
  app.add_option("-o,--output", options->output,
                 "Write to this file instead of NAME_generated.cpp; - is standard output")
      ->type_name("FILE");
  app.add_flag("--force", options->force, "Replace an existing file");
  app.add_flag("--strict", options->strict,
               "Exit 3 if a file does not compile as written, or lacks a selected node");
  AddReadLimits(app, options->reading);
  app.footer(
      "Without --buildable, files are exactly as the generator writes them. A function whose data "
      "is missing can have an #error line, and a few functions need an edit before they compile; "
      "a warning counts them.\n"
      "Examples: one switch and one adapter, as devices of MyDev, into mydev_generated.cpp\n"
      "  fabscan dump fabric.jsonl --prefix MyDev --guid 0x5a1e0c0000000200 --guid "
      "0x5a1e0c0000000700\n"
      "One node of each device model, such as MyDev_SW_d2f0 into mydev_sw_d2f0_generated.cpp\n"
      "  fabscan dump fabric.jsonl --prefix MyDev --one-per-model");
  return [options] { return Dump(*options); };
}

}  // namespace fabscan
