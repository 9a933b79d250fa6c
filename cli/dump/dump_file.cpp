#include "dump_file.h"

#include <fabscan_sim_info_dump.h>
#include <fmt/format.h>

#include <fstream>
#include <functional>
#include <vector>

#include "command.h"
#include "selected_nodes.h"
#include "written_nodes.h"

namespace fabscan {

namespace {

void Generate(Fabscan& fabscan, const std::string& prefix, const std::set<u_int64_t>& guids,
              const StagedOutput& output) {
  fabscan.setOutputFolder(output.folder());
  SimInfoDumpCPP generator(fabscan);
  const int status = generator.Generate(prefix, guids);
  // Generate tells of a file that does not open, the facade also of one that is not all written.
  if (status == 0 && fabscan.lastError().empty()) return;
  const std::string cause = fabscan.lastError().substr(fabscan.outputPath().size());
  throw CommandError(
      fmt::format("{}{}; free some space, or write elsewhere", output.path(), cause));
}

DumpSummary Summarise(const StagedOutput& output, const std::function<void(std::size_t)>& visit) {
  std::ifstream generated_text(output.stagedPath(), std::ios::binary);
  try {
    DumpSummary summary(generated_text, visit);
    if (generated_text.eof()) return summary;
  } catch (const GeneratedFileError&) {
    if (generated_text.good()) throw;
  } catch (const std::ios_base::failure&) {  // told below
  }
  throw CommandError(fmt::format("{}: cannot read what was written; try again", output.path()));
}

}  // namespace

DumpSummary WriteDumpFile(Fabscan& fabscan, const std::string& prefix,
                          const std::set<u_int64_t>& guids, const StagedOutput& output) {
  Generate(fabscan, prefix, guids, output);
  return Summarise(output, [](std::size_t) {});
}

DumpSummary WriteDumpFile(Fabscan& fabscan, const std::string& prefix,
                          const std::set<u_int64_t>& guids, const StagedOutput& output,
                          Progress& progress) {
  const std::vector<const IBNode*> nodes = SelectedNodes(fabscan.discovered_fabric, guids);
  WrittenNodes written(nodes, output.stagedPath());
  progress.Watch(
      "nodes generated", nodes.size(), [&written] { return written.Count(); },
      [&] { Generate(fabscan, prefix, guids, output); });
  progress.Show("nodes generated", nodes.size(), nodes.size());
  return Summarise(output, [&progress, &nodes](std::size_t done) {
    progress.Show("nodes counted", done, nodes.size());
  });
}

}  // namespace fabscan
