#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <set>
#include <string>

#include "cli/command.h"
#include "cli/dump/class_prefix.h"
#include "cli/dump/edit_report.h"
#include "cli/dump/model_files.h"
#include "cli/dump/model_names.h"
#include "cli/files/read_limits.h"
#include "cli/files/staged_output.h"
#include "cli/files/standard_streams.h"
#include "cli/output/report.h"
#include "cli/output/shell_word.h"
#include "cli/scaffold/project.h"
#include "cli/selection/node_selection.h"
#include "cli/selection/selected_nodes.h"
#include "simulator/verification/simulator_sources.h"

namespace fabscan {

namespace {

struct ScaffoldOptions {
  std::string snapshot;  // empty: only the header and build lines of one device
  std::string prefix;
  NodeSelection nodes;
  std::string output_dir;
  bool exact = false;
  bool force = false;
  SnapshotReadOptions reading;
};

/// Writes the files that a file from `dump` needs to build with the installed simulator.
ExitStatus ScaffoldDevice(const ScaffoldOptions& options) {
  if (options.nodes.given() || options.exact) {
    throw CommandError("a SNAPSHOT is required to select nodes", kWrongUsage);
  }
  const std::filesystem::path directory(options.output_dir);
  const auto outputs = StagedOutput::Several(
      {directory / (LowerCasePrefix(options.prefix) + ".h"), directory / "CMakeLists.txt"},
      options.force);
  outputs[0]->stream() << DeviceSource("devices/example/example.h", options.prefix);
  outputs[1]->stream() << DeviceSource("devices/example/CMakeLists.txt", options.prefix);
  for (const auto& output : outputs) std::cout << OutputName(output->path()) << '\n';
  StagedOutput::CommitAll(outputs);
  return kDone;
}

/// Each node that is selected by GUID; otherwise one of each device model.
std::vector<NamedModel> SelectDevices(const ScaffoldOptions& options, Fabscan& fabscan) {
  const std::set<u_int64_t> guids =
      options.nodes.Read(options.snapshot, fabscan, options.reading, {"simulate"}).guids;
  const std::string start = ModelPrefixStart(options.prefix);
  return options.nodes.ByGuid()
             ? NameNodes(fabscan, SelectedNodes(fabscan.discovered_fabric, guids), start)
             : NameModels(fabscan, start, guids);
}

Variant VariantOf(const ScaffoldOptions& options) {
  return options.exact ? Variant::kExact : Variant::kBuildable;
}

std::string BuildLines(const std::string& directory) {
  const std::string source = ShellWord(directory.empty() ? "." : directory);
  const std::string build = ShellWord((std::filesystem::path(directory) / "build").string());
  return fmt::format(
      "\nTo build the devices, and print the NodeInfo of each:\n"
      "  cmake -S {0} -B {1} && cmake --build {1}\n"
      "  {2}{1}/simulated_devices\n",
      source, build, directory.empty() ? "./" : "");
}

void Report(const ScaffoldOptions& options, const Fabscan& fabscan,
            const std::vector<ModelFile>& files) {
  std::cout << FilesText("directory", files, VariantOf(options), StandardOutput());
  if (!options.nodes.given()) std::cout << LeftOutText(NodesOutside(fabscan.discovered_fabric));
  std::cout << EditsText(EditsOf(files), StandardOutput());
  const CompileFaults faults = options.exact ? FaultsOf(files) : CompileFaults();
  if (faults.any()) {
    PrintWarning(fmt::format("{}: {}; next: omit --exact", FaultyText(files), faults.text()));
  } else {
    std::cout << BuildLines(options.output_dir);
  }
}

ExitStatus ScaffoldProject(const ScaffoldOptions& options) {
  Fabscan fabscan;
  const std::vector<NamedModel> devices = SelectDevices(options, fabscan);
  WriteProject(fabscan, devices, VariantOf(options), options.output_dir, options.force,
               [&](const std::vector<ModelFile>& files) { Report(options, fabscan, files); });
  return kDone;
}

ExitStatus Scaffold(const ScaffoldOptions& options) {
  CheckClassPrefix(options.prefix);
  return options.snapshot.empty() ? ScaffoldDevice(options) : ScaffoldProject(options);
}

}  // namespace

std::function<ExitStatus()> AddScaffold(CLI::App& app) {
  const auto options = std::make_shared<ScaffoldOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input");
  app.add_option("--prefix", options->prefix,
                 "The namespace of the simulated devices; if there are several, each has its own "
                 "namespace that begins with NAME")
      ->required()
      ->type_name("NAME");
  options->nodes.AddTo(app);
  app.add_option("--output-dir", options->output_dir,
                 "Output directory, created if missing (default: current directory)")
      ->type_name("DIR");
  app.add_flag("--exact", options->exact,
               "Keep generated files exactly as the generator writes them, even if they do not "
               "compile");
  app.add_flag("--force", options->force, "Replace existing files");
  AddReadLimits(app, options->reading);
  app.footer(
      "With a SNAPSHOT, writes a project that builds. For each device model, or for each node "
      "selected by GUID, it has a directory with the generated file, its header and its "
      "CMakeLists.txt. It also has the reference simulator, and a program that creates all "
      "devices. Lines of generated files that do not compile are edited as by 'fabscan dump "
      "--buildable', and the edits are listed.\n"
      "Without a SNAPSHOT, writes only NAME.h and CMakeLists.txt, for a file that 'fabscan dump' "
      "wrote with the same prefix. They need the installed simulator.\n"
      "Example: simulated devices of a fabric, one for each device model\n"
      "  fabscan scaffold fabric.jsonl --prefix MyDev --output-dir sim");
  return [options] { return Scaffold(*options); };
}

}  // namespace fabscan
