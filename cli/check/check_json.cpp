#include "cli/check/check_marks.h"
#include "cli/check/check_report.h"
#include "cli/output/json_result.h"

namespace fabscan {

namespace {

/// Writes the keys of a cause to the open object.
void WriteCause(JsonResult& json, const Cause& cause) {
  json.Text("code", CodeWord(cause.code));
  if (!cause.mask.empty()) json.Text("mask", cause.mask);
  if (!cause.bits.empty()) {
    json.Key("bits");
    json.BeginArray();
    for (const unsigned bit : cause.bits) json.Number(bit);
    json.EndArray();
  }
  if (!cause.record.empty()) json.Text("record", cause.record);
}

void WriteCauses(JsonResult& json, const CheckReport& report) {
  json.BeginObjects("causes");
  for (const CauseGroup& group : report.groups) {
    json.BeginObject();
    WriteCause(json, group.cause);
    json.Text("key", group.cause.key);
    if (!group.cause.reason.empty()) json.Text("reason", group.cause.reason);
    json.Text("text", group.cause.text);
    json.Truth("stopsBuild", group.StopsBuild());
    json.Key("functions");
    json.BeginArray();
    for (const std::size_t function : group.functions) {
      json.String(report.result.functionNames()[function]);
    }
    json.EndArray();
    json.Count("nodeCount", group.nodes.size());
    json.EndObject();
  }
  json.EndArray();
}

void WriteNext(JsonResult& json, const CheckReport& report) {
  json.BeginObjects("next");
  for (const NextStep& step : report.next) {
    json.BeginObject();
    json.Text("text", step.text);
    json.Text("command", step.command);
    json.EndObject();
  }
  json.EndArray();
}

void WriteFunction(JsonResult& json, const CheckResult& result, const CheckedFunction& function,
                   std::string_view name) {
  json.BeginObject();
  json.Text("name", name);
  json.Text("mark", RowOf(function.mark).word);
  const Cause* cause = result.cause(function.cause);
  if (cause != nullptr) WriteCause(json, *cause);
  // Manual edits have no text of the generator: there, the cause is the reason.
  const std::string_view words = result.reason(function.reason);
  if (cause != nullptr) json.Text("reason", words.empty() ? cause->text : words);
  json.EndObject();
}

void WriteNodes(JsonResult& json, const CheckResult& result) {
  json.BeginObjects("nodes");
  for (const CheckedNode& node : result.nodes()) {
    json.BeginObject();
    json.Text("name", node.node->name);
    json.Guid("guid", node.node->guid);
    json.Text("class", node.class_word);
    json.BeginObjects("functions");
    for (std::size_t i = 0; i < node.functions.size(); ++i) {
      WriteFunction(json, result, node.functions[i], result.functionNames()[i]);
    }
    json.EndArray();
    json.EndObject();
    json.Flush();
  }
  json.EndArray();
}

}  // namespace

void PrintCheckJson(const CheckReport& report, CheckDetail detail) {
  const CheckResult& result = report.result;
  JsonResult json;
  json.Text("snapshot", report.snapshot);
  json.Truth("builds", result.Builds());
  json.Key("totals");
  json.BeginObject();
  json.Count("nodes", result.nodes().size());
  for (const MarkRow& row : kMarkRows) json.Count(row.word, result.count(row.mark));
  json.EndObject();
  json.Count("outsideSubFabric", result.LeftOut());
  json.BeginObjects("sharedClasses");
  for (const auto& [class_word, nodes] : result.SharedClasses()) {
    json.BeginObject();
    json.Text("class", class_word);
    json.Key("guids");
    json.BeginArray();
    for (const IBNode* node : nodes) json.String(GuidText(node->guid));
    json.EndArray();
    json.EndObject();
  }
  json.EndArray();
  WriteCauses(json, report);
  WriteNext(json, report);
  if (detail == CheckDetail::kNodes) WriteNodes(json, result);
}

}  // namespace fabscan
