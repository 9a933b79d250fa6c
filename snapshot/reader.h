#ifndef FABSCAN_SNAPSHOT_READER_H
#define FABSCAN_SNAPSHOT_READER_H

#include "snapshot/byte_source.h"
#include "snapshot/line_reader.h"
#include "snapshot/snapshot.h"

namespace fabscan {

/// `ReadSnapshot` from any source of uncompressed text. `name` is used in errors; `chunk` is the
/// number of bytes per read.
SnapshotHeader ReadSnapshotFrom(ByteSource& source, const std::string& name, Fabscan& fabscan,
                                const SnapshotReadOptions& options = {},
                                std::size_t chunk = LineReader::kChunk);

}  // namespace fabscan

#endif
