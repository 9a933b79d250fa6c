#ifndef FABSCAN_SNAPSHOT_CANONICAL_RECORD_H
#define FABSCAN_SNAPSHOT_CANONICAL_RECORD_H

#include "snapshot/record_table.h"

namespace fabscan {

/// Takes a record whose text is exactly as it is written: fields in declared order, no blanks, no
/// number in another form. Returns false for any other text, be it wrong or only unusual; then some
/// of the fields may be filled in, and the whole text is still to be decoded.
///
/// `text` begins with the record and is followed by a line end and `LineReader::kPadding` bytes.
bool TakeCanonicalRecord(const RecordTable& table, const char* text, void* record);

}  // namespace fabscan

#endif
