#ifndef FABSCAN_SNAPSHOT_SNAPSHOT_H
#define FABSCAN_SNAPSHOT_SNAPSHOT_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <functional>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string>

namespace fabscan {

/// The version of the written format, and the newest that can be read. All older ones can be read.
inline constexpr int kSnapshotVersion = 2;

/// The free text in the first line of a snapshot.
struct SnapshotHeader {
  std::string source;   // where the fabric came from
  std::string created;  // when; optional
  std::string extra;    // a JSON object that nothing here uses; optional
};

/// A snapshot that cannot be read. `what()` is one line: file, line, key if any, and the
/// error.
class SnapshotError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct SnapshotReadOptions {
  /// GUIDs of the nodes to read with ports and records; null means all. The model gets only name,
  /// GUID, type and numPorts of other nodes.
  const std::set<u_int64_t>* guids = nullptr;
  /// A longer line is an error.
  std::size_t max_line_bytes = std::size_t{64} << 20U;
  /// More nodes are an error.
  std::size_t max_nodes = 4'000'000;
  /// Called regularly with the number of bytes read, and the size of the file; 0 if unknown.
  std::function<void(std::size_t done, std::size_t total)> progress;
};

/// Reads a saved fabric into `fabscan`, whose model and store are empty. `path` "-" is standard
/// input. Data compressed with zstd is decompressed. Throws SnapshotError; the data read before
/// stays in `fabscan`.
SnapshotHeader ReadSnapshot(const std::string& path, Fabscan& fabscan,
                            const SnapshotReadOptions& options = {});

/// Writes the fabric with every record of the store, nodes in the order of their creation. Reading
/// the result and writing it again gives the same bytes. The caller checks the stream. `progress`
/// is called for each node with the number of written nodes and their total.
void WriteSnapshot(std::ostream& out, const Fabscan& fabscan, const SnapshotHeader& header,
                   const std::function<void(std::size_t done, std::size_t total)>& progress = {});

}  // namespace fabscan

#endif
