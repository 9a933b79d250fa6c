#ifndef FABSCAN_SNAPSHOT_SNAPSHOT_WRITER_H
#define FABSCAN_SNAPSHOT_SNAPSHOT_WRITER_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <functional>
#include <ostream>
#include <string_view>

#include "snapshot/json_writer.h"
#include "snapshot/snapshot.h"

namespace fabscan {

/// Writes a fabric that comes in parts, each a model of its own: the same bytes as of one model
/// with the nodes of all.
///
///     SnapshotWriter writer(out, header);
///     for (...) writer.Write(part);
///     writer.Finish();
class SnapshotWriter {
 public:
  SnapshotWriter(std::ostream& out, const SnapshotHeader& header);

  /// `written` is called for each node with how many were, of all parts.
  void Write(const Fabscan& part, const std::function<void(std::size_t nodes)>& written = {});
  /// The last line. The caller checks the stream.
  void Finish();

 private:
  void WriteText(std::string_view key, std::string_view text);

  JsonWriter json_;
  std::size_t nodes_ = 0;
};

}  // namespace fabscan

#endif
