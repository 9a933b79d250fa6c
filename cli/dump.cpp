#include <fabscan_sim_info_dump.h>
#include <fmt/format.h>
#include <snapshot.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>

#include "class_prefix.h"
#include "command.h"
#include "dump_summary.h"
#include "generated_file.h"
#include "guid_options.h"
#include "report.h"
#include "staged_output.h"

namespace fabscan {

namespace {

struct DumpOptions {
  std::string snapshot;
  std::string prefix;
  GuidOptions guids;
  std::string output_dir;
  bool force = false;
  bool strict = false;
};

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
        "{}: no node to write: {}", options.snapshot,
        chosen.empty() ? "none is in the sub-fabric; choose another snapshot"
                       : "none of the chosen GUIDs is in the sub-fabric; choose others"));
  }
  return found;
}

void Generate(Fabscan& fabscan, const DumpOptions& options, const std::set<u_int64_t>& guids,
              const StagedOutput& output) {
  fabscan.setOutputFolder(output.folder());
  SimInfoDumpCPP generator(fabscan);
  const int status = generator.Generate(options.prefix, guids);
  // Generate tells of a file that does not open, the facade also of one that is not all written.
  if (status == 0 && fabscan.lastError().empty()) return;
  const std::string cause = fabscan.lastError().substr(fabscan.outputPath().size());
  throw CommandError(
      fmt::format("{}{}; free some space, or write elsewhere", output.path(), cause));
}

DumpSummary Summarise(const StagedOutput& output) {
  std::ifstream generated_text(output.stagedPath(), std::ios::binary);
  try {
    DumpSummary summary(generated_text);
    if (generated_text.eof()) return summary;
  } catch (const GeneratedFileError&) {
    if (generated_text.good()) throw;
  }
  throw CommandError(fmt::format("{}: cannot read what was written; try again", output.path()));
}

void Report(const DumpOptions& options, const std::string& path, const DumpSummary& summary,
            const IBFabric& fabric) {
  fmt::print("{}\n{}\n", path, summary.text());
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
  const std::set<u_int64_t> chosen = options.guids.Read();
  const std::filesystem::path output_dir(options.output_dir);
  StagedOutput output(output_dir / GeneratedFileName(options.prefix), options.force);

  Fabscan fabscan;
  SnapshotReadOptions read_options;
  if (!chosen.empty()) read_options.guids = &chosen;
  ReadSnapshot(options.snapshot, fabscan, read_options);
  Generate(fabscan, options, SelectNodes(chosen, options, fabscan.discovered_fabric), output);
  const DumpSummary summary = Summarise(output);
  output.Commit();

  Report(options, output.path(), summary, fabscan.discovered_fabric);
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
  options->guids.AddTo(app);
  app.add_option("--output-dir", options->output_dir, "Where the file goes; the working folder")
      ->type_name("DIR");
  app.add_flag("--force", options->force, "Replace a file that exists");
  app.add_flag("--strict", options->strict, "Exit 3 when the file will not compile as it stands");
  app.footer(
      "Example: one switch and one adapter, as devices of class MyDev, into mydev_generated.cpp\n"
      "  fabscan dump fabric.jsonl --prefix MyDev --guid 0x2c90000000001 --guid 0x2c90000000002");
  return [options] { return Dump(*options); };
}

}  // namespace fabscan
