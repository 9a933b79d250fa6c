#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <system_error>

#include "cli/command.h"
#include "cli/files/snapshot_output.h"
#include "cli/files/standard_streams.h"
#include "cli/output/discovery_report.h"
#include "cli/terminal/progress.h"
#include "discovery/cache_file.h"
#include "discovery/cache_reader.h"
#include "discovery/fabric_builder.h"
#include "discovery/topology_text.h"
#include "snapshot/byte_source.h"
#include "snapshot/line_reader.h"

namespace fabscan {

namespace {

struct ImportOptions {
  std::string path;
  SnapshotOutputOptions output;
};

struct CloseFile {
  void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

/// The bytes of an open file.
class FileSource final : public ByteSource {
 public:
  explicit FileSource(std::FILE* file) : file_(file) {}

  std::size_t Read(char* to, std::size_t size) override {
    const std::size_t got = std::fread(to, 1, size, file_);
    if (got == 0 && std::ferror(file_) != 0) {
      throw SourceError("cannot read: " + std::generic_category().message(errno));
    }
    return got;
  }

 private:
  std::FILE* file_;
};

/// The first byte, which stays in the file; EOF in an empty file.
int Peek(std::FILE* file) {
  const int first = std::getc(file);
  if (first != EOF) std::ungetc(first, file);
  return first;
}

constexpr int kFirstOfZstd = 0x28;

/// Reads a topology text, compressed or not.
DiscoveryReport ReadText(const std::string& name, std::FILE* file, Fabscan& fabscan) {
  constexpr std::size_t kMostLineBytes = std::size_t{1} << 16U;
  try {
    const auto source = Decompressed(std::make_unique<FileSource>(file));
    LineReader lines(*source, kMostLineBytes);
    TopologyText text;
    bool ended = true;
    while (const auto line = lines.Next()) {
      if (lines.number() == 1 && !line->text.empty() && !MayBeginTopology(line->text.front())) {
        throw TopologyError("neither a discovery cache nor the text of ibnetdiscover");
      }
      text.Add(line->text);
      ended = line->ended;
    }
    return text.Build(fabscan, ended);
  } catch (const SourceError& error) {
    throw CommandError(fmt::format("{}: {}", name, error.what()));
  } catch (const TopologyError& error) {
    throw CommandError(fmt::format("{}: {}", name, error.what()));
  }
}

CacheFindings ReadFindings(const std::string& cache) {
  Progress progress;
  const std::string what = "reading " + InputName(cache);
  try {
    return ReadCacheFile(cache, [&](std::size_t done, std::size_t total) {
      progress.Show(what, done, total, Unit::kBytes);
    });
  } catch (const CacheError& error) {
    throw CommandError(error.what());
  }
}

ExitStatus ImportText(const std::string& name, std::FILE* file, StagedOutput& output) {
  Fabscan fabscan;
  const DiscoveryReport report = ReadText(name, file, fabscan);
  WriteFabric(output, fabscan, {"fabscan import of the text of ibnetdiscover", "", ""});
  const ExitStatus status = Tell(report, output.path());
  output.Commit();
  return status;
}

ExitStatus ImportCache(const std::string& path, StagedOutput& output) {
  const CacheFindings findings = ReadFindings(path);
  DiscoveryReport report;
  WriteFabric(output, {"fabscan import of a discovery cache", "", ""}, [&](SnapshotWriter& writer) {
    Progress progress;
    const auto show = [&](std::size_t nodes) {
      progress.Show("nodes written", nodes, findings.NodeCount());
    };
    report = BuildFabricInParts(findings, kPortsOfAPart,
                                [&](const Fabscan& part) { writer.Write(part, show); });
  });
  const ExitStatus status = Tell(report, output.path());
  output.Commit();
  return status;
}

ExitStatus Import(const ImportOptions& options) {
  StagedOutput output(options.output.path, options.output.force);
  std::unique_ptr<std::FILE, CloseFile> opened;
  std::FILE* file = stdin;
  if (options.path != "-") {
    opened.reset(std::fopen(options.path.c_str(), "rbe"));
    file = opened.get();
  }
  const int first = file == nullptr ? EOF : Peek(file);
  if (first == kFirstOfZstd || (first != EOF && MayBeginTopology(static_cast<char>(first)))) {
    return ImportText(InputName(options.path), file, output);
  }
  opened.reset();
  return ImportCache(options.path, output);
}

}  // namespace

std::function<ExitStatus()> AddImport(CLI::App& app) {
  const auto options = std::make_shared<ImportOptions>();
  app.add_option("FILE", options->path,
                 "What ibnetdiscover wrote: its text, compressed or not, or the file of --cache; - "
                 "is standard input")
      ->required();
  options->output.AddTo(app, "SNAPSHOT");
  app.footer(
      "A cache has every attribute that ibnetdiscover reads. It lacks PortInfoExtended, and the "
      "unconnected ports of adapters. A text has nodes, links, LIDs, widths and speeds only. Exits "
      "3 if the snapshot is incomplete.\n"
      "Examples:\n"
      "  ibnetdiscover --cache fabric.cache > fabric.txt\n"
      "  fabscan import fabric.cache --output fabric.jsonl\n"
      "  fabscan import fabric.txt --output topology.jsonl");
  return [options] { return Import(*options); };
}

}  // namespace fabscan
