#include "cli/files/snapshot_output.h"

#include <CLI/CLI.hpp>
#include <string_view>

#include "cli/terminal/progress.h"
#include "snapshot/zstd_output.h"

namespace fabscan {

namespace {

constexpr std::string_view kCompressedEnding = ".zst";

bool IsCompressed(std::string_view path) {
  return path.size() > kCompressedEnding.size() &&
         path.substr(path.size() - kCompressedEnding.size()) == kCompressedEnding;
}

}  // namespace

void SnapshotOutputOptions::AddTo(CLI::App& app, const char* type_name) {
  app.add_option("-o,--output", path,
                 "The snapshot to write, compressed if its name ends in .zst; - is standard output")
      ->required()
      ->type_name(type_name);
  app.add_flag("--force", force, "Replace an existing file");
}

void WriteFabric(StagedOutput& output, const Fabscan& fabscan, const SnapshotHeader& header) {
  WriteFabric(output, header, [&fabscan](SnapshotWriter& writer) {
    Progress progress;
    writer.Write(fabscan, [&](std::size_t nodes) {
      progress.Show("nodes written", nodes, fabscan.discovered_fabric.nodeCount());
    });
  });
}

void WriteFabric(StagedOutput& output, const SnapshotHeader& header,
                 const std::function<void(SnapshotWriter& writer)>& write) {
  const auto write_to = [&](std::ostream& out) {
    SnapshotWriter writer(out, header);
    write(writer);
    writer.Finish();
  };
  if (IsCompressed(output.path())) {
    ZstdOutput compressed(output.stream());
    std::ostream out(&compressed);
    write_to(out);
    compressed.Finish();  // reports an incomplete write
  } else {
    write_to(output.stream());
  }
  output.Finish();
}

}  // namespace fabscan
