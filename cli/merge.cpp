#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "cli/command.h"
#include "cli/files/read_limits.h"
#include "cli/files/read_snapshot.h"
#include "cli/files/snapshot_output.h"
#include "cli/files/standard_streams.h"
#include "cli/output/counted.h"
#include "cli/terminal/progress.h"
#include "fabrics/merge_fabrics.h"
#include "snapshot/snapshot.h"

namespace fabscan {

namespace {

struct MergeOptions {
  std::string base;
  std::string extra;
  SnapshotOutputOptions output;
  Prefer prefer = Prefer::kNeither;
  IngressPort ingress_port = IngressPort::kIgnored;
  SnapshotReadOptions reading;
};

MergeResult MergeOrRefuse(const MergeOptions& options, const Fabscan& base, const Fabscan& extra,
                          Fabscan& merged) {
  MergeResult result;
  Progress progress;
  try {
    result = MergeFabrics(base, extra, options.prefer, merged, options.ingress_port,
                          progress.Callback("nodes merged"));
  } catch (const std::invalid_argument& error) {
    throw CommandError(fmt::format("{} and {} cannot be merged: {}; are they from the same fabric?",
                                   InputName(options.base), InputName(options.extra),
                                   error.what()));
  }
  if (result.conflicts == 0 || options.prefer != Prefer::kNeither) return result;
  throw CommandError(fmt::format(
      "{} and {} contradict each other in {} value{}: {}; use --prefer base or --prefer extra to "
      "select one; 'fabscan diff' lists the differences",
      InputName(options.base), InputName(options.extra), result.conflicts,
      result.conflicts == 1 ? "" : "s, the first", result.first_conflict));
}

ExitStatus Merge(const MergeOptions& options) {
  StagedOutput output(options.output.path, options.output.force);
  Fabscan base;
  Fabscan extra;
  const SnapshotHeader header = ReadSnapshotWithProgress(options.base, base, options.reading);
  ReadSnapshotWithProgress(options.extra, extra, options.reading);
  Fabscan merged;
  const MergeResult result = MergeOrRefuse(options, base, extra, merged);
  WriteFabric(output, merged, header);

  std::ostream& out = IsStandardOutput(output.path()) ? std::cerr : std::cout;
  out << fmt::format("{}: {}, {} of them added; {} added", OutputName(output.path()),
                     Counted(merged.discovered_fabric.nodeCount(), "node"), result.added_nodes,
                     Counted(result.added_records, "record"));
  if (result.conflicts != 0) {
    out << fmt::format(
        "; {} taken from {}", Counted(result.conflicts, "conflicting value"),
        options.prefer == Prefer::kBase ? InputName(options.base) : InputName(options.extra));
  }
  out << '\n';
  output.Commit();
  return kDone;
}

}  // namespace

std::function<ExitStatus()> AddMerge(CLI::App& app) {
  const auto options = std::make_shared<MergeOptions>();
  const std::map<std::string, Prefer> words = {{"base", Prefer::kBase}, {"extra", Prefer::kExtra}};
  app.add_option("BASE", options->base, "The base snapshot; - is standard input")->required();
  app.add_option("EXTRA", options->extra, "The snapshot with additional data")->required();
  options->output.AddTo(app, "OUT");
  app.add_option("--prefer", options->prefer, "The snapshot whose values to use if the two differ")
      ->transform(CLI::Transformer(words).description(""))
      ->transform(CLI::IsMember(words).description(""))  // runs first, and accepts no number
      ->type_name("base|extra");
  AddIngressPort(app, options->ingress_port, "Also report conflicts in");
  AddReadLimits(app, options->reading);
  app.footer(
      "Nodes are matched by GUID, ports by number. Without --prefer, different values are an "
      "error.\n"
      "Example: a discovery, completed with the output of a vendor-attribute collector\n"
      "  fabscan merge fabric.jsonl vendor.jsonl --output whole.jsonl");
  return [options] { return Merge(*options); };
}

}  // namespace fabscan
