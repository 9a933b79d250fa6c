#include "cli/dump/model_files.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/output/counted.h"
#include "cli/output/table.h"
#include "cli/selection/guid_options.h"

namespace fabscan {

namespace {

std::string NumberText(std::size_t number) { return number == 0 ? "" : std::to_string(number); }

}  // namespace

std::string FilesText(const char* head, const std::vector<ModelFile>& files, Variant variant,
                      const Terminal& terminal) {
  const bool edited = variant == Variant::kBuildable;
  Table table({{head},
               {"nodes", true},
               {"block", true},
               {"skipped", true},
               {edited ? "commented" : "#error", true},
               {edited ? "edited" : "edits", true},
               {"representative"},
               {"", false, Narrow::kCut}});
  std::size_t nodes = 0;
  for (const ModelFile& file : files) {
    const DeviceModel& model = file.named.model;
    const DumpSummary& summary = file.dumped.summary;
    nodes += model.nodes;
    table.AddRow(
        {WithoutControls(file.path), std::to_string(model.nodes),
         NumberText(summary.functions(Mark::kBlock)), NumberText(summary.functions(Mark::kComment)),
         Cell(NumberText(summary.functions(Mark::kError)), edited ? Style::kWarning : Style::kBad),
         Cell(NumberText(summary.functions(Mark::kHand)), edited ? Style::kPlain : Style::kWarning),
         GuidText(model.representative->guid), model.representative->name});
  }
  return table.text(terminal) + '\n' +
         Paragraph(fmt::format("{}, representing {}", Counted(files.size(), "device"),
                               Counted(nodes, "node")),
                   terminal);
}

std::vector<SourceEdit> EditsOf(const std::vector<ModelFile>& files) {
  std::vector<SourceEdit> edits;
  for (const ModelFile& file : files) {
    edits.insert(edits.end(), file.dumped.edits.begin(), file.dumped.edits.end());
  }
  return edits;
}

CompileFaults FaultsOf(const std::vector<ModelFile>& files) {
  CompileFaults faults;
  for (const ModelFile& file : files) faults += file.dumped.summary.faults();
  return faults;
}

std::string FaultyText(const std::vector<ModelFile>& files) {
  const auto faulty = std::count_if(files.begin(), files.end(), [](const ModelFile& file) {
    return file.dumped.summary.faults().any();
  });
  return fmt::format("{} of {} {} not compile as written", faulty, Counted(files.size(), "file"),
                     faulty == 1 ? "does" : "do");
}

}  // namespace fabscan
