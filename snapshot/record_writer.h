#ifndef FABSCAN_SNAPSHOT_RECORD_WRITER_H
#define FABSCAN_SNAPSHOT_RECORD_WRITER_H

#include "json_writer.h"
#include "record_table.h"

namespace fabscan {

/// Writes the record as an object of its fields. A field that is zero is left out, unless the
/// generator writes it.
void WriteRecord(JsonWriter& json, const RecordTable& table, const void* record);

}  // namespace fabscan

#endif
