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

/// Writes a fabric in parts, each a separate model: the same bytes as for one model with all nodes.
///
///     SnapshotWriter writer(out, header);
///     for (...) writer.Write(part);
///     writer.Finish();
class SnapshotWriter {
 public:
  SnapshotWriter(std::ostream& out, const SnapshotHeader& header);

  /// `written` is called for each node with the number of written nodes of all parts.
  void Write(const Fabscan& part, const std::function<void(std::size_t nodes)>& written = {});
  /// Writes the last line. The caller checks the stream.
  void Finish();

 private:
  void WriteText(std::string_view key, std::string_view text);

  JsonWriter json_;
  std::size_t nodes_ = 0;
};

}  // namespace fabscan

#endif
