#include "snapshot_output.h"

#include <zstd_output.h>

#include <CLI/CLI.hpp>
#include <string_view>

#include "progress.h"

namespace fabscan {

namespace {

constexpr std::string_view kCompressedEnding = ".zst";

bool IsCompressed(std::string_view path) {
  return path.size() > kCompressedEnding.size() &&
         path.substr(path.size() - kCompressedEnding.size()) == kCompressedEnding;
}

}  // namespace

void SnapshotOutputOptions::AddTo(CLI::App& app, const char* type_name) {
  app.add_option("--output", path,
                 "The snapshot to write, compressed when it is named *.zst; - is standard output")
      ->required()
      ->type_name(type_name);
  app.add_flag("--force", force, "Replace a file that exists");
}

void WriteAndCommit(StagedOutput& output, const Fabscan& fabscan, const SnapshotHeader& header) {
  Progress progress;
  const auto show = [&progress](std::size_t done, std::size_t total) {
    progress.Show("nodes written", done, total);
  };
  if (IsCompressed(output.path())) {
    ZstdOutput compressed(output.stream());
    std::ostream out(&compressed);
    WriteSnapshot(out, fabscan, header, show);
    compressed.Finish();  // a stream that did not take everything fails in Commit
  } else {
    WriteSnapshot(output.stream(), fabscan, header, show);
  }
  progress.Finish();
  output.Commit();
}

}  // namespace fabscan
