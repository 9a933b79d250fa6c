#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/command.h"
#include "cli/files/read_limits.h"
#include "cli/files/read_snapshot.h"
#include "cli/files/staged_output.h"
#include "fabrics/export/formats.h"

namespace fabscan {

namespace {

struct ExportOptions {
  std::string snapshot;
  std::string format;
  std::string output = "-";
  bool force = false;
  SnapshotReadOptions reading;
};

const ExportFormat& FormatNamed(const std::string& name) {
  for (const ExportFormat& format : ExportFormats()) {
    if (format.name == name) return format;
  }
  throw CommandError(fmt::format("--format: unknown format '{}'", name), kWrongUsage);
}

ExitStatus Export(const ExportOptions& options) {
  const ExportFormat& format = FormatNamed(options.format);
  StagedOutput output(options.output, options.force);
  Fabscan fabscan;
  ReadSnapshotWithProgress(options.snapshot, fabscan, options.reading);
  RequireLinks(options.snapshot, fabscan);
  format.write(output.stream(), fabscan);
  output.Commit();
  return kDone;
}

std::vector<std::string> FormatNames() {
  std::vector<std::string> names;
  for (const ExportFormat& format : ExportFormats()) names.emplace_back(format.name);
  return names;
}

std::string Footer() {
  std::string text = "Formats:\n";
  for (const ExportFormat& format : ExportFormats()) {
    text += fmt::format("{}: {}\n", format.name, format.what);
  }
  return text +
         "Example: the topology of a fabric, for 'ibsim -s fabric.net'\n"
         "  fabscan export fabric.jsonl --format ibnetdiscover --output fabric.net";
}

}  // namespace

std::function<ExitStatus()> AddExport(CLI::App& app) {
  const auto options = std::make_shared<ExportOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  app.add_option("--format", options->format, "The format to write, see below")
      ->required()
      ->check(CLI::IsMember(FormatNames()).description(""))
      ->type_name("FORMAT");
  app.add_option("-o,--output", options->output, "The file to write (default: standard output)")
      ->type_name("FILE");
  app.add_flag("--force", options->force, "Replace an existing file");
  AddReadLimits(app, options->reading);
  app.footer(Footer());
  return [options] { return Export(*options); };
}

}  // namespace fabscan
