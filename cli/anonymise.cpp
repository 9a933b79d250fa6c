#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "cli/command.h"
#include "cli/files/option_file.h"
#include "cli/files/read_limits.h"
#include "cli/files/read_snapshot.h"
#include "cli/files/snapshot_output.h"
#include "cli/files/standard_streams.h"
#include "cli/output/counted.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/terminal.h"
#include "fabrics/anonymised_fabric.h"
#include "fabrics/keyed_mapping.h"
#include "snapshot/snapshot.h"

namespace fabscan {

namespace {

struct AnonymiseOptions {
  std::string snapshot;
  SnapshotOutputOptions output;
  std::string key;
  std::string key_file;
  bool keep_reasons = false;
  SnapshotReadOptions reading;
};

constexpr char kSource[] = "anonymised";

std::string ReadKeyFile(const std::string& path) {
  constexpr std::size_t kMaxBytes = std::size_t{1} << 20U;
  std::string key = ReadOptionFile({path, "the key", "--key-file", kMaxBytes});
  key.erase(key.find_last_not_of("\r\n") + 1);
  if (key.empty()) {
    throw CommandError(fmt::format("{}: contains no key; write one line of text", path),
                       kWrongUsage);
  }
  return key;
}

std::unique_ptr<KeyedMapping> MakeMapping(const AnonymiseOptions& options, bool has_key) {
  if (!options.key_file.empty()) {
    return std::make_unique<KeyedMapping>(ReadKeyFile(options.key_file));
  }
  if (!has_key) return std::make_unique<KeyedMapping>();
  if (options.key.empty()) throw CommandError("--key: is empty; specify some text", kWrongUsage);
  return std::make_unique<KeyedMapping>(options.key);
}

std::string ReportText(const AnonymiseOptions& options, const IBFabric& fabric, bool has_key) {
  constexpr std::size_t kWidest = 88;
  const std::size_t shown =
      WidthOf(IsStandardOutput(options.output.path) ? STDERR_FILENO : STDOUT_FILENO);
  const std::size_t width = shown == 0 ? kWidest : std::min(shown, kWidest);
  const char* reasons = "; reasons why records are absent";
  const std::string removed = "source and time of the snapshot";
  const std::string kept =
      "types, port numbers and states, LIDs, partition keys, vendor and device ids, hardware "
      "revision, PSID, firmware and its date, up time, counters, the order of nodes";
  std::string text =
      fmt::format("{}: {}, {}\n", OutputName(options.output.path),
                  Counted(fabric.nodeCount(), "node"), Counted(fabric.portCount(), "port"));
  text += Beside("  replaced  ",
                 "names and alternative names; GUIDs of nodes, ports and systems; GIDs and GID "
                 "prefixes except the default one; manufacturing MAC addresses; queue keys",
                 width);
  text += Beside("  removed   ", options.keep_reasons ? removed : removed + reasons, width);
  text += Beside("  kept      ",
                 options.keep_reasons ? kept + reasons + ", which are free text" : kept, width);
  if (!has_key) {
    text += Beside(
        "  ", "the key was random and is not stored; use --key-file for repeatable replacements",
        width);
  }
  return text;
}

ExitStatus AnonymiseSnapshot(const AnonymiseOptions& options, bool has_key) {
  StagedOutput output(options.output.path, options.output.force);
  const std::unique_ptr<KeyedMapping> mapping = MakeMapping(options, has_key);
  Fabscan fabscan;
  ReadSnapshotWithProgress(options.snapshot, fabscan, options.reading);
  Fabscan anonymised;
  try {
    Progress progress;
    AnonymiseFabric(fabscan, *mapping, options.keep_reasons, anonymised,
                    progress.Callback("nodes anonymised"));
  } catch (const std::invalid_argument& error) {
    throw CommandError(fmt::format("{}: two nodes would become one ({}); use a different key",
                                   InputName(options.snapshot), error.what()));
  }
  WriteFabric(output, anonymised, {kSource, "", ""});
  std::ostream& out = IsStandardOutput(options.output.path) ? std::cerr : std::cout;
  out << ReportText(options, anonymised.discovered_fabric, has_key || !options.key_file.empty());
  output.Commit();
  return kDone;
}

}  // namespace

std::function<ExitStatus()> AddAnonymise(CLI::App& app) {
  const auto options = std::make_shared<AnonymiseOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  options->output.AddTo(app, "OUT");
  CLI::Option* key =
      app.add_option(
             "--key", options->key,
             "Secret text that determines the replacements; other users of this host can see it")
          ->type_name("KEY");
  app.add_option("--key-file", options->key_file, "A file that contains this text")
      ->type_name("FILE")
      ->excludes(key);
  app.add_flag("--keep-reasons", options->keep_reasons,
               "Keep the reasons why records are absent; they are free text");
  AddReadLimits(app, options->reading);
  app.footer(
      "Replaces names and GUIDs by pseudonyms. The same key gives the same replacements, in this "
      "snapshot and in others. Anyone who has the key can match GUIDs to their replacements.\n"
      "Example: for a bug report, with a key so that a later report can be compared\n"
      "  fabscan anonymise fabric.jsonl --output shared.jsonl --key-file our.key");
  return [options, key] { return AnonymiseSnapshot(*options, key->count() != 0); };
}

}  // namespace fabscan
