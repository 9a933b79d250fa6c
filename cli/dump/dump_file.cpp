#include "cli/dump/dump_file.h"

#include <fmt/format.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

#include "cli/command.h"
#include "cli/dump/class_prefix.h"
#include "cli/dump/function_body.h"
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
  // Generate reports a file that cannot be opened; the facade also reports an incomplete write.
  if (status == 0 && fabscan.lastError().empty()) return;
  const std::string cause = fabscan.lastError().substr(fabscan.outputPath().size());
  throw CommandError(fmt::format("{}{}; free some space, or write elsewhere", output_name, cause));
}

/// The size of the file in bytes; 0 if unknown.
std::size_t SizeOf(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  return error ? 0 : static_cast<std::size_t>(size);
}

/// Counts the functions of these nodes.
DumpSummary Summarise(Fabscan& fabscan, const std::vector<const IBNode*>& nodes,
                      Progress* progress) {
  BodyQuery query(fabscan);
  DumpSummary summary;
  for (const IBNode* node : nodes) {
    if (progress != nullptr) progress->Show("nodes counted", summary.nodes(), nodes.size());
    summary.AddNode(query.ClassOf(*node));
    for (const generator::GeneratedFunction& function : generator::kGeneratedFunctions) {
      summary.AddFunction(query.MarkOf(function, *node));
    }
  }
  if (progress != nullptr) progress->Show("nodes counted", nodes.size(), nodes.size());
  return summary;
}

[[noreturn]] void RefuseUnreadable(const std::string& output_name) {
  throw CommandError(fmt::format("{}: cannot read the generated file; try again", output_name));
}

std::string ReadText(const std::string& path, const std::string& output_name) {
  std::ifstream file(path, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(file)), {});
  if (text.empty() || file.bad()) RefuseUnreadable(output_name);
  return text;
}

void Copy(const std::string& path, std::ostream& out, const std::string& output_name) {
  std::ifstream file(path, std::ios::binary);
  std::vector<char> chunk(std::size_t{1} << 20U);
  while (file.read(chunk.data(), static_cast<std::streamsize>(chunk.size())) || file.gcount() > 0) {
    out.write(chunk.data(), file.gcount());
  }
  if (!file.eof()) RefuseUnreadable(output_name);
}

}  // namespace

DumpedFile WriteDumpFile(Fabscan& fabscan, const std::string& prefix,
                         const std::set<u_int64_t>& guids, Variant variant, StagedOutput& output,
                         Progress* progress) {
  // The generator writes files only; a stream gets a copy.
  std::optional<TemporaryDirectory> scratch;
  const std::string generated =
      output.IsStaged() ? output.StagedPath() : scratch.emplace().path() + "/generated.cpp";
  const std::string name = OutputName(output.path());

  const auto generate = [&] { Generate(fabscan, prefix, guids, generated, name); };
  if (progress == nullptr) {
    generate();
  } else {
    const auto done = [&generated] { return SizeOf(generated); };
    progress->Watch("generating", 0, done, generate, Unit::kBytes);
    progress->Show("generating", done(), 0, Unit::kBytes);
  }
  DumpedFile file{Summarise(fabscan, SelectedNodes(fabscan.discovered_fabric, guids), progress),
                  {}};

  if (variant == Variant::kBuildable) {
    BuildableSource source = MakeBuildable(ReadText(generated, name), fabscan);
    output.stream() << source.text;
    file.edits = std::move(source.edits);
  } else if (!output.IsStaged()) {
    Copy(generated, output.stream(), name);
  }
  return file;
}

}  // namespace fabscan
