#include <fmt/format.h>

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "class_prefix.h"
#include "counted.h"
#include "dump_file.h"
#include "dump_options.h"
#include "listed_models.h"
#include "progress.h"
#include "read_snapshot.h"
#include "report.h"
#include "selected_nodes.h"
#include "standard_streams.h"
#include "table.h"

namespace fabscan {

namespace {

struct ModelFile {
  ListedModel listed;
  DumpSummary summary;
};

/// What begins the prefixes of the models; two underscores in a row are reserved.
std::string PrefixStart(const std::string& prefix) {
  return prefix.back() == '_' ? prefix : prefix + '_';
}

std::string NumberText(std::size_t number) { return number == 0 ? "" : std::to_string(number); }

void PrintFiles(const std::vector<ModelFile>& files,
                const std::vector<std::unique_ptr<StagedOutput>>& outputs) {
  Table table({{"file"},
               {"nodes", true},
               {"block", true},
               {"skipped", true},
               {"#error", true},
               {"by hand", true},
               {"written of"},
               {"", false, Narrow::kCut}});
  std::size_t nodes = 0;
  for (std::size_t i = 0; i < files.size(); ++i) {
    const auto& [listed, summary] = files[i];
    nodes += listed.model.nodes;
    table.AddRow({outputs[i]->path(), std::to_string(listed.model.nodes),
                  NumberText(summary.functions(BodyKind::kBlock)),
                  NumberText(summary.functions(BodyKind::kComment)),
                  Cell(NumberText(summary.functions(BodyKind::kError)), Style::kBad),
                  Cell(NumberText(summary.handPlaces()), Style::kWarning),
                  GuidText(listed.model.representative->guid), listed.model.representative->name});
  }
  const Terminal terminal = StandardOutput();
  std::cout << table.text(terminal) << '\n'
            << Paragraph(fmt::format("{}, one node of each device model among {}",
                                     Counted(files.size(), "file"), Counted(nodes, "node")),
                         terminal);
}

/// Warns of files that do not compile; an error with `--strict`.
void ReportUncompilable(const std::vector<ModelFile>& files, const DumpOptions& options) {
  std::size_t uncompilable = 0;
  for (const ModelFile& file : files) uncompilable += file.summary.compiles() ? 0 : 1;
  if (uncompilable == 0) return;
  const std::string what = fmt::format(
      "files that do not compile as written: {} of {}; the table counts their #error lines and "
      "functions to finish by hand, 'fabscan check' gives the reasons",
      uncompilable, files.size());
  if (!options.strict) return PrintWarning(what);
  throw CommandError(what + "; see to them, or leave --strict away", kIncomplete);
}

}  // namespace

ExitStatus DumpModels(const DumpOptions& options) {
  if (options.nodes.given()) {
    throw CommandError(
        fmt::format("--one-per-model selects the nodes and cannot be combined with {}",
                    ListText(options.nodes.OptionNames())),
        kWrongUsage);
  }
  Fabscan fabscan;
  ReadSnapshotWithProgress(options.snapshot, fabscan, options.reading);
  const std::vector<ListedModel> list = ListModels(fabscan, PrefixStart(options.prefix));
  if (list.empty()) {
    throw CommandError(
        fmt::format("{}: no node to write: none is in the sub-fabric; choose another snapshot",
                    InputName(options.snapshot)));
  }

  const std::filesystem::path output_dir(options.output_dir);
  std::vector<std::string> paths;
  paths.reserve(list.size());
  for (const ListedModel& listed : list) {
    paths.push_back(output_dir / GeneratedFileName(listed.prefix));
  }
  const std::vector<std::unique_ptr<StagedOutput>> outputs =
      StagedOutput::Several(paths, options.force);
  std::vector<ModelFile> files;
  Progress progress;
  for (std::size_t i = 0; i < list.size(); ++i) {
    progress.Show("files written", i, list.size());
    files.push_back({list[i], WriteDumpFile(fabscan, list[i].prefix,
                                            {list[i].model.representative->guid}, *outputs[i])});
  }
  progress.Show("files written", list.size(), list.size());
  progress.Finish();
  StagedOutput::CommitAll(outputs);

  PrintFiles(files, outputs);
  std::cout << LeftOutText(NodesOutside(fabscan.discovered_fabric));
  ReportUncompilable(files, options);
  return kDone;
}

}  // namespace fabscan
