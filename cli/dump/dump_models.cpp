#include <fmt/format.h>

#include <filesystem>
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "cli/dump/class_prefix.h"
#include "cli/dump/compile_warning.h"
#include "cli/dump/dump_file.h"
#include "cli/dump/dump_options.h"
#include "cli/dump/edit_report.h"
#include "cli/dump/model_files.h"
#include "cli/dump/model_names.h"
#include "cli/output/report.h"
#include "cli/selection/selected_nodes.h"
#include "cli/terminal/progress.h"

namespace fabscan {

ExitStatus DumpModels(const DumpOptions& options) {
  Fabscan fabscan;
  const SelectedSnapshot selected =
      options.nodes.Read(options.snapshot, fabscan, options.reading, {"write"});
  const std::set<u_int64_t>& guids = selected.guids;
  const std::vector<NamedModel> list = NameModels(fabscan, ModelPrefixStart(options.prefix), guids);

  const std::filesystem::path output_dir(options.output_dir);
  std::vector<std::string> paths;
  paths.reserve(list.size());
  for (const NamedModel& named : list) {
    paths.push_back(output_dir / GeneratedFileName(named.prefix));
  }
  const std::vector<std::unique_ptr<StagedOutput>> outputs =
      StagedOutput::Several(paths, options.force);
  std::vector<ModelFile> files;
  Progress progress;
  for (std::size_t i = 0; i < list.size(); ++i) {
    progress.Show("files written", i, list.size());
    files.push_back({list[i], paths[i],
                     WriteDumpFile(fabscan, list[i].prefix, {list[i].model.representative->guid},
                                   options.variant, *outputs[i])});
  }
  progress.Show("files written", list.size(), list.size());
  progress.Finish();

  std::cout << FilesText("file", files, options.variant, StandardOutput())
            << LeftOutText(guids.empty() ? NodesOutside(fabscan.discovered_fabric) : 0)
            << EditsText(EditsOf(files), StandardOutput());
  const std::string warning = CompileWarning(FaultyText(files), FaultsOf(files), options);
  StagedOutput::CommitAll(outputs);
  PrintMessage(warning);
  return options.strict && (selected.unmatched || !warning.empty()) ? kIncomplete : kDone;
}

}  // namespace fabscan
