#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/dump/model_names.h"
#include "cli/files/read_limits.h"
#include "cli/files/read_snapshot.h"
#include "cli/files/standard_streams.h"
#include "cli/output/counted.h"
#include "cli/output/json_result.h"
#include "cli/output/next_command.h"
#include "cli/output/node_text.h"
#include "cli/output/shell_word.h"
#include "cli/output/table.h"
#include "cli/selection/guid_options.h"
#include "cli/selection/selected_nodes.h"
#include "fabrics/collected_attributes.h"
#include "fabrics/device_models.h"
#include "model/words.h"

namespace fabscan {

namespace {

struct ModelsOptions {
  std::string snapshot;
  bool json = false;
  SnapshotReadOptions reading;
};

std::size_t NodesOf(const std::vector<NamedModel>& list) {
  std::size_t nodes = 0;
  for (const NamedModel& named : list) nodes += named.model.nodes;
  return nodes;
}

std::string DumpLine(const std::string& snapshot, const NamedModel& named) {
  return fmt::format("fabscan dump {} --prefix {} --guid {}", ShellWord(snapshot), named.prefix,
                     GuidText(named.model.representative->guid));
}

/// `5 of 21`: the number of collected attributes, and of those that the node can have.
std::string CollectedText(const Fabscan& fabscan, const IBNode& node) {
  const Completeness completeness = CompletenessOf(fabscan, node);
  return fmt::format("{} of {}", completeness.collected(), completeness.attributes);
}

void PrintText(const Fabscan& fabscan, const ModelsOptions& options,
               const std::vector<NamedModel>& list, std::size_t nodes_outside) {
  const Terminal terminal = StandardOutput();
  std::string text =
      fmt::format("{}: {}, {}\n", InputName(options.snapshot), Counted(NodesOf(list), "node"),
                  Counted(list.size(), "device model"));
  text += LeftOutText(nodes_outside);
  if (!list.empty()) {
    Table table({{"model"},
                 {"nodes", true},
                 {"type"},
                 {"vendor"},
                 {"device"},
                 {"revision"},
                 {"PSID"},
                 {"firmware"},
                 {"collected", true},
                 {"representative"},
                 {"", false, Narrow::kCut}});
    for (const NamedModel& named : list) {
      const DeviceModel& model = named.model;
      const DeviceModelKey& key = model.key;
      table.AddRow({named.prefix, std::to_string(model.nodes), KindText(key.type, key.special),
                    IdText(key.vendor_id, 6), IdText(key.device_id, 4), IdText(key.revision, 1),
                    OrDash(PsidText(key)), OrDash(FirmwareText(key)),
                    CollectedText(fabscan, *model.representative),
                    GuidText(model.representative->guid), model.representative->name});
    }
    text += '\n' + table.text(terminal) +
            fmt::format(
                "\nTo make simulated devices, one for each model:\n"
                "  {}\n"
                "To write only the exact generated files:\n"
                "  fabscan dump {} --prefix MyDev --one-per-model\n",
                ScaffoldLine(options.snapshot, "MyDev"), ShellWord(options.snapshot));
  }
  std::cout << text;
}

void PrintJson(const Fabscan& fabscan, const ModelsOptions& options,
               const std::vector<NamedModel>& list, std::size_t nodes_outside) {
  JsonResult json;
  json.Text("snapshot", options.snapshot);
  json.Count("nodes", NodesOf(list));
  json.Count("outsideSubFabric", nodes_outside);
  json.BeginObjects("models");
  for (const NamedModel& named : list) {
    const DeviceModel& model = named.model;
    json.BeginObject();
    json.Count("nodes", model.nodes);
    json.Count("records", model.records);
    const Completeness completeness = CompletenessOf(fabscan, *model.representative);
    json.Count("attributes", completeness.attributes);
    json.Key("missing");
    json.BeginArray();
    for (const std::string_view attribute : completeness.missing)
      json.String(std::string(attribute));
    json.EndArray();
    json.Text("type", WordFor(kNodeTypeWords, model.key.type));
    if (model.key.special != IB_NOT_SPECIAL_PORT) {
      json.Text("specialNode", WordFor(kSpecialNodeWords, model.key.special));
    }
    json.Count("vendorID", model.key.vendor_id);
    json.Count("deviceID", model.key.device_id);
    json.Count("revision", model.key.revision);
    json.Text("psid", PsidText(model.key));
    json.Text("firmware", FirmwareText(model.key));
    json.Text("name", model.representative->name);
    json.Guid("guid", model.representative->guid);
    json.Text("prefix", named.prefix);
    json.Text("dump", DumpLine(options.snapshot, named));
    json.EndObject();
  }
  json.EndArray();
}

ExitStatus Models(const ModelsOptions& options) {
  Fabscan fabscan;
  ReadSnapshotWithProgress(options.snapshot, fabscan, options.reading);
  const std::vector<NamedModel> list = NameModels(fabscan, "");
  (options.json ? PrintJson : PrintText)(fabscan, options, list,
                                         NodesOutside(fabscan.discovered_fabric));
  return kDone;
}

}  // namespace

std::function<ExitStatus()> AddModels(CLI::App& app) {
  const auto options = std::make_shared<ModelsOptions>();
  app.add_option("SNAPSHOT", options->snapshot, "The saved fabric; - is standard input")
      ->required();
  app.add_flag("--json", options->json, "Print one JSON object");
  AddReadLimits(app, options->reading);
  app.footer(
      "Nodes belong to one model if they agree in type, vendor and device ID, hardware revision, "
      "PSID and firmware. The representative is the node with the most collected records, "
      "including those of its ports; if there are several, the first by name. The column "
      "'collected' shows how many of the attributes that it can have were collected.\n"
      "Example: the models of a fabric, and the command that simulates them\n"
      "  fabscan models fabric.jsonl");
  return [options] { return Models(*options); };
}

}  // namespace fabscan
