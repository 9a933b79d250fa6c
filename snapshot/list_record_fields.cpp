// Writes the field tables as JSON, for the documents that are made from them.

#include <iostream>

#include "records/record_kinds.h"
#include "snapshot/json_writer.h"

namespace fabscan {

namespace {

void WriteTable(JsonWriter& json, const RecordTable& table) {
  json.BeginArray();
  for (const FieldRow& row : table) {
    json.BeginObject();
    json.Key("name");
    json.String(row.name);
    json.Key("needed");
    json.Bool(row.dumped);
    if (row.is_array) {
      json.Key("count");
      json.Number(row.count);
    }
    if (row.nested == nullptr) {
      json.Key("bits");
      json.Number(row.bits());
    } else {
      json.Key("fields");
      WriteTable(json, *row.nested);
    }
    json.EndObject();
  }
  json.EndArray();
}

void WriteRecord(JsonWriter& json, const RecordTable& table) {
  json.Key(table.name);
  WriteTable(json, table);
}

}  // namespace

void ListRecordFields(std::ostream& out) {
  JsonWriter json(out);
  json.BeginObject();
  json.Key("node");
  json.BeginObject();
  for (const auto& kind : kNodeRecords) WriteRecord(json, *kind.table);
  json.EndObject();
  json.Key("port");
  json.BeginObject();
  for (const auto& kind : kPortRecords) WriteRecord(json, *kind.table);
  WriteRecord(json, kCountersTable);
  WriteRecord(json, kMonitorsTable);
  json.EndObject();
  json.EndObject();
  json.EndLine();
  json.Flush();
}

}  // namespace fabscan

int main() { fabscan::ListRecordFields(std::cout); }
