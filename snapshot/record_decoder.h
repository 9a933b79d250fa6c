#ifndef FABSCAN_SNAPSHOT_RECORD_DECODER_H
#define FABSCAN_SNAPSHOT_RECORD_DECODER_H

#include "snapshot/json_value.h"
#include "snapshot/record_table.h"

namespace fabscan {

/// Takes an object of fields into `record`, which is zeroed. Throws Malformed and
/// simdjson::simdjson_error; `path` then tells where.
void DecodeRecord(json::value value, const RecordTable& table, void* record, KeyPath& path);

}  // namespace fabscan

#endif
