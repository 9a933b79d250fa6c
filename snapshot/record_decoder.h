#ifndef FABSCAN_SNAPSHOT_RECORD_DECODER_H
#define FABSCAN_SNAPSHOT_RECORD_DECODER_H

#include "records/record_table.h"
#include "snapshot/json_value.h"

namespace fabscan {

/// Takes an object of fields into `record`, which is zeroed. Throws Malformed and
/// simdjson::simdjson_error; `path` then tells where.
void DecodeRecord(json::value value, const RecordTable& table, void* record, KeyPath& path);

}  // namespace fabscan

#endif
