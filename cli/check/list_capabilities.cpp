// Writes the requirements of each generated function, and the names of the capability bits, as JSON
// for the generated parts of documents.

#include <iostream>
#include <string>
#include <vector>

#include "cli/check/requirements.h"
#include "fabscan/fabscan_sim_info_dump.h"
#include "snapshot/json_writer.h"

namespace fabscan {

namespace {

std::string_view NodesText(AttributeOf nodes) {
  switch (nodes) {
    case AttributeOf::kSwitches:
      return "switches";
    case AttributeOf::kRouters:
      return "routers";
    case AttributeOf::kNotSpecial:
      return "all but special nodes";
    case AttributeOf::kAllNodes:
      break;
  }
  return "all";
}

std::string_view OwnerText(RecordOwner owner) {
  switch (owner) {
    case RecordOwner::kPort0:
      return "of port 0 (switches)";
    case RecordOwner::kAnyPort:
      return "of an active port";
    case RecordOwner::kRegularPort:
      return "of an active regular port";
    case RecordOwner::kMarkedPort:
      return "of an active `fnm`, `fnm1` or `special` port";
    case RecordOwner::kNode:
      break;
  }
  return {};
}

void WriteRecord(JsonWriter& json, const NeededRecord& needed) {
  json.BeginObject();
  json.Key("name");
  json.String(needed.name);
  json.Key("of");
  json.String(OwnerText(needed.owner));
  if (needed.monitor != NeededRecord::kNoMonitor) {
    json.Key("monitor");
    json.Number(static_cast<u_int64_t>(needed.monitor));
  }
  if (!needed.nonzero_field.empty()) {
    json.Key("nonzero");
    json.String(needed.nonzero_field);
  }
  json.EndObject();
}

void WriteRequirement(JsonWriter& json, const Requirement& requirement) {
  json.BeginObject();
  json.Key("function");
  json.String(requirement.function);
  json.Key("nodes");
  json.String(NodesText(requirement.nodes));
  json.Key("mask");
  json.String(MaskKey(requirement.mask));
  json.Key("bits");
  json.BeginArray();
  for (const u_int8_t bit : requirement.bits) json.Number(bit);
  json.EndArray();
  json.Key("records");
  json.BeginArray();
  for (const NeededRecord& needed : requirement.records) WriteRecord(json, needed);
  json.EndArray();
  json.EndObject();
}

/// An unnamed bit has an empty name.
void WriteNames(JsonWriter& json, GatingMask mask, const std::vector<const char*>& names) {
  json.Key(MaskKey(mask));
  json.BeginArray();
  for (const char* name : names) json.String(name == nullptr ? "" : name);
  json.EndArray();
}

}  // namespace

void ListCapabilities(std::ostream& out) {
  JsonWriter json(out);
  json.BeginObject();
  json.Key("requirements");
  json.BeginArray();
  for (const Requirement& requirement : Requirements()) WriteRequirement(json, requirement);
  json.EndArray();
  json.Key("names");
  json.BeginObject();
  WriteNames(json, GatingMask::kSMP, SimInfoData::SMPCapMaskBits);
  WriteNames(json, GatingMask::kGMP, SimInfoData::GMPCapMaskBits);
  json.EndObject();
  json.EndObject();
  json.EndLine();
  json.Flush();
}

}  // namespace fabscan

int main() { fabscan::ListCapabilities(std::cout); }
