#include "cli/dump/dump_file.h"

#include <fmt/format.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <sstream>

#include "cli/command.h"
#include "cli/dump/class_prefix.h"
#include "cli/dump/written_nodes.h"
#include "cli/files/temporary_files.h"
#include "cli/selection/selected_nodes.h"
#include "fabscan/fabscan_sim_info_dump.h"

namespace fabscan {

namespace {

void Generate(Fabscan& fabscan, const std::string& prefix, const std::set<u_int64_t>& guids,
              const std::string& file, const std::string& output_name) {
  fabscan.setOutputFile(file);
  SimInfoDumpCPP generator(fabscan);
  const int status = generator.Generate(prefix, guids);
  // Generate reports a file that does not open, the facade also one that is not completely written.
  if (status == 0 && fabscan.lastError().empty()) return;
  const std::string cause = fabscan.lastError().substr(fabscan.outputPath().size());
  throw CommandError(fmt::format("{}{}; free some space, or write elsewhere", output_name, cause));
}

[[noreturn]] void RefuseUnreadable(const std::string& output_name) {
  throw CommandError(fmt::format("{}: cannot read what was written; try again", output_name));
}

DumpSummary Summarise(std::istream& generated_text, const std::string& output_name,
                      const std::function<void(std::size_t)>& visit) {
  try {
    DumpSummary summary(generated_text, visit);
    if (generated_text.eof()) return summary;
  } catch (const GeneratedFileError&) {
    if (generated_text.good()) throw;
  } catch (const std::ios_base::failure&) {  // reported below
  }
  RefuseUnreadable(output_name);
}

void GenerateWithProgress(Fabscan& fabscan, const std::string& prefix,
                          const std::vector<const IBNode*>& nodes, const std::set<u_int64_t>& guids,
                          const std::string& file, const std::string& output_name,
                          Progress& progress) {
  WrittenNodes written(nodes, file);
  progress.Watch(
      "nodes generated", nodes.size(), [&written] { return written.Count(); },
      [&] { Generate(fabscan, prefix, guids, file, output_name); });
  progress.Show("nodes generated", nodes.size(), nodes.size());
}

}  // namespace

DumpedFile WriteDumpFile(Fabscan& fabscan, const std::string& prefix,
                         const std::set<u_int64_t>& guids, Variant variant, StagedOutput& output,
                         Progress* progress) {
  // The generator writes files only; a stream gets a copy.
  std::optional<TemporaryDirectory> scratch;
  const std::string generated =
      output.isStaged() ? output.stagedPath() : scratch.emplace().path() + "/generated.cpp";
  const std::string name = OutputName(output.path());

  std::function<void(std::size_t)> visit = [](std::size_t) {};
  if (progress == nullptr) {
    Generate(fabscan, prefix, guids, generated, name);
  } else {
    const auto nodes = SelectedNodes(fabscan.discovered_fabric, guids);
    GenerateWithProgress(fabscan, prefix, nodes, guids, generated, name, *progress);
    visit = [progress, count = nodes.size()](std::size_t done) {
      progress->Show("nodes counted", done, count);
    };
  }

  std::ifstream exact(generated, std::ios::binary);
  if (variant == Variant::kBuildable) {
    const std::string text((std::istreambuf_iterator<char>(exact)), {});
    if (text.empty() || exact.bad()) RefuseUnreadable(name);
    std::istringstream lines(text);
    DumpedFile file{Summarise(lines, name, visit), {}};
    BuildableSource source = MakeBuildable(text, fabscan);
    output.stream() << source.text;
    file.edits = std::move(source.edits);
    return file;
  }
  DumpedFile file{Summarise(exact, name, visit), {}};
  if (!output.isStaged()) {
    exact.clear();
    exact.seekg(0);
    output.stream() << exact.rdbuf();
  }
  return file;
}

}  // namespace fabscan
